#include "editing/forms/frmEditPulseData.h"

#include <gmock/gmock.h>

#include <QTest>
#include <QWheelEvent>
#include <optional>

#include "Profiles.h"
#include "core/RunFile.h"
#include "core/StudyFile.h"
#include "core/forms/Named.h"
#include "fakes/Clicks.h"
#include "fakes/FakePorts.h"
#include "fakes/PutFiles.h"
#include "fakes/ThrowsError.h"

namespace vantor {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

const std::string Group = "/start/Study Groups/Main/";
const std::string AskToSave = "The sensor data of run: Main-1\nhave changed. Do you want to save them?";

/// Speeds of 30, 55, 31, ... mph with a key on the spike and a node near the end.
const std::vector<int> WithSpike = {44, 0x0C00 | 81, 45, 45, 45, 45 - 0x8000, 45};
const std::vector<int> Repaired = {44, 0x0C00 | 44, 45, 45, 45, 45 - 0x8000, 45};

class frmEditPulseDataTest : public testing::Test {
protected:
    frmEditPulseDataTest() {
        Program.Files.CreateFolder(Group);
        Program.State.Paths.LastStudyGroupPath = Group;
        AppendRun(Program.State.CurrentStudy, "Main-1");
        Program.State.StudyUnchanged = true;
        UseRun(RunOf(WithSpike));
    }
    ~frmEditPulseDataTest() override {
        if (Form) Form->hide();
    }

    void UseRun(RunRecord run) {
        Program.State.CurrentRun = std::move(run);
        PutRunFile(Program.Files, Program.State.CurrentRun, Group, "Main-1");
        FileBefore = *Program.Files.Bytes(Group + "Main-1.rd2");
    }
    frmEditPulseData& Open(int entry = 1) {
        Form.emplace(Program.Context, entry);
        Form->show();
        Form->activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&*Form));
        return *Form;
    }

    QWidget& Plot() { return Find<QWidget>(*Form, "SensorPlot"); }
    QString Text(const char* label) { return Find<QLabel>(*Form, label).text(); }
    QString Box() { return Find<QLineEdit>(*Form, "txtEditDataPoint").text(); }
    int Active() { return Find<QScrollBar>(*Form, "VScroll1").value(); }
    bool IsEnabled(const char* control) { return Find<QWidget>(*Form, control).isEnabled(); }
    void Press(const char* control, int key, Qt::KeyboardModifiers modifiers = {}) {
        QTest::keyClick(&Find<QWidget>(*Form, control), static_cast<Qt::Key>(key), modifiers);
    }
    void TypeSpeed(const QString& speed, int enter = Qt::Key_Return) {
        Type(*Form, "txtEditDataPoint", speed);
        Press("txtEditDataPoint", enter);
    }
    QPoint PixelOf(int point) {
        const auto* plot = static_cast<SensorPlot*>(&Plot());
        SensorView view(Program.State.CurrentRun, Program.State.Settings);
        view.SetRectangle(SensorAreaOf(plot->size(), QFontMetricsF(plot->font())));
        return {static_cast<int>(view.Geometry().XOf(point)), plot->height() / 2};
    }
    /// The words of a run, by what is in force in the program.
    std::vector<int> SavedWords() {
        const auto& words = Program.State.CurrentRun.SampleValues;
        return {words.begin(), words.end()};
    }

    TestProgram Program;
    std::optional<frmEditPulseData> Form;
    std::vector<std::byte> FileBefore;
};

