#include "editing/forms/frmPlotRunSpeedProfileHoriz.h"

#include <gmock/gmock.h>

#include <QScreen>
#include <QWheelEvent>

#include "Profiles.h"
#include "core/RunFile.h"
#include "core/StudyFile.h"
#include "core/forms/Named.h"
#include "core/forms/Theme.h"
#include "fakes/Clicks.h"
#include "fakes/FakePorts.h"
#include "fakes/ThrowsError.h"

namespace vantor {
namespace {

using testing::HasSubstr;

const std::string Group = "/start/Study Groups/Main/";
const std::string EarlyClose = "Please Click-and-Drag both blue lines on the graph.";

class SpeedProfileFormTest : public testing::Test {
protected:
    SpeedProfileFormTest() {
        Program.Files.CreateFolder(Group);
        Program.State.Paths.LastStudyGroupPath = Group;
        Program.State.CurrentRun = RunWithStop();
        Program.State.CurrentRun.Header.RunName = "Main-1";
        AppendRun(Program.State.CurrentStudy, "Main-1");
        Program.State.StudyUnchanged = true;
    }

    ~SpeedProfileFormTest() override {
        if (Form && Form->isVisible()) Form->hide();
    }

    StudyRunEntry& Entry() { return Program.State.CurrentStudy.Entries[1]; }

    /// Opens the form with a plot area of 1000 by 400 pixels.
    frmPlotRunSpeedProfileHoriz& Open() {
        Form.emplace(Program.Context, 1);
        QWidget& plot = Plot();
        const PlotRectangle area = PlotAreaOf({2000, 1000}, QFontMetricsF(plot.font()));
        plot.setFixedSize(static_cast<int>(area.Left + 1000 + 2000 - area.Right),
                          static_cast<int>(area.Top + 400 + 1000 - area.Baseline));
        Form->show();
        QCoreApplication::processEvents();
        Area = PlotAreaOf(plot.size(), QFontMetricsF(plot.font()));
        EXPECT_EQ(Area.Right - Area.Left, 1000);
        EXPECT_EQ(Area.Baseline - Area.Top, 400);
        return *Form;
    }

    QWidget& Plot() { return Find<QWidget>(*Form, "SpeedProfilePlot"); }
    /// A place right of the left edge and above the baseline, in pixels.
    QPoint At(int x, int y = 350) const {
        return {static_cast<int>(Area.Left) + x, static_cast<int>(Area.Baseline) - y};
    }
    void Drag(QPoint from, std::initializer_list<QPoint> way) {
        QTest::mousePress(&Plot(), Qt::LeftButton, {}, from);
        for (const QPoint& place : way) QTest::mouseMove(&Plot(), place);
        QTest::mouseRelease(&Plot(), Qt::LeftButton, {}, *(way.end() - 1));
    }
    /// The run of the tests has 1000 feet a step: 10 feet a pixel. Both boundaries wait at the edges.
    void SetBoundaries() {
        Drag(At(0), {At(90), At(200)});
        Drag(At(1000), {At(800), At(700)});
    }
    QString Text(const char* label) { return Find<QLabel>(*Form, label).text(); }
    QString BoxText(const char* box) { return Find<QLineEdit>(*Form, box).text(); }
    bool IsEnabled(const char* button) { return Find<QPushButton>(*Form, button).isEnabled(); }
    void TypeIdealSpeed(const QString& text) {
        Type(*Form, "txtIdealSpeed", text);
        QTest::keyClick(&Find<QLineEdit>(*Form, "txtIdealSpeed"), Qt::Key_Return);
    }

