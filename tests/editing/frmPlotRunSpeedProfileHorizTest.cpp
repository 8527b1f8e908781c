#include "editing/forms/frmPlotRunSpeedProfileHoriz.h"

#include <gmock/gmock.h>

#include "SpeedProfileForm.h"
#include "core/ContentHash.h"
#include "core/RunFile.h"
#include "core/forms/Named.h"
#include "fakes/PutFiles.h"
#include "fakes/ThrowsError.h"

namespace vantor {
namespace {

using testing::HasSubstr;

TEST_F(SpeedProfileFormTest, OpensWithTheWholeRunAndNothingComputed) {
    Open();
    EXPECT_EQ(Form->windowTitle(), "Speed Profile");
    EXPECT_EQ(Text("lblPlotTitle"), "Data Plot for Main-1");
    EXPECT_EQ(Text("lblInstruction"), "Click and Drag vertical lines to set Control Delay");
    QStringList captions;
    for (const char* name : {"btnToggleSpdTime", "btnTrim", "BtnPlotSpeedExit", "cmdHelp"})
        captions << WithoutAccessKey(Find<QPushButton>(*Form, name).text());
    EXPECT_EQ(captions, QStringList({"Plot Speed vs Time", "Trim Run", "Save / Exit", "Help"}));
    auto& scales = Find<QComboBox>(*Form, "cmbPlotScaleList");
    EXPECT_EQ(scales.currentText(), "1000");
    EXPECT_EQ(scales.count(), 15);
    EXPECT_EQ(Text("PlotScale"), "Feet");
    EXPECT_EQ(Text("lblContDelay"), "–");
    EXPECT_EQ(BoxText("txtIdealSpeed"), "");
    EXPECT_FALSE(IsEnabled("BtnPlotSpeedExit"));
    EXPECT_FALSE(IsEnabled("btnTrim"));
    EXPECT_THAT(FromQt(Plot().accessibleDescription()), HasSubstr("Start boundary: not set. End boundary: not set."));
    EXPECT_TRUE(Program.State.StudyUnchanged);
    EXPECT_EQ(Entry().CDEndDist, 0);
    EXPECT_ERROR(SubscriptOutOfRange, frmPlotRunSpeedProfileHoriz(Program.Context, 0));
    EXPECT_ERROR(SubscriptOutOfRange, frmPlotRunSpeedProfileHoriz(Program.Context, 2));
}

TEST_F(SpeedProfileFormTest, TwoDragsComputeTheRunAndLetTheUserSave) {
    Open();
    Drag(At(0), {At(90), At(200)});
    EXPECT_EQ(Entry().CDStartDist, 2000);
    EXPECT_EQ(Text("lblContDelay"), "–");
    EXPECT_FALSE(IsEnabled("BtnPlotSpeedExit"));
    Drag(At(1000), {At(700)});
    // From 40 s to 159 s: 119 s for 5000 feet, which take 100 s at 50 ft/s; 20 s of them at rest.
    EXPECT_EQ(Entry().CDEndDist, 7000);
    EXPECT_EQ(Entry().ControlDelay, 19);
    EXPECT_EQ(Entry().StopDelay, 20);
    EXPECT_EQ(Text("lblContDelay"), " 19");
    EXPECT_EQ(Text("lblLOS"), "B");
    EXPECT_EQ(BoxText("txtIdealSpeed"), "34");
    EXPECT_FALSE(Program.State.StudyUnchanged);
    auto& exit = Find<QPushButton>(*Form, "BtnPlotSpeedExit");
    EXPECT_EQ(exit.palette().color(QPalette::Button), QColor(0xC0, 0xFF, 0xC0));
    EXPECT_TRUE(IsEnabled("btnTrim"));

    // Every further drag computes at once.
    QTest::mousePress(&Plot(), Qt::LeftButton, {}, At(200));
    QTest::mouseMove(&Plot(), At(300));
    EXPECT_EQ(Text("lblContDelay"), " 19");
    EXPECT_EQ(Entry().CDStartDist, 3000);
    QTest::mouseMove(&Plot(), At(600));
    EXPECT_EQ(Text("lblContDelay"), "-1");  // behind the stop: 19 s for 1000 feet
    QTest::mouseRelease(&Plot(), Qt::LeftButton, {}, At(600));
    Click(*Form, "BtnPlotSpeedExit");
    EXPECT_FALSE(Form->isVisible());
}

TEST_F(SpeedProfileFormTest, OpensWithTheFiguresOfARunThatWasDone) {
    // Both between two samples, onto which a computation over time would move them.
    Entry().CDStartDist = 2010;
    Entry().CDEndDist = 7010;
    Entry().ControlDelay = 77;
    Open();
    EXPECT_EQ(Text("lblContDelay"), " 19");  // from 41 s to 160 s, 5000 feet
    EXPECT_FALSE(IsEnabled("BtnPlotSpeedExit"));
    EXPECT_FALSE(Program.State.StudyUnchanged);
    const StudyRunEntry computed = Entry();
    Click(*Form, "btnToggleSpdTime");
    Click(*Form, "btnToggleSpdTime");
    EXPECT_EQ(Entry(), computed);
    Program.Messages.Expect(EarlyClose, MessageAnswer::Cancel);
    Form->close();

    Entry().StopDelay = 99;  // at another threshold
    const StudyRunEntry stored = Entry();
    Program.State.StudyUnchanged = true;
    Open();
    Program.Messages.Expect(EarlyClose, MessageAnswer::Cancel);
    Form->close();
    EXPECT_EQ(Entry(), stored) << "a look changes no figure";
    EXPECT_TRUE(Program.State.StudyUnchanged);
}

TEST_F(SpeedProfileFormTest, EveryWayOutAsksBeforeTwoReleases) {
    Open();
    Drag(At(0), {At(200)});
    Find<QLineEdit>(*Form, "txtEditRunName").setText("Not yet");
    Program.Messages.Expect(EarlyClose, MessageAnswer::Retry);
    Form->close();
    EXPECT_TRUE(Form->isVisible());
    Program.Messages.Expect(EarlyClose, MessageAnswer::Retry);
    QTest::keyClick(&Plot(), Qt::Key_Escape);
    EXPECT_TRUE(Form->isVisible());
    EXPECT_EQ(Program.State.CurrentRun.Header.RunName, "Main-1");
    Drag(At(200), {At(300)});  // the releases are still counted
    EXPECT_TRUE(IsEnabled("BtnPlotSpeedExit"));
    QTest::keyClick(&Plot(), Qt::Key_Escape);
    EXPECT_FALSE(Form->isVisible());

    Form.reset();
    Open();
    Program.Messages.Expect(EarlyClose, MessageAnswer::Cancel);
    Form->reject();
    EXPECT_FALSE(Form->isVisible());
}

TEST_F(SpeedProfileFormTest, RunNameIsTakenOverOnLeaving) {
    struct Case {
        const char* Typed;
        const char* Name;
    };
    for (const Case& c : {Case{"Elm to Oak", "Elm to Oak"},
                          {"0123456789012345678901234567890123456789", "01234567890123456789012345678901"},
                          {"", "Main-1"}}) {
        Program.State.CurrentRun.Header.RunName = "Main-1";
        Open();
        Type(*Form, "txtEditRunName", c.Typed);
        if (*c.Typed == '\0') Find<QLineEdit>(*Form, "txtEditRunName").clear();
        Program.Messages.Expect(EarlyClose, MessageAnswer::Cancel);
        Form->close();
        EXPECT_EQ(Program.State.CurrentRun.Header.RunName, c.Name);
    }
}

TEST_F(SpeedProfileFormTest, TypedIdealSpeed) {
    Open();
    TypeIdealSpeed("50");
    EXPECT_EQ(Entry().IdealSpeedUser, 50);
    EXPECT_EQ(Text("lblContDelay"), "–");  // there is nothing to compute yet
    SetBoundaries();
    TypeIdealSpeed("45");
    EXPECT_EQ(Entry().ControlDelay, 43);  // 119 s; 5000 feet at 66 ft/s are 76 s
    EXPECT_EQ(Text("lblLOS"), "D");
    EXPECT_TRUE(Form->isVisible());  // Enter has not pressed Save / Exit
    for (const char* wrong : {"fast", "12.5", "-3", "1000"}) {
        Program.Messages.Expect(
            "The ideal speed is a whole number of MPH from 1 to 999.\nEnter 0 or nothing for the computed one.");
        TypeIdealSpeed(wrong);
        EXPECT_EQ(BoxText("txtIdealSpeed"), "45") << wrong;
        EXPECT_EQ(Entry().IdealSpeedUser, 45);
    }
    for (const char* none : {"0", " "}) {
        TypeIdealSpeed("45");
        TypeIdealSpeed(none);
        EXPECT_EQ(Entry().IdealSpeedUser, 0);
        EXPECT_EQ(Entry().ControlDelay, 19);
        EXPECT_EQ(BoxText("txtIdealSpeed"), "34");
    }
    Type(*Form, "txtIdealSpeed", "45");
    Click(*Form, "BtnPlotSpeedExit");  // left without Enter
    EXPECT_EQ(Entry().IdealSpeedUser, 45);
    EXPECT_EQ(Entry().ControlDelay, 43);
}

TEST_F(SpeedProfileFormTest, MetricShowsItsUnitsAndStoresFeetAndMilesPerHour) {
    Program.State.Settings.MetricUnits = -1;
    Open();  // 9000 ft = 2742.6 m, 500 m a step: 5 m a pixel
    EXPECT_EQ(Text("PlotScale"), "Meters");
    EXPECT_EQ(Find<QComboBox>(*Form, "cmbPlotScaleList").currentText(), "500");
    Drag(At(0), {At(100)});
    EXPECT_EQ(Entry().CDStartDist, 1641);  // 500 m = 1640.8 ft
    TypeIdealSpeed("33");                  // whole miles per hour: 53.1 km/h
    EXPECT_EQ(Entry().IdealSpeedUser, 33);
    EXPECT_EQ(BoxText("txtIdealSpeed"), "33");
    EXPECT_EQ(Text("lblIdealSpeedSource"), "MPH = 53 KPH (set by hand)");
    EXPECT_THAT(FromQt(Find<QWidget>(*Form, "SpeedProfilePlot").accessibleDescription()),
                testing::HasSubstr("Ideal speed: 53 KPH"));
}

TEST_F(SpeedProfileFormTest, TrimRunAsksAndKeepsTheUntrimmedRun) {
    PutRunFile(Program.Files, Program.State.CurrentRun, Group, "Main-1");
    const auto before = Program.Files.Bytes(Group + "Main-1.rd2");
    Open();
    SetBoundaries();
    const std::string question =
        "Do you want to trim run: Main-1\nto the part between its boundaries?\n\nThe untrimmed run is kept as "
        "Main-1.rd2.bak.";
    const QString delay = Text("lblContDelay");
    Program.Messages.Expect(question, MessageAnswer::No);
    Click(*Form, "btnTrim");
    EXPECT_EQ(Program.State.CurrentRun.Header.SampleCount, 200);

    Program.Files.FailChangeAfter(3, ErrorNumber::DiskFull);
    Program.Messages.Expect(question, MessageAnswer::Yes);
    Program.Messages.Expect("Run-time error '61':\nDisk full\n\n" + Group + "Main-1.rd2");
    Click(*Form, "btnTrim");
    EXPECT_EQ(Program.State.CurrentRun.Header.SampleCount, 200);
    EXPECT_EQ(Entry().CDEndDist, 7000);

    Program.Messages.Expect(question, MessageAnswer::Yes);
    Click(*Form, "btnTrim");
    EXPECT_EQ(Program.Files.Bytes(Group + "Main-1.rd2.bak"), before);
    EXPECT_EQ(Program.State.CurrentRun.Header.SampleCount, 121);  // 40 to 160
    EXPECT_EQ(Entry().CDStartDist, 50);
    EXPECT_EQ(Entry().CDEndDist, 5050);
    EXPECT_EQ(Text("lblContDelay"), delay);
    EXPECT_EQ(Find<QComboBox>(*Form, "cmbPlotScaleList").currentText(), "750");
    EXPECT_TRUE(IsEnabled("BtnPlotSpeedExit"));
    Program.Messages.Expect("The run begins and ends at its boundaries already: there is nothing to cut.");
    Click(*Form, "btnTrim");
    EXPECT_FALSE(Program.Files.Bytes(Group + "Main-1.rd2.bak2"));
    Form->reject();
    ASSERT_TRUE(Entry().Computed);
    EXPECT_EQ(Entry().Computed->Movement, MovementHash(Program.State.CurrentRun))
        << "the figures are the trimmed run's";
    Form->show();

    Drag(At(673), {At(0)});
    Program.Messages.Expect(
        "A boundary is not set yet.\nDrag the blue lines to where the run shall begin and end, then trim it.");
    Click(*Form, "btnTrim");
}

TEST_F(SpeedProfileFormTest, HelpByButtonAndKey) {
    Open();
    Click(*Form, "cmdHelp");
    QTest::keyClick(&Plot(), Qt::Key_F1);
    EXPECT_TRUE(QTest::qWaitFor([&] { return Program.DesktopServices.Opened.size() == 2; }, 2000));
}

}  // namespace
}  // namespace vantor