TEST_F(frmEditPulseDataTest, OpensWithItsCaptionsAndTheFirstPoint) {
    Program.State.CurrentRun.Header.RunName = "Main-1   ";
    Open();
    EXPECT_EQ(Form->windowTitle(), "Sensor Data for Main-1");
    const std::vector<std::pair<const char*, const char*>> texts = {{"lblSecsTitle", "Time"},
                                                                    {"lblSpdTitle", "Speed"},
                                                                    {"lblSpdAxis", "MPH"},
                                                                    {"lblSmoothingFactorTitle", "Factor"},
                                                                    {"lblEditDataHeader", "Edit Data"},
                                                                    {"lblLegendActivePoint", " = Active data point"},
                                                                    {"lblLegendNewLink", " = New Link button"},
                                                                    {"lblLegendDelay", " = Delay button"}};
    for (const auto& [name, text] : texts) EXPECT_EQ(WithoutAccessKey(Text(name)), text);
    for (const auto& [name, text] : {std::pair{"btnDeSpike", "De-Spike"}, std::pair{"btnSmoothData", "Smooth"},
                                     std::pair{"BtnEditSensorDataExit", "Exit"}})
        EXPECT_EQ(WithoutAccessKey(Find<QPushButton>(*Form, name).text()), text);
    EXPECT_EQ(Box(), "30");
    EXPECT_EQ(Text("lblReadOut"), "Data point 1 of 7    Time 1 s    Speed 30 MPH    44 pulses");
    for (const char* control : {"btnUndo", "btnRedo", "btnSave"}) EXPECT_FALSE(IsEnabled(control)) << control;
    Click(*Form, "BtnEditSensorDataExit");
    EXPECT_FALSE(Form->isVisible());
    EXPECT_ERROR(SubscriptOutOfRange, frmEditPulseData(Program.Context, 2));
}

