#include "workspace/forms/frmStartUp.h"

#include "workspace/StudyGroupTest.h"

namespace vantor {
namespace {

class frmStartUpTest : public StudyGroupTest {
protected:
    frmStartUpTest() {
        PutStudy(MainSt, StudyOf("AM & PM", {}));
        State.Paths.LastStudyName = "AM & PM";
    }
};

TEST_F(frmStartUpTest, EachChoiceIsHandedOver) {
    struct Case {
        const char *Button, *Caption;
        StartUpChoice Choice;
    };
    const Case cases[] = {
        {"BtnLastStudy", "&Continue with AM && PM", StartUpChoice::LastStudy},
        {"BtnNewStudy", "Start a &New Study", StartUpChoice::NewStudy},
        {"BtnOpenStudy", "Open &Existing Study", StartUpChoice::OpenStudy},
        {"BtnProcessTemp", "Process Runs in Temp &Folder", StartUpChoice::ProcessTempRuns},
        {"BtnProcessTDC", "Process &TDC Data", StartUpChoice::ProcessTdcData},
        {"BtnProcessRoamlap", "Process Roam&lap Data", StartUpChoice::ProcessRoamlap},
        {"BtnProcessRoampad", "Process Roam&pad Data", StartUpChoice::ProcessRoampad},
        {"BtnProcessRevlap", "Process Re&vlap Data", StartUpChoice::ProcessRevlap},
        {"BtnProcessRevpad", "Process Revpa&d Data", StartUpChoice::ProcessRevpad},
        {"BtnExit", "E&xit", StartUpChoice::Exit},
    };
    for (const Case& given : cases) {
        State.StartUpDone = false;
        Shown<frmStartUp> form(Program.Context);
        EXPECT_EQ(Find<QAbstractButton>(form, given.Button).text(), given.Caption);
        Click(form, given.Button);
        EXPECT_TRUE(form.isHidden());
        EXPECT_EQ(State.ChosenAtStartUp, given.Choice) << given.Button;
        EXPECT_EQ(State.TemporaryRunsMode, given.Choice == StartUpChoice::ProcessTempRuns) << given.Button;
        EXPECT_TRUE(State.StartUpDone);
    }
}

TEST_F(frmStartUpTest, OtherWaysOutGoToTheMainWindow) {
    const std::function<void(QDialog&)> ways[] = {[](QDialog& form) { QTest::keyClick(&form, Qt::Key_Escape); },
                                                  [](QDialog& form) { form.close(); },
                                                  [](QDialog& form) { Click(form, "BtnCancel"); }};
    for (const auto& leave : ways) {
        State.StartUpDone = false;
        State.ChosenAtStartUp = StartUpChoice::Exit;
        Shown<frmStartUp> form(Program.Context);
        leave(form);
        EXPECT_TRUE(form.isHidden());
        EXPECT_TRUE(State.StartUpDone);
        EXPECT_EQ(State.ChosenAtStartUp, StartUpChoice::None);
    }
}

TEST_F(frmStartUpTest, OffersOnlyWhatIsThere) {
    for (const char* name : {"blank", "", "Gone", "../Main St/AM & PM"}) {
        State.Paths.LastStudyName = name;
        frmStartUp form(Program.Context);
        EXPECT_EQ(form.findChild<QWidget*>("BtnLastStudy"), nullptr) << name;
    }
}

TEST_F(frmStartUpTest, KeysStartTheCombinedAndTheBattelleChain) {
    const std::tuple<Qt::Key, Qt::KeyboardModifier, StartUpChoice> keys[] = {
        {Qt::Key_P, Qt::NoModifier, StartUpChoice::ProcessCombined},
        {Qt::Key_P, Qt::ShiftModifier, StartUpChoice::ProcessCombined},
        {Qt::Key_B, Qt::NoModifier, StartUpChoice::ProcessBattelle},
        {Qt::Key_B, Qt::ShiftModifier, StartUpChoice::ProcessBattelle}};
    for (const auto& [key, modifier, choice] : keys) {
        Shown<frmStartUp> form(Program.Context);
        form.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&form));
        QTest::keyClick(QApplication::focusWidget(), key, modifier);
        EXPECT_EQ(State.ChosenAtStartUp, choice);
        EXPECT_TRUE(form.isHidden());
    }
}

TEST_F(frmStartUpTest, WorksByKeyboard) {
    Shown<frmStartUp> form(Program.Context);
    form.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&form));
    EXPECT_EQ(QApplication::focusWidget()->objectName(), "BtnLastStudy");
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Down);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Down);
    EXPECT_TRUE(form.isVisible()) << "an arrow key chose";
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    EXPECT_EQ(State.ChosenAtStartUp, StartUpChoice::OpenStudy);

    Shown<frmStartUp> again(Program.Context);
    again.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&again));
    QTest::keyClick(&again, Qt::Key_F, Qt::AltModifier);
    EXPECT_TRUE(QTest::qWaitFor([&] { return again.isHidden(); }));
    EXPECT_EQ(State.ChosenAtStartUp, StartUpChoice::ProcessTempRuns);
}

}  // namespace
}  // namespace vantor
