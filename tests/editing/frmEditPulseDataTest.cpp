#include "editing/forms/frmEditPulseData.h"

#include <gmock/gmock.h>

#include <QWheelEvent>

#include "RunScene.h"
#include "core/forms/PainterCanvas.h"
#include "editing/SensorPicture.h"
#include "fakes/FormScene.h"
#include "fakes/ThrowsError.h"
#include "plots/forms/ProfilePicture.h"

namespace vantor {
namespace {

using testing::EndsWith;
using testing::StartsWith;

const std::string AskToSave = "The sensor data of run: A\nhave changed. Do you want to save them?";

/// Speeds of 30, 55, 31, ... mph with a key on the spike and a node near the end.
RunRecord WithSpike() { return RunOf({44, 0x0C00 | 81, 45, 45, 45, Node | 45, 45}); }
RunRecord Repaired() { return RunOf({44, 0x0C00 | 44, 45, 45, 45, Node | 45, 45}); }

class frmEditPulseDataTest : public RunScene<FormScene<frmEditPulseData>> {
protected:
    frmEditPulseDataTest() : RunScene(WithSpike()) {}

    void OpenWith(RunRecord run) {
        Use(std::move(run));
        Open(1);
    }
    QWidget& Plot() { return Get<QWidget>("SensorPlot"); }
    int Active() { return Get<QScrollBar>("VScroll1").value(); }
    void KeyIn(const char* control, Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
        QTest::keyClick(&Get<QWidget>(control), key, modifiers);
    }
    void PlotKey(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) { KeyIn("SensorPlot", key, modifiers); }
    void TypeSpeed(const QString& speed, Qt::Key enter = Qt::Key_Return) {
        TypeInto("txtEditDataPoint", speed);
        KeyIn("txtEditDataPoint", enter);
    }
    std::string Box() { return Text("txtEditDataPoint"); }
    void ClickMiddle() { QTest::mouseClick(&Plot(), Qt::LeftButton, {}, Plot().rect().center()); }
    void ClickPoint(int point) {
        SensorView view(State.CurrentRun, State.Settings);
        view.SetRectangle(
            SensorAreaOf(FontMeasure(), {double(Plot().width()), double(Plot().height())}, LookOf(Plot())));
        QTest::mouseClick(&Plot(), Qt::LeftButton, {},
                          {static_cast<int>(view.Geometry().XOf(point)), Plot().height() / 2});
    }
    /// The words of a run, by what is in force in the program.
    const auto& SavedWords() const { return State.CurrentRun.SampleValues; }
};

TEST_F(frmEditPulseDataTest, RepairsAndEditsAreStepsThatAreSavedTogether) {
    State.CurrentRun.Header.ButtonLabel[12] = "My own label";
    Open(1);
    Press("btnDeSpike");
    EXPECT_EQ(Text("lblStatus"), "De-Spike changed 1 data point.");
    Press("btnDeSpike");
    EXPECT_EQ(Text("lblStatus"), "De-Spike found nothing to change.");
    TypeInto("txtSmoothingFactor", "1");
    PressKey(Qt::Key_Return);
    EXPECT_EQ(Text("lblStatus"), "Smooth by 1 changed 2 data points.");  // 44, 45 and 45 become 44, 44 and 44
    PlotKey(Qt::Key_End);
    TypeSpeed("55", Qt::Key_Enter);
    EXPECT_EQ(Text("lblStatus"), "Data point 7 changed from 31 to 55 MPH.");
    EXPECT_EQ(SavedWords(), WithSpike().SampleValues);
    EXPECT_EQ(Files.Bytes(Group + "A.rd2"), FileBefore);

    // The keys reach the window from the box in which nothing is typed.
    KeyIn("txtEditDataPoint", Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(Box(), "31");
    KeyIn("txtSmoothingFactor", Qt::Key_Z, Qt::ControlModifier);
    PlotKey(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_THAT(Text("lblReadOut"), StartsWith("Data point 2 of 7    "));
    EXPECT_EQ(Box(), "55");
    EXPECT_FALSE(IsEnabled("btnUndo") || IsEnabled("btnSave"));
    PlotKey(Qt::Key_Y, Qt::ControlModifier);
    EXPECT_EQ(Box(), "30");
    PlotKey(Qt::Key_S, Qt::ControlModifier);
    EXPECT_EQ(SavedWords(), Repaired().SampleValues);
    const RunHeader& header = State.CurrentRun.Header;
    EXPECT_EQ(std::pair(header.RunLength, header.ButtonLong[1]), std::pair(2 * 44 + 5 * 45, 88));
    EXPECT_EQ(header.ButtonLabel[12], "My own label");
    EXPECT_EQ(Backup(), FileBefore);
    EXPECT_EQ(OnDisk("A").SampleValues, State.CurrentRun.SampleValues);
    EXPECT_FALSE(IsEnabled("btnSave"));
    Press("BtnEditSensorDataExit");
    EXPECT_TRUE(IsAccepted());
    EXPECT_ERROR(SubscriptOutOfRange, frmEditPulseData(Context, 2));
}

TEST_F(frmEditPulseDataTest, TypedSpeedOfTheActivePoint) {
    Open(1);
    PlotKey(Qt::Key_Right);
    KeyIn("txtEditDataPoint", Qt::Key_Return);
    EXPECT_EQ(Text("lblStatus"), "");
    TypeSpeed("30");
    EXPECT_EQ(Text("lblReadOut"), "Data point 2 of 7    Time 2 s    Speed 30 MPH    44 pulses    Delay button Delay 1");
    TypeInto("txtEditDataPoint", "fast");
    EXPECT_EQ(Text("lblStatus"), "no number: counts as 0");
    KeyIn("txtEditDataPoint", Qt::Key_Return);
    EXPECT_EQ(Box(), "0");
    EXPECT_EQ(Text("lblStatus"), "Data point 2 changed from 30 to 0 MPH.");
    TypeInto("txtEditDataPoint", "400");
    EXPECT_EQ(Text("lblStatus"), "above 174 MPH: wraps to 51");  // 587 ft, 587 - 512 pulses
    Plot().setFocus();
    EXPECT_EQ(Text("lblStatus") + Box(), "0");
    Messages.Expect(
        "Run-time error '6':\nOverflow\n\nEdit Data: 40000\nEnter a whole number up to 32767 and try again.");
    TypeSpeed("40000");
    EXPECT_EQ(Box(), "40000");
    for (const auto& [key, shown] : {std::pair{Qt::Key_Right, "31"}, {Qt::Key_Left, "0"}}) {
        PlotKey(key);
        EXPECT_EQ(Box(), shown);
    }
    TypeInto("txtEditDataPoint", "99");  // without Enter
    Plot().setFocus();
    EXPECT_EQ(Box(), "0");
    Press("btnUndo");
    Press("btnUndo");
    EXPECT_EQ(Box(), "55");
    EXPECT_FALSE(IsEnabled("btnSave"));

    State.Settings.MetricUnits = -1;
    Open(1);
    EXPECT_EQ(Box() + Text("lblSpdAxis"), "48KPH");
    TypeSpeed("48.0");  // 48 km/h are 30 mph again
    EXPECT_EQ(Text("lblStatus"), "Data point 1 is as it was.");
    TypeSpeed("100");
    EXPECT_EQ(Box(), "100");
    EXPECT_THAT(Text("lblReadOut"), EndsWith("91 pulses"));
}

TEST_F(frmEditPulseDataTest, PointIsChosenByMouseKeysAndScrollBar) {
    OpenWith(RunOf(std::vector<int>(300, 44)));
    ClickPoint(120);
    EXPECT_NEAR(Active(), 120, 1);
    Get<QScrollBar>("VScroll1").setValue(200);
    EXPECT_THAT(Text("lblReadOut"), StartsWith("Data point 200 of 300 "));
    EXPECT_EQ(Text("lblReadOut"), FromQt(Plot().accessibleDescription()));
    using Case = std::pair<Qt::Key, int>;
    for (const auto& [key, point] :
         {Case{Qt::Key_Left, 199}, Case{Qt::Key_Down, 200}, Case{Qt::Key_PageUp, 170}, Case{Qt::Key_PageDown, 200},
          Case{Qt::Key_Home, 1}, Case{Qt::Key_Up, 1}, Case{Qt::Key_End, 300}, Case{Qt::Key_Right, 300}}) {
        PlotKey(key);
        EXPECT_EQ(Active(), point) << key;
    }
    // Ten seconds around the active point; there a drag to the left moves on, and chooses nothing.
    for (int i = 0; i < 10; ++i) PlotKey(Qt::Key_Plus, Qt::ControlModifier);
    PlotKey(Qt::Key_Home);
    ClickMiddle();
    EXPECT_NEAR(Active(), 5, 1);
    const int before = Active();
    QTest::mousePress(&Plot(), Qt::LeftButton, {}, Plot().rect().center());
    QTest::mouseMove(&Plot(), {10, 10});
    QTest::mouseRelease(&Plot(), Qt::LeftButton, {}, {10, 10});
    EXPECT_EQ(Active(), before);
    ClickMiddle();
    EXPECT_NEAR(Active(), before + 5, 1);
    const QPointF middle = Plot().rect().center();
    QWheelEvent wheel(middle, middle, {}, {0, -1200}, Qt::NoButton, {}, Qt::NoScrollPhase, false);
    QApplication::sendEvent(&Plot(), &wheel);
    ClickPoint(250);
    EXPECT_NEAR(Active(), 250, 1);
}

TEST_F(frmEditPulseDataTest, LeavingAsksToSave) {
    State.CurrentRun.Header.RunName = "A   ";
    for (const MessageAnswer answer : {MessageAnswer::No, MessageAnswer::Cancel}) {
        Open(1);
        EXPECT_EQ(Window->windowTitle(), QStringLiteral("Sensor Data for A"));
        Press("btnDeSpike");
        EXPECT_EQ(Leaves(AskToSave, answer), answer == MessageAnswer::No);
        EXPECT_EQ(SavedWords(), WithSpike().SampleValues);
    }
    // A save that fails does not leave.
    Files.FailChangeAfter(0, ErrorNumber::DiskFull);
    Messages.Expect(AskToSave, MessageAnswer::Yes);
    Messages.Expect("Run-time error '61':\nDisk full\n\n" + Group + "A.rd2.bak");
    PlotKey(Qt::Key_Escape);
    EXPECT_TRUE(Window->isVisible() && IsEnabled("btnUndo") && IsEnabled("btnSave"));
    EXPECT_EQ(Files.Bytes(Group + "A.rd2"), FileBefore);
    EXPECT_EQ(SavedWords(), WithSpike().SampleValues);
    EXPECT_TRUE(Leaves(AskToSave, MessageAnswer::Yes));
    EXPECT_EQ(SavedWords(), Repaired().SampleValues);
}

TEST_F(frmEditPulseDataTest, RunsThatCannotBeRepaired) {
    OpenWith(RunOf({}));
    EXPECT_FALSE(IsEnabled("VScroll1"));
    PlotKey(Qt::Key_End);
    ClickMiddle();
    EXPECT_EQ(Text("lblReadOut"), "");

    OpenWith(RunOf({44, 81, 45, 45}));
    Press("btnDeSpike");
    Press("btnSmoothData");
    EXPECT_EQ(Text("lblStatus"), "Smooth by 15 found nothing to change.");

    OpenWith(RunOf(std::vector<int>(400, 1 - 0x8000), 0));
    Messages.Expect(
        "Run-time error '11':\nDivision by zero\n\nThe calibration constant of this run is 0.\nSet it in the run's "
        "details first.");
    TypeSpeed("30");
    EXPECT_FALSE(IsEnabled("btnSave"));
    EXPECT_THAT(Text("lblReadOut"), EndsWith("New Link button"));

    State.Settings.SpeedFactor = 1000;
    OpenWith(RunOf({40, 0, 0, 0, 0}));
    EXPECT_EQ(Box(), "");
    PressTold("btnDeSpike", "Run-time error '6':\nOverflow");
}

}  // namespace
}  // namespace vantor