TEST_F(frmEditPulseDataTest, RepairsAndEditsAreStepsThatAreSavedTogether) {
    Program.State.CurrentRun.Header.ButtonLabel[12] = "My own label";
    Open();
    Click(*Form, "btnDeSpike");
    EXPECT_EQ(Text("lblStatus"), "De-Spike changed 1 data point.");
    Click(*Form, "btnDeSpike");
    EXPECT_EQ(Text("lblStatus"), "De-Spike found nothing to change.");
    Type(*Form, "txtSmoothingFactor", "1");
    Press("txtSmoothingFactor", Qt::Key_Return);
    EXPECT_EQ(Text("lblStatus"), "Smooth by 1 changed 2 data points.");  // 44, 45 and 45 become 44, 44 and 44
    Press("SensorPlot", Qt::Key_End);
    TypeSpeed("55", Qt::Key_Enter);
    EXPECT_EQ(Text("lblStatus"), "Data point 7 changed from 31 to 55 MPH.");
    EXPECT_EQ(SavedWords(), WithSpike);
    EXPECT_EQ(Program.Files.Bytes(Group + "Main-1.rd2"), FileBefore);

    // The keys reach the window from the box in which nothing is typed.
    Press("txtEditDataPoint", Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(Box(), "31");
    Press("txtSmoothingFactor", Qt::Key_Z, Qt::ControlModifier);
    Press("SensorPlot", Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(Text("lblReadOut").section("    ", 0, 0), "Data point 2 of 7");
    EXPECT_EQ(Box(), "55");
    EXPECT_FALSE(IsEnabled("btnUndo"));
    EXPECT_FALSE(IsEnabled("btnSave"));
    Press("SensorPlot", Qt::Key_Y, Qt::ControlModifier);
    EXPECT_EQ(Box(), "30");
    Press("SensorPlot", Qt::Key_S, Qt::ControlModifier);
    EXPECT_EQ(SavedWords(), Repaired);
    const RunHeader& header = Program.State.CurrentRun.Header;
    EXPECT_EQ(header.RunLength, 2 * 44 + 5 * 45);
    EXPECT_EQ(header.ButtonLong[1], 88);
    EXPECT_EQ(header.ButtonLabel[12], "My own label");
    EXPECT_EQ(Program.Files.Bytes(Group + "Main-1.rd2.bak"), FileBefore);
    RunRecord read;
    ASSERT_TRUE(ReadRunFile(Program.Files, Program.Messages, read, Group, "Main-1", true));
    EXPECT_EQ(read.SampleValues, Program.State.CurrentRun.SampleValues);
    EXPECT_FALSE(IsEnabled("btnSave"));
    Form->close();
    EXPECT_FALSE(Form->isVisible());
}

TEST_F(frmEditPulseDataTest, TypedSpeedOfTheActivePoint) {
    Open();
    Press("SensorPlot", Qt::Key_Right);
    Press("txtEditDataPoint", Qt::Key_Return);
    EXPECT_EQ(Text("lblStatus"), "");
    TypeSpeed("30");
    EXPECT_EQ(Text("lblReadOut"), "Data point 2 of 7    Time 2 s    Speed 30 MPH    44 pulses    Delay button Delay 1");
    TypeSpeed("fast");  // no number counts as 0
    EXPECT_EQ(Box(), "0");
    Program.Messages.Expect(
        "Run-time error '6':\nOverflow\n\nEdit Data: 40000\nEnter a whole number up to 32767 and try again.");
    TypeSpeed("40000");
    EXPECT_EQ(Box(), "40000");
    Press("SensorPlot", Qt::Key_Right);
    EXPECT_EQ(Box(), "31");
    Press("SensorPlot", Qt::Key_Left);
    EXPECT_EQ(Box(), "0");
    Type(*Form, "txtEditDataPoint", "99");  // without Enter
    Plot().setFocus();
    EXPECT_EQ(Box(), "0");
    Click(*Form, "btnUndo");
    Click(*Form, "btnUndo");
    EXPECT_EQ(Box(), "55");
    EXPECT_FALSE(IsEnabled("btnSave"));
}

TEST_F(frmEditPulseDataTest, MetricUnits) {
    Program.State.Settings.MetricUnits = -1;
    Open();
    EXPECT_EQ(Text("lblSpdAxis"), "KPH");
    EXPECT_EQ(Box(), "48");
    TypeSpeed("48.0");  // 48 km/h are 30 mph again
    EXPECT_EQ(Text("lblStatus"), "Data point 1 is as it was.");
    TypeSpeed("100");
    EXPECT_EQ(Box(), "100");
    EXPECT_THAT(FromQt(Text("lblReadOut")), EndsWith("91 pulses"));
}

TEST_F(frmEditPulseDataTest, PointIsChosenByMouseKeysAndScrollBar) {
    UseRun(RunOf(std::vector<int>(300, 44)));
    Open();
    QTest::mouseClick(&Plot(), Qt::LeftButton, {}, PixelOf(120));
    EXPECT_NEAR(Active(), 120, 1);
    Find<QScrollBar>(*Form, "VScroll1").setValue(200);
    EXPECT_THAT(FromQt(Text("lblReadOut")), StartsWith("Data point 200 of 300 "));
    EXPECT_EQ(Text("lblReadOut"), Plot().accessibleDescription());
    const std::vector<std::pair<int, int>> moves = {{Qt::Key_Left, 199},     {Qt::Key_Down, 200}, {Qt::Key_PageUp, 170},
                                                    {Qt::Key_PageDown, 200}, {Qt::Key_Home, 1},   {Qt::Key_Up, 1},
                                                    {Qt::Key_End, 300},      {Qt::Key_Right, 300}};
    for (const auto& [key, point] : moves) {
        Press("SensorPlot", key);
        EXPECT_EQ(Active(), point) << key;
    }
    // Ten seconds around the active point; there a drag to the left moves on, and chooses nothing.
    for (int i = 0; i < 10; ++i) Press("SensorPlot", Qt::Key_Plus, Qt::ControlModifier);
    Press("SensorPlot", Qt::Key_Home);
    QTest::mouseClick(&Plot(), Qt::LeftButton, {}, Plot().rect().center());
    EXPECT_NEAR(Active(), 5, 1);
    const int before = Active();
    QTest::mousePress(&Plot(), Qt::LeftButton, {}, Plot().rect().center());
    QTest::mouseMove(&Plot(), {10, 10});
    QTest::mouseRelease(&Plot(), Qt::LeftButton, {}, {10, 10});
    EXPECT_EQ(Active(), before);
    QTest::mouseClick(&Plot(), Qt::LeftButton, {}, Plot().rect().center());
    EXPECT_NEAR(Active(), before + 5, 1);
    for (int i = 0; i < 10; ++i) {
        QWheelEvent wheel(Plot().rect().center(), Plot().mapToGlobal(Plot().rect().center()), {}, {0, -120},
                          Qt::NoButton, {}, Qt::NoScrollPhase, false);
        QApplication::sendEvent(&Plot(), &wheel);
    }
    QTest::mouseClick(&Plot(), Qt::LeftButton, {}, PixelOf(250));
    EXPECT_NEAR(Active(), 250, 1);
}

TEST_F(frmEditPulseDataTest, LeavingAsksToSave) {
    struct Case {
        const char* What;
        MessageAnswer Answer;
        bool IsOpen;
        const std::vector<int>& Words;
    };
    for (const Case& c :
         {Case{"stay", MessageAnswer::Cancel, true, WithSpike}, Case{"discard", MessageAnswer::No, false, WithSpike},
          Case{"save", MessageAnswer::Yes, false, Repaired}}) {
        Open();
        Click(*Form, "btnDeSpike");
        Program.Messages.Expect(AskToSave, c.Answer);
        Press("SensorPlot", Qt::Key_Escape);
        EXPECT_EQ(Form->isVisible(), c.IsOpen) << c.What;
        EXPECT_EQ(SavedWords(), c.Words) << c.What;
        Form->hide();
    }
}

TEST_F(frmEditPulseDataTest, FailingDiskLeavesEverythingAsItWas) {
    Program.State.CurrentStudy.Entries[1].CDStartDist = 10;
    Program.State.CurrentStudy.Entries[1].CDEndDist = 300;
    const RunRecord run = Program.State.CurrentRun;
    const StudyRunEntry entry = Program.State.CurrentStudy.Entries[1];
    Open();
    Click(*Form, "btnDeSpike");
    for (int changes = 0; changes < 2; ++changes) {
        Program.Files.FailChangeAfter(changes, ErrorNumber::DiskFull);
        const std::string file = changes == 0 ? "Main-1.rd2.bak" : "Main-1.rd2";
        Program.Messages.Expect("Run-time error '61':\nDisk full\n\n" + Group + file);
        Click(*Form, "btnSave");
        EXPECT_EQ(Program.State.CurrentRun, run);
        EXPECT_EQ(Program.State.CurrentStudy.Entries[1], entry);
        EXPECT_TRUE(Program.State.StudyUnchanged);
        EXPECT_EQ(Program.Files.Bytes(Group + "Main-1.rd2"), FileBefore);
        EXPECT_TRUE(IsEnabled("btnSave"));
        EXPECT_TRUE(IsEnabled("btnUndo"));
    }
    // Leaving with a save that fails stays, too.
    Program.Files.FailChangeAfter(0, ErrorNumber::DiskFull);
    Program.Messages.Expect(AskToSave, MessageAnswer::Yes);
    Program.Messages.Expect("Run-time error '61':\nDisk full\n\n" + Group + "Main-1.rd2.bak");
    Form->close();
    EXPECT_TRUE(Form->isVisible());
    Program.Messages.Expect(AskToSave, MessageAnswer::Yes);
    Form->close();
    EXPECT_FALSE(Form->isVisible());
    EXPECT_EQ(SavedWords(), Repaired);
    EXPECT_FALSE(Program.State.StudyUnchanged);
}

TEST_F(frmEditPulseDataTest, RunsThatCannotBeRepaired) {
    UseRun(RunOf({}));
    Open();
    for (const char* control : {"btnDeSpike", "btnSmoothData", "txtEditDataPoint", "txtSmoothingFactor", "VScroll1"})
        EXPECT_FALSE(IsEnabled(control)) << control;
    Press("SensorPlot", Qt::Key_End);
    QTest::mouseClick(&Plot(), Qt::LeftButton, {}, Plot().rect().center());
    EXPECT_EQ(Text("lblReadOut"), "");
    Form->close();

    UseRun(RunOf({44, 81, 45, 45}));
    Open();
    Click(*Form, "btnDeSpike");
    Click(*Form, "btnSmoothData");
    EXPECT_EQ(Text("lblStatus"), "Smooth by 15 found nothing to change.");
    Form->close();

    UseRun(RunOf(std::vector<int>(400, 1 - 0x8000), 0));
    Open();
    Program.Messages.Expect(
        "Run-time error '11':\nDivision by zero\n\nThe calibration constant of this run is 0.\nSet it in the run's "
        "details first.");
    TypeSpeed("30");
    EXPECT_FALSE(IsEnabled("btnSave"));
    EXPECT_THAT(FromQt(Text("lblReadOut")), EndsWith("New Link button"));
    Form->close();

    Program.State.Settings.SpeedFactor = 1000;
    UseRun(RunOf({40, 0, 0, 0, 0}));
    Open();
    EXPECT_EQ(Box(), "");
    Program.Messages.Expect("Run-time error '6':\nOverflow");
    Click(*Form, "btnDeSpike");
    Form->close();
}

}  // namespace
}  // namespace vantor