    TestProgram Program;
    std::optional<frmPlotRunSpeedProfileHoriz> Form;
    PlotRectangle Area;
};

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

TEST_F(SpeedProfileFormTest, ReleasesOfOneLineCountToo) {
    Open();
    Drag(At(0), {At(100)});
    Drag(At(100), {At(200)});
    EXPECT_TRUE(IsEnabled("BtnPlotSpeedExit"));
    EXPECT_EQ(Entry().CDEndDist, 0);
    EXPECT_EQ(Text("lblContDelay"), " 40");  // 0 s for -2000 feet at 50 ft/s
    // The ideal speed line and a click beside all lines never count.
    Form.reset();
    Entry() = {};
    Open();
    Drag(At(500, 400), {At(500, 200)});
    Drag(At(500, 200), {At(500, 100)});
    Drag(At(500, 300), {At(600, 300)});
    EXPECT_FALSE(IsEnabled("BtnPlotSpeedExit"));
}

TEST_F(SpeedProfileFormTest, DragsBeyondTheEndsOfTheRun) {
    Open();
    Drag(At(1000), {At(950), At(5000)});
    EXPECT_EQ(Entry().CDEndDist, 9000);
    Drag(At(0), {At(300), At(-400)});
    EXPECT_EQ(Entry().CDStartDist, 0);
}

TEST_F(SpeedProfileFormTest, IdealSpeedLineStopsAtTheTop) {
    Open();
    // 34.1 mph: the axis ends at 40, so 10 pixels a mph. The line waits at the top.
    Drag(At(500, 400), {At(500, 250), At(500, 401), At(500, 900)});
    EXPECT_EQ(Entry().IdealSpeedUser, 25);
    EXPECT_EQ(BoxText("txtIdealSpeed"), "25");
    EXPECT_FALSE(Program.State.StudyUnchanged);
    SetBoundaries();
    EXPECT_EQ(Entry().ControlDelay, -17);  // 119 s; 5000 feet at 36.67 ft/s are 136 s
    Drag(At(500, 250), {At(500, 300)});
    EXPECT_EQ(Entry().ControlDelay, 5);  // 44 ft/s: 113.6 s
}

TEST_F(SpeedProfileFormTest, OpensWithTheFiguresOfARunThatWasDone) {
    Entry().CDStartDist = 2000;
    Entry().CDEndDist = 7000;
    Entry().ControlDelay = 77;
    Open();
    EXPECT_EQ(Text("lblContDelay"), " 19");
    EXPECT_FALSE(IsEnabled("BtnPlotSpeedExit"));
    EXPECT_FALSE(Program.State.StudyUnchanged);
    const StudyRunEntry computed = Entry();
    Click(*Form, "btnToggleSpdTime");
    Click(*Form, "btnToggleSpdTime");
    EXPECT_EQ(Entry(), computed);
    Program.Messages.Expect(EarlyClose, MessageAnswer::Cancel);
    Form->close();
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

TEST_F(SpeedProfileFormTest, TimeModeMovesTheBoundariesBySamples) {
    Program.State.CurrentRun = RisingRun(10);
    Open();
    Click(*Form, "btnToggleSpdTime");
    EXPECT_EQ(WithoutAccessKey(Find<QPushButton>(*Form, "btnToggleSpdTime").text()), "Plot Speed vs Dist.");
    EXPECT_EQ(Text("PlotScale"), "Secs.");
    EXPECT_EQ(Find<QComboBox>(*Form, "cmbPlotScaleList").currentText(), "5");  // 20 pixels a second
    Drag(At(0), {At(40)});
    Drag(At(1000), {At(60)});
    EXPECT_EQ(Entry().CDStartDist, 30);
    EXPECT_EQ(Entry().CDEndDist, 80);
    EXPECT_EQ(Text("lblContDelay"), "-1");
    EXPECT_EQ(Text("lblLOS"), "A");
    EXPECT_EQ(BoxText("txtIdealSpeed"), "17");
    Click(*Form, "btnToggleSpdTime");
    EXPECT_EQ(Text("PlotScale"), "Feet");
    EXPECT_EQ(Entry().CDStartDist, 30);
    EXPECT_EQ(Entry().CDEndDist, 80);
}

TEST_F(SpeedProfileFormTest, AnErrorInADragIsToldAtTheRelease) {
    Open();
    Click(*Form, "btnToggleSpdTime");  // 5 pixels a second, at rest from 101 to 120
    Drag(At(0), {At(525)});
    Drag(At(1000), {At(900)});
    EXPECT_EQ(Text("lblContDelay"), "-45");  // 75 s; 3000 feet at half of 50 ft/s are 120 s
    QTest::mousePress(&Plot(), Qt::LeftButton, {}, At(900));
    QTest::mouseMove(&Plot(), At(550));
    EXPECT_THAT(FromQt(Text("lblReadOut")), HasSubstr("Division by zero"));
    EXPECT_TRUE(Program.Messages.IsDone());
    Program.Messages.Expect(
        "Run-time error '11':\nDivision by zero\n\n"
        "The ideal speed is 0. Move the boundaries to where the vehicle is driving, or set an ideal speed.");
    QTest::mouseRelease(&Plot(), Qt::LeftButton, {}, At(550));
    EXPECT_TRUE(Program.Messages.IsDone());
    EXPECT_EQ(BoxText("txtIdealSpeed"), "");
    QTest::mouseMove(&Plot(), At(100));
    EXPECT_EQ(Text("lblReadOut"), "Distance 1000 Feet    Time 20 s    Speed 34 MPH");
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
    Program.State.SpeedUnitLabel = "KPH";
    Program.State.LengthUnitLabel = "m";
    Open();  // 9000 ft = 2742.6 m, 500 m a step: 5 m a pixel
    EXPECT_EQ(Text("PlotScale"), "Meters");
    EXPECT_EQ(Find<QComboBox>(*Form, "cmbPlotScaleList").currentText(), "500");
    Drag(At(0), {At(100)});
    EXPECT_EQ(Entry().CDStartDist, 1641);  // 500 m = 1640.8 ft
    TypeIdealSpeed("50");
    EXPECT_EQ(Entry().IdealSpeedUser, 31);
    EXPECT_EQ(BoxText("txtIdealSpeed"), "50");
}

TEST_F(SpeedProfileFormTest, KeysMoveTheActiveLineAndAReleasedKeyIsARelease) {
    Open();
    QTest::keyClick(&Plot(), Qt::Key_2);
    QTest::keyPress(&Plot(), Qt::Key_Left);
    EXPECT_EQ(Entry().CDEndDist, 8900);
    for (int i = 0; i < 3; ++i) {  // the key repeats
        QKeyEvent up(QEvent::KeyRelease, Qt::Key_Left, Qt::NoModifier, {}, true);
        QKeyEvent down(QEvent::KeyPress, Qt::Key_Left, Qt::NoModifier, {}, true);
        QCoreApplication::sendEvent(&Plot(), &up);
        QCoreApplication::sendEvent(&Plot(), &down);
    }
    EXPECT_EQ(Entry().CDEndDist, 8600);
    QTest::keyRelease(&Plot(), Qt::Key_Left);
    EXPECT_FALSE(IsEnabled("BtnPlotSpeedExit"));
    QTest::keyClick(&Plot(), Qt::Key_3);
    QTest::keyClick(&Plot(), Qt::Key_Down);
    EXPECT_EQ(Entry().IdealSpeedUser, 35);
    EXPECT_FALSE(IsEnabled("BtnPlotSpeedExit"));
    QTest::keyClick(&Plot(), Qt::Key_1);
    QTest::keyClick(&Plot(), Qt::Key_Right, Qt::ShiftModifier);
    EXPECT_EQ(Entry().CDStartDist, 1);
    EXPECT_TRUE(IsEnabled("BtnPlotSpeedExit"));
    EXPECT_THAT(FromQt(Plot().accessibleDescription()),
                HasSubstr("Start boundary: 1 Feet. End boundary: 8600 Feet. Ideal speed: 35 MPH. "
                          "The arrow keys move the start boundary."));
}

TEST_F(SpeedProfileFormTest, ZoomAndScroll) {
    Open();
    auto& scales = Find<QComboBox>(*Form, "cmbPlotScaleList");
    auto& scroll = Find<QScrollBar>(*Form, "HScroll1");
    EXPECT_FALSE(scroll.isEnabled());
    QTest::keyClick(&Plot(), Qt::Key_Plus, Qt::ControlModifier);
    EXPECT_EQ(scales.currentText(), "750");
    QTest::keyClick(&Plot(), Qt::Key_Minus, Qt::ControlModifier);
    EXPECT_EQ(scales.currentText(), "1000");
    for (const auto& [turn, scale] : {std::pair{60, "1000"}, {60, "750"}, {-120, "1000"}, {-1200, "20000"}}) {
        QWheelEvent wheel(At(500), Plot().mapToGlobal(At(500)), {}, {0, turn}, Qt::NoButton, Qt::NoModifier,
                          Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(&Plot(), &wheel);
        EXPECT_EQ(scales.currentText(), scale) << turn;
    }
    scales.setCurrentText("100");  // a foot a pixel
    EXPECT_TRUE(scroll.isEnabled());
    EXPECT_EQ(scroll.maximum(), 8000);
    scroll.setValue(3000);
    Drag(At(0), {At(500)});
    EXPECT_EQ(Entry().CDStartDist, 3500);
    // Held beyond the edge, the plot scrolls on to the end of the run.
    QTest::mousePress(&Plot(), Qt::LeftButton, {}, At(500));
    QTest::mouseMove(&Plot(), At(1010));
    EXPECT_TRUE(QTest::qWaitFor([&] { return scroll.value() >= 3200; }, 5000));
    QTest::mouseMove(&Plot(), At(400));
    QTest::mouseRelease(&Plot(), Qt::LeftButton, {}, At(400));
    EXPECT_EQ(Entry().CDStartDist, scroll.value() + 400);
}

TEST_F(SpeedProfileFormTest, AReleaseThatNobodyToldIsMadeUpFor) {
    Open();
    QTest::mousePress(&Plot(), Qt::LeftButton, {}, At(0));
    QTest::mouseMove(&Plot(), At(100));
    QMouseEvent move(QEvent::MouseMove, At(400), Plot().mapToGlobal(At(400)), Qt::NoButton, Qt::NoButton,
                     Qt::NoModifier);
    QCoreApplication::sendEvent(&Plot(), &move);
    EXPECT_EQ(Entry().CDStartDist, 1000);
    Drag(At(100), {At(200)});
    EXPECT_TRUE(IsEnabled("BtnPlotSpeedExit"));
    QTest::mouseMove(&Plot(), At(200));
    EXPECT_EQ(Plot().cursor().shape(), Qt::SizeHorCursor);
    QTest::mouseMove(&Plot(), At(450));
    EXPECT_EQ(Plot().cursor().shape(), Qt::ArrowCursor);
}

TEST_F(SpeedProfileFormTest, TrimRunAsksAndKeepsTheUntrimmedRun) {
    WriteRunFile(Program.Files, Program.State.CurrentRun, Group, "Main-1");
    const auto before = Program.Files.Bytes(Group + "Main-1.rd2");
    Open();
    SetBoundaries();
    const std::string question =
        "Do you want to trim run: Main-1\nto the part between its boundaries?\n\nThe untrimmed run is kept as "
        "Main-1.bak.";
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
    EXPECT_EQ(Program.Files.Bytes(Group + "Main-1.bak"), before);
    EXPECT_EQ(Program.State.CurrentRun.Header.SampleCount, 120);  // 40 to 159
    EXPECT_EQ(Entry().CDStartDist, 50);
    EXPECT_EQ(Entry().CDEndDist, 5000);
    EXPECT_EQ(Text("lblContDelay"), " 19");  // 118 s; 4950 feet are 99 s
    EXPECT_EQ(Find<QComboBox>(*Form, "cmbPlotScaleList").currentText(), "500");
    EXPECT_TRUE(IsEnabled("BtnPlotSpeedExit"));

    Drag(At(900), {At(1000)});
    Drag(At(1000), {At(0)});
    Program.Messages.Expect(
        "A boundary is not set yet.\nDrag both blue lines to where the run shall begin and end, then trim it.");
    Click(*Form, "btnTrim");
}

TEST_F(SpeedProfileFormTest, RunsWithoutAProfileSaySoAndTakeNoDrag) {
    struct Case {
        RunRecord Run;
        const char* Text;
    };
    for (const Case& c : {Case{RunOf({}), "no samples"},
                          {RunOf({0, 0, 0}), "does not move"},
                          {RunOf({20, 20}, 0), "calibration constant of this run is 0"}}) {
        Program.State.CurrentRun = c.Run;
        Entry().CDStartDist = 10;
        Entry().CDEndDist = 20;
        Open();
        const ProfileTrace trace(c.Run, 1);
        EXPECT_THAT(FromQt(NothingToDraw(trace, c.Run.Header.CalConstant)), HasSubstr(c.Text));
        Drag(At(0), {At(200)});
        Drag(At(1000), {At(700)});
        QTest::keyClick(&Plot(), Qt::Key_Right);
        QTest::keyClick(&Plot(), Qt::Key_Plus, Qt::ControlModifier);
        EXPECT_FALSE(Form->grab().isNull());
        EXPECT_EQ(Entry().CDStartDist, 10);
        EXPECT_FALSE(IsEnabled("btnToggleSpdTime"));
        Program.Messages.Expect(EarlyClose, MessageAnswer::Cancel);
        Form->close();
    }
}

TEST_F(SpeedProfileFormTest, TheLongestRunIsDrawnAndDragged) {
    std::vector<int> values;
    for (int i = 0; i < 32767; ++i) values.push_back(20 + i % 50);
    Program.State.CurrentRun = RunOf(std::move(values));
    Open();
    EXPECT_EQ(Find<QComboBox>(*Form, "cmbPlotScaleList").currentText(), "20000");
    Drag(At(0), {At(100)});
    EXPECT_EQ(Entry().CDStartDist, 20000);
    Click(*Form, "btnToggleSpdTime");
    EXPECT_EQ(Find<QComboBox>(*Form, "cmbPlotScaleList").currentText(), "5000");
    Drag(At(1000), {At(656)});
    EXPECT_EQ(Program.State.CurrentRun.Header.Duration, 32767);
    EXPECT_GT(Entry().CDEndDist, 1400000);
    EXPECT_TRUE(IsEnabled("BtnPlotSpeedExit"));
}

TEST_F(SpeedProfileFormTest, PaintsTraceAndLinesWhereTheyAre) {
    Open();
    Drag(At(0), {At(200)});
    const auto blueAt = [&](int x) {
        const QColor colour = Plot().grab().toImage().pixelColor(At(x, 300));
        return colour.blue() > 180 && colour.red() < 80;
    };
    EXPECT_TRUE(blueAt(200));
    Drag(At(200), {At(400)});
    EXPECT_FALSE(blueAt(200));
    EXPECT_TRUE(blueAt(400));
    // 34 mph is 341 pixels above the baseline: soft below the trace, plain above it and behind the end of the run.
    const QImage picture = Plot().grab().toImage();
    const QColor plain = Plot().palette().color(QPalette::Base);
    EXPECT_NE(picture.pixelColor(At(150, 320)), plain);
    EXPECT_EQ(picture.pixelColor(At(150, 360)), plain);
    EXPECT_EQ(picture.pixelColor(At(950, 320)), plain);
}

TEST_F(SpeedProfileFormTest, PartlyRepaintedWindowLooksAsIfPaintedWhole) {
    Open();
    SetBoundaries();
    Drag(At(500, 341), {At(500, 200)});
    QTest::mousePress(&Plot(), Qt::LeftButton, {}, At(700));
    for (const QPoint& place : {At(650), At(205), At(190), At(960)}) {
        QTest::mouseMove(&Plot(), place);
        QCoreApplication::processEvents();
        const QRect area = Plot().rect().translated(Plot().mapTo(&*Form, QPoint(0, 0)));
        const QImage shown = Form->screen()->grabWindow(Form->winId()).toImage().copy(area);
        EXPECT_EQ(shown.convertToFormat(QImage::Format_RGB32),
                  Form->grab().toImage().copy(area).convertToFormat(QImage::Format_RGB32))
            << place.x();
    }
}

TEST_F(SpeedProfileFormTest, HelpByButtonAndKey) {
    Open();
    Click(*Form, "cmdHelp");
    QTest::keyClick(&Plot(), Qt::Key_F1);
    QTest::qWaitFor([&] { return Program.DesktopServices.Opened.size() == 2; }, 2000);
    EXPECT_EQ(Program.DesktopServices.Opened.size(), 2u);
}

}  // namespace
}  // namespace vantor
