#include "counter/forms/frmUploadSelectTDC.h"

#include <gmock/gmock.h>

#include "TableClicks.h"
#include "fakes/FakePorts.h"

namespace vantor {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

const std::string FieldData = "/start/Field Data Files/";
const std::string EndMark = "::::::::::::::::::::\r\n";

class frmUploadSelectTDCTest : public testing::Test {
protected:
    frmUploadSelectTDCTest() {
        const std::string one = "T,001,001,SITE0001,0653,031108,01246\r\n012 001\r\n00001\r\n";
        const std::string two = "T,002,001,MAINSTNB,1730,123199,01246\r\n00000\r\n";
        Program.Files.PutText(FieldData + "a.TDC", one + one + two + EndMark);
        Program.Files.PutText(FieldData + "cut.tdc", one);
        Program.Files.PutText(FieldData + "z.tdc", EndMark);
        Program.Files.PutText(FieldData + "a.txt", "no counter file");
        Program.Files.PutText("/start/Temp/old.tdc", two + EndMark);
        Program.State.CounterFileChosen = true;
    }

    void ChooseFolder(QWidget& form, const std::string& folder) {
        auto& tree = Find<FolderTree>(form, "treTDCPath");
        const auto items = tree.findItems(ToQt(folder), Qt::MatchExactly | Qt::MatchRecursive);
        ASSERT_EQ(items.size(), 1) << folder;
        QTest::mouseClick(tree.viewport(), Qt::LeftButton, {}, tree.visualItemRect(items.front()).center());
    }

    TestProgram Program;
};

TEST_F(frmUploadSelectTDCTest, ListsTheFieldDataFolderAndTheStudiesOfTheFirstFile) {
    frmUploadSelectTDC form(Program.Context);
    form.show();
    EXPECT_EQ(form.windowTitle(), "Select TDC Data");
    EXPECT_THAT(Column(form, "vaSelTDCFile", 0), ElementsAre("a ", "cut ", "z "));
    EXPECT_THAT(Column(form, "vaSelTDCFile", 1), ElementsAre("2", "", "0"));
    EXPECT_THAT(Heads(form, "vaStudyInfo"), ElementsAre("Study", "Site Code", "Date / Time", "Runs"));
    EXPECT_THAT(Row(form, "vaStudyInfo", 0), ElementsAre("001", "SITE0001", "03/11/08  06:53", "2"));
    EXPECT_THAT(Row(form, "vaStudyInfo", 1), ElementsAre("002", "MAINSTNB", "12/31/99  17:30", "1"));
    EXPECT_TRUE(Find<QLabel>(form, "lblProblem").isHidden());
}

TEST_F(frmUploadSelectTDCTest, TellsWhyAFileCannotBeCounted) {
    frmUploadSelectTDC form(Program.Context);
    form.show();
    ClickRow(form, "vaSelTDCFile", 1);
    EXPECT_THAT(Column(form, "vaStudyInfo", 0), IsEmpty());
    const std::string told = FromQt(Find<QLabel>(form, "lblProblem").text());
    EXPECT_THAT(told,
                HasSubstr("Run-time error '62':\nInput past end of file\n\n" + FieldData + "cut.tdc, record 2\n"));
    EXPECT_EQ(FromQt(Find<Table>(form, "vaSelTDCFile").item(1, 1)->toolTip()), told);
    EXPECT_FALSE(Find<QLabel>(form, "lblProblem").isHidden());
    ClickRow(form, "vaSelTDCFile", 0);
    EXPECT_TRUE(Find<QLabel>(form, "lblProblem").isHidden());
    ClickRow(form, "vaSelTDCFile", 1);
    Click(form, "BtnSelect");  // its good runs can still be had
    EXPECT_EQ(Program.State.ChosenCounterFileName, "cut");
}

TEST_F(frmUploadSelectTDCTest, ChoosesByButtonEnterAndDoubleClick) {
    const auto chosenBy = [&](const std::function<void(QWidget&, Table&)>& act) {
        Program.State.CounterFileChosen = false;
        frmUploadSelectTDC form(Program.Context);
        form.show();
        Find<Table>(form, "vaSelTDCFile").sortByColumn(0, Qt::DescendingOrder);
        ClickRow(form, "vaSelTDCFile", 2);
        act(form, Find<Table>(form, "vaSelTDCFile"));
        EXPECT_EQ(form.result(), QDialog::Accepted);
        EXPECT_TRUE(Program.State.CounterFileChosen);
        return Program.State.ChosenCounterFileFolder + "|" + Program.State.ChosenCounterFileName;
    };
    EXPECT_EQ(chosenBy([](QWidget& form, Table&) { Click(form, "BtnSelect"); }), FieldData + "|a");
    EXPECT_EQ(chosenBy([](QWidget&, Table& table) { QTest::keyClick(&table, Qt::Key_Return); }), FieldData + "|a");
    EXPECT_EQ(chosenBy([](QWidget&, Table& table) {
                  QTest::mouseDClick(table.viewport(), Qt::LeftButton, {},
                                     table.visualItemRect(table.item(2, 0)).center());
              }),
              FieldData + "|a");
}

TEST_F(frmUploadSelectTDCTest, ReachesOtherFolders) {
    frmUploadSelectTDC form(Program.Context);
    form.show();
    ChooseFolder(form, "Study Groups");
    EXPECT_THAT(Column(form, "vaSelTDCFile", 0), IsEmpty());
    EXPECT_THAT(Column(form, "vaStudyInfo", 0), IsEmpty());
    EXPECT_FALSE(Find<QPushButton>(form, "BtnSelect").isEnabled());
    ChooseFolder(form, "Temp");
    EXPECT_THAT(Column(form, "vaSelTDCFile", 0), ElementsAre("old "));
    Click(form, "BtnSelect");
    EXPECT_EQ(Program.State.ChosenCounterFileFolder, "/start/Temp/");
}

TEST_F(frmUploadSelectTDCTest, CancelAndEscChooseNothing) {
    for (const bool byKey : {false, true}) {
        Program.State.CounterFileChosen = true;
        frmUploadSelectTDC form(Program.Context);
        form.show();
        if (byKey)
            QTest::keyClick(&form, Qt::Key_Escape);
        else
            Click(form, "BtnCancel");
        EXPECT_FALSE(form.isVisible());
        EXPECT_FALSE(Program.State.CounterFileChosen);
    }
}

TEST_F(frmUploadSelectTDCTest, AFileOfAnotherFormatEndsTheApplication) {
    Program.Files.PutText(FieldData + "not.tdc", "<html>");
    EXPECT_THROW(frmUploadSelectTDC(Program.Context).show(), ApplicationEnded);
}

TEST_F(frmUploadSelectTDCTest, OpensWithoutItsFolder) {
    Program.State.Paths.FieldDataPath = "/gone/";
    frmUploadSelectTDC form(Program.Context);
    form.show();
    EXPECT_FALSE(Find<QPushButton>(form, "BtnSelect").isEnabled());
    Click(form, "cmdHelp");
    EXPECT_THAT(Program.DesktopServices.Opened, ElementsAre("/program/VANTOR.HLP#38"));
    ChooseFolder(form, "/");
}

}  // namespace
}  // namespace vantor
