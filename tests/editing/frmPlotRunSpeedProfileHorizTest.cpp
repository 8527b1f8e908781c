#include "editing/forms/frmPlotRunSpeedProfileHoriz.h"

#include <gmock/gmock.h>

#include <QScreen>
#include <QWheelEvent>

#include "RunScene.h"
#include "analysis/StudyEdits.h"
#include "core/ContentHash.h"
#include "fakes/FormScene.h"
#include "fakes/ThrowsError.h"

namespace vantor {
namespace {

using testing::HasSubstr;

const std::string EarlyClose = "Please Click-and-Drag both blue lines on the graph.";

/// A run of 200 s and 9000 ft, 1000 feet a step of its axis.
class frmPlotRunSpeedProfileHorizTest : public RunScene<FormScene<frmPlotRunSpeedProfileHoriz>> {
protected:
    frmPlotRunSpeedProfileHorizTest() : RunScene(RunWithStop()) {}

    /// Opens the form with a plot area of 1000 by 400 pixels.
    void OpenPlot() {
        Open(1, [this](const StudyRunEntry& entry) { TakeEntry(State, 1, entry); });
        const QFontMetricsF metrics(Plot().font());
        const PlotRectangle area = PlotAreaOf({2000, 1000}, metrics);
        Plot().setFixedSize(static_cast<int>(area.Left + 1000 + 2000 - area.Right),
                            static_cast<int>(area.Top + 400 + 1000 - area.Baseline));
        QCoreApplication::processEvents();
        Area = PlotAreaOf(Plot().size(), metrics);
        EXPECT_EQ(std::pair(Area.Right - Area.Left, Area.Baseline - Area.Top), std::pair(1000.0, 400.0));
    }

    QWidget& Plot() { return Get<QWidget>("SpeedProfilePlot"); }
    /// A place right of the left edge and above the baseline, in pixels.
    QPoint At(int x, int y = 350) const {
        return {static_cast<int>(Area.Left) + x, static_cast<int>(Area.Baseline) - y};
    }
    void PlotKey(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) { QTest::keyClick(&Plot(), key, modifiers); }
    void Hold(QPoint place) { QTest::mousePress(&Plot(), Qt::LeftButton, {}, place); }
    void MoveTo(QPoint place) { QTest::mouseMove(&Plot(), place); }
    void Release(QPoint place) { QTest::mouseRelease(&Plot(), Qt::LeftButton, {}, place); }
    void Drag(QPoint from, std::initializer_list<QPoint> way) {
        Hold(from);
        for (const QPoint& place : way) MoveTo(place);
        Release(*(way.end() - 1));
    }
    /// Drags both boundaries, which wait at the edges, to 2000 and 7000 ft.
    void DragBoundaries() {
        Drag(At(0), {At(90), At(200)});
        Drag(At(1000), {At(800), At(700)});
    }
    void Wheel(QPoint place, int turn) {
        QWheelEvent wheel(place, Plot().mapToGlobal(place), {}, {0, turn}, QApplication::mouseButtons(), {},
                          Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(&Plot(), &wheel);
    }
    void TypeIdealSpeed(const QString& text) {
        TypeInto("txtIdealSpeed", text);
        PressKey(Qt::Key_Return);
    }
    void CloseEarly() { EXPECT_TRUE(Leaves(EarlyClose, MessageAnswer::Cancel)); }
    std::string Scale() { return Text("cmbPlotScaleList") + " " + Text("PlotScale"); }
    std::string Description() { return FromQt(Plot().accessibleDescription()); }

    PlotRectangle Area;
};

TEST_F(frmPlotRunSpeedProfileHorizTest, TwoDragsComputeTheRunAndLetTheUserSave) {
    OpenPlot();
    EXPECT_THAT(Description(), HasSubstr("Start boundary: not set. End boundary: not set."));
    Drag(At(0), {At(90), At(200)});
    EXPECT_EQ(Text("lblContDelay"), "–");
    EXPECT_FALSE(IsEnabled("BtnPlotSpeedExit"));
    Drag(At(1000), {At(700)});
    // From 40 s to 159 s: 119 s for 5000 feet, which take 100 s at 50 ft/s; 20 s of them at rest.
    EXPECT_EQ(BoundariesOf(Entry()), std::pair(2000, 7000));
    EXPECT_EQ(Entry().StopDelay, 20);
    EXPECT_EQ(Text("lblContDelay") + Text("lblLOS") + " " + Text("txtIdealSpeed"), " 19B 34");
    EXPECT_FALSE(State.StudyUnchanged);
    EXPECT_EQ(Get<QPushButton>("BtnPlotSpeedExit").palette().color(QPalette::Button), QColor(0xC0, 0xFF, 0xC0));
    EXPECT_TRUE(IsEnabled("btnTrim"));

    // Every further drag computes at once.
    Hold(At(200));
    MoveTo(At(300));
    EXPECT_EQ(Text("lblContDelay"), " 19");
    EXPECT_EQ(Entry().CDStartDist, 3000);
    MoveTo(At(600));
    EXPECT_EQ(Text("lblContDelay"), "-1");  // behind the stop: 19 s for 1000 feet
    Release(At(600));
    Press("BtnPlotSpeedExit");
    EXPECT_TRUE(IsAccepted());
}

TEST_F(frmPlotRunSpeedProfileHorizTest, OpensWithTheFiguresOfARunThatWasDone) {
    // Both between two samples, onto which a computation over time would move them.
    SetBoundaries(2010, 7010);
    Entry().ControlDelay = 77;
    OpenPlot();
    EXPECT_EQ(Text("lblContDelay"), " 19");  // from 41 s to 160 s, 5000 feet
    EXPECT_FALSE(IsEnabled("BtnPlotSpeedExit"));
    EXPECT_FALSE(State.StudyUnchanged);
    const StudyRunEntry computed = Entry();
    Press("btnToggleSpdTime");
    Press("btnToggleSpdTime");
    EXPECT_EQ(Entry(), computed);
    CloseEarly();

    Entry().StopDelay = 99;  // at another threshold
    const StudyRunEntry stored = Entry();
    State.StudyUnchanged = true;
    OpenPlot();
    CloseEarly();
    EXPECT_EQ(Entry(), stored) << "a look changes no figure";
    EXPECT_TRUE(State.StudyUnchanged);
}

TEST_F(frmPlotRunSpeedProfileHorizTest, EveryWayOutAsksBeforeTwoReleases) {
    OpenPlot();
    Drag(At(0), {At(200)});
    Get<QLineEdit>("txtEditRunName").setText("Not yet");
    EXPECT_FALSE(Leaves(EarlyClose, MessageAnswer::Retry));
    Messages.Expect(EarlyClose, MessageAnswer::Retry);
    PressKey(Qt::Key_Escape);
    PressKey(Qt::Key_F1);
    EXPECT_TRUE(QTest::qWaitFor([&] { return DesktopServices.Opened.size() == 1; }, 2000));
    EXPECT_TRUE(Window->isVisible());
    EXPECT_EQ(State.CurrentRun.Header.RunName, "A");
    Drag(At(200), {At(300)});  // the releases are still counted
    EXPECT_TRUE(IsEnabled("BtnPlotSpeedExit"));
    PressKey(Qt::Key_Escape);
    EXPECT_FALSE(Window->isVisible());
    for (const int entry : {0, 2}) EXPECT_ERROR(SubscriptOutOfRange, frmPlotRunSpeedProfileHoriz(Context, entry));
}

TEST_F(frmPlotRunSpeedProfileHorizTest, RunNameIsTakenOverOnLeaving) {
    using Case = std::pair<const char*, const char*>;
    for (const auto& [typed, name] :
         {Case{"Elm to Oak", "Elm to Oak"},
          Case{"0123456789012345678901234567890123456789", "01234567890123456789012345678901"}, Case{"", "A"}}) {
        State.CurrentRun.Header.RunName = "A";
        OpenPlot();
        Get<QLineEdit>("txtEditRunName").setText(QLatin1String(typed));
        CloseEarly();
        EXPECT_EQ(State.CurrentRun.Header.RunName, name);
    }
}

TEST_F(frmPlotRunSpeedProfileHorizTest, TypedIdealSpeed) {
    OpenPlot();
    TypeIdealSpeed("50");
    EXPECT_EQ(Text("lblContDelay"), "–");  // there is nothing to compute yet
    DragBoundaries();
    TypeIdealSpeed("45");
    EXPECT_EQ(Entry().ControlDelay, 43);  // 119 s; 5000 feet at 66 ft/s are 76 s
    EXPECT_EQ(Text("lblLOS"), "D");
    EXPECT_TRUE(Window->isVisible());  // Enter has not pressed Save / Exit
    for (const char* wrong : {"fast", "12.5", "-3", "1000"}) {
        Messages.Expect(
            "The ideal speed is a whole number of MPH from 1 to 999.\nEnter 0 or nothing for the computed one.");
        TypeIdealSpeed(wrong);
        EXPECT_EQ(Text("txtIdealSpeed"), "45") << wrong;
        EXPECT_EQ(Entry().IdealSpeedUser, 45);
    }
    for (const char* none : {"0", " "}) {
        TypeIdealSpeed("45");
        TypeIdealSpeed(none);
        EXPECT_EQ(std::pair(Entry().IdealSpeedUser, Entry().ControlDelay), std::pair(0, 19));
        EXPECT_EQ(Text("txtIdealSpeed"), "34");
    }
    TypeInto("txtIdealSpeed", "45");
    Press("BtnPlotSpeedExit");  // left without Enter
    EXPECT_EQ(std::pair(Entry().IdealSpeedUser, Entry().ControlDelay), std::pair(45, 43));
}

TEST_F(frmPlotRunSpeedProfileHorizTest, MetricShowsItsUnitsAndStoresFeetAndMilesPerHour) {
    State.Settings.MetricUnits = -1;
    OpenPlot();  // 9000 ft = 2742.6 m, 500 m a step: 5 m a pixel
    EXPECT_EQ(Scale(), "500 Meters");
    Drag(At(0), {At(100)});
    TypeIdealSpeed("33");                                  // whole miles per hour: 53.1 km/h
    EXPECT_EQ(BoundariesOf(Entry()), std::pair(1641, 0));  // 500 m = 1640.8 ft
    EXPECT_EQ(Entry().IdealSpeedUser, 33);
    EXPECT_EQ(Text("txtIdealSpeed") + " " + Text("lblIdealSpeedSource"), "33 MPH = 53 KPH (set by hand)");
    EXPECT_THAT(Description(), HasSubstr("Ideal speed: 53 KPH"));
}

TEST_F(frmPlotRunSpeedProfileHorizTest, TrimRunAsksAndKeepsTheUntrimmedRun) {
    OpenPlot();
    DragBoundaries();
    const std::string question =
        "Do you want to trim run: A\nto the part between its boundaries?\n\nThe untrimmed run is kept as A.rd2.bak.";
    const std::string delay = Text("lblContDelay");
    PressTold("btnTrim", question, MessageAnswer::No);
    Files.FailChangeAfter(3, ErrorNumber::DiskFull);
    Messages.Expect(question, MessageAnswer::Yes);
    Messages.Expect("Run-time error '61':\nDisk full\n\n" + Group + "A.rd2");
    Press("btnTrim");
    EXPECT_EQ(State.CurrentRun, Before);
    EXPECT_EQ(Entry().CDEndDist, 7000);

    PressTold("btnTrim", question, MessageAnswer::Yes);
    EXPECT_EQ(Backup(), FileBefore);
    EXPECT_EQ(State.CurrentRun.Header.SampleCount, 121);  // 40 to 160
    EXPECT_EQ(BoundariesOf(Entry()), std::pair(50, 5050));
    EXPECT_EQ(Text("lblContDelay"), delay);
    EXPECT_EQ(Text("cmbPlotScaleList"), "750");
    EXPECT_TRUE(IsEnabled("BtnPlotSpeedExit"));
    PressTold("btnTrim", "The run begins and ends at its boundaries already: there is nothing to cut.");
    EXPECT_FALSE(Files.Bytes(Group + "A.rd2.bak2"));
    Window->reject();
    ASSERT_TRUE(Entry().Computed);
    EXPECT_EQ(Entry().Computed->Movement, MovementHash(State.CurrentRun)) << "the figures are the trimmed run's";
    Window->show();

    Drag(At(673), {At(0)});
    PressTold("btnTrim",
              "A boundary is not set yet.\nDrag the blue lines to where the run shall begin and end, then trim it.");
}

// The plot.

TEST_F(frmPlotRunSpeedProfileHorizTest, ReleasesOfOneBoundaryCountTooButNotThoseOfTheIdealSpeed) {
    OpenPlot();
    // 34.1 mph: the axis ends at 40, so 10 pixels a mph. The line waits at the top.
    Drag(At(500, 400), {At(500, 250), At(500, 401)});
    EXPECT_EQ(Text("txtIdealSpeed"), "25");
    EXPECT_FALSE(State.StudyUnchanged);
    Drag(At(500, 250), {At(500, 250)});
    Drag(At(500, 300), {At(600, 300)});  // beside all lines
    Drag(At(0), {At(100)});
    EXPECT_FALSE(IsEnabled("BtnPlotSpeedExit"));
    Drag(At(100), {At(200)});
    EXPECT_TRUE(IsEnabled("BtnPlotSpeedExit"));
    EXPECT_EQ(Entry().CDEndDist, 0);
    EXPECT_EQ(Text("lblContDelay"), " 55");  // 0 s for -2000 feet at 36.67 ft/s
    Drag(At(500, 250), {At(500, 300)});
    EXPECT_EQ(Text("lblContDelay"), " 45");  // 44 ft/s
    EXPECT_EQ(Window->ChangedEntry(), Entry());
}

TEST_F(frmPlotRunSpeedProfileHorizTest, SaysWithWhichBoundariesTheFiguresMeanNothing) {
    OpenPlot();
    DragBoundaries();
    Drag(At(700), {At(1000)});
    EXPECT_EQ(Text("lblWarning"), "");  // the start's second counts twice, so the last but one goes as far
    Drag(At(900), {At(50)});
    MoveTo(At(500));
    EXPECT_EQ(Text("lblWarning"), "The end boundary lies before the start boundary. The figures mean nothing then.");
}

TEST_F(frmPlotRunSpeedProfileHorizTest, AHeldLineStaysWhereItIs) {
    SetBoundaries(106, 7000);  // 11 pixels from the edge
    OpenPlot();
    Hold(At(14));
    Wheel(At(14), 120);
    MoveTo(At(14));
    Release(At(14));
    EXPECT_EQ(Entry().CDStartDist, 106);
}

TEST_F(frmPlotRunSpeedProfileHorizTest, AnErrorInADragOverTimeIsToldAtTheRelease) {
    OpenPlot();
    Press("btnToggleSpdTime");  // 5 pixels a second, at rest from 101 to 120
    EXPECT_EQ(Text("btnToggleSpdTime") + " " + Scale(), "Plot Speed vs Dist. 20 Secs.");
    Drag(At(0), {At(525)});
    Drag(At(1000), {At(900)});
    EXPECT_EQ(Text("lblContDelay") + Text("lblLOS"), "-45A");  // 75 s; 3000 feet at half of 50 ft/s are 120 s
    Hold(At(900));
    MoveTo(At(550));
    EXPECT_THAT(Text("lblWarning"), HasSubstr("Division by zero"));
    Messages.Expect(
        "Run-time error '11':\nDivision by zero\n\n"
        "The ideal speed is 0. Move the boundaries to where the vehicle is driving, or set an ideal speed.");
    Release(At(550));
    EXPECT_TRUE(Messages.IsDone());
    EXPECT_EQ(Text("txtIdealSpeed"), "");
    MoveTo(At(100));
    EXPECT_EQ(Text("lblReadOut"), "Distance 1000 Feet    Time 20 s    Speed 34 MPH");
    Press("btnToggleSpdTime");
    EXPECT_EQ(Scale(), "1000 Feet");
}

TEST_F(frmPlotRunSpeedProfileHorizTest, KeysMoveTheActiveLineAndAReleasedKeyIsARelease) {
    OpenPlot();
    PlotKey(Qt::Key_2);
    QTest::keyPress(&Plot(), Qt::Key_Left);
    EXPECT_EQ(Entry().CDEndDist, 8900);
    for (int i = 0; i < 3; ++i)  // the key repeats
        for (const QEvent::Type type : {QEvent::KeyRelease, QEvent::KeyPress}) {
            QKeyEvent event(type, Qt::Key_Left, Qt::NoModifier, {}, true);
            QCoreApplication::sendEvent(&Plot(), &event);
        }
    EXPECT_EQ(Entry().CDEndDist, 8600);
    QTest::keyRelease(&Plot(), Qt::Key_Left);
    PlotKey(Qt::Key_3);
    PlotKey(Qt::Key_Down);
    EXPECT_EQ(Entry().IdealSpeedUser, 35);
    EXPECT_FALSE(IsEnabled("BtnPlotSpeedExit"));
    PlotKey(Qt::Key_1);
    PlotKey(Qt::Key_Right, Qt::ShiftModifier);
    EXPECT_EQ(Entry().CDStartDist, 1);
    EXPECT_TRUE(IsEnabled("BtnPlotSpeedExit"));
    EXPECT_THAT(Description(), HasSubstr("Start boundary: 1 Feet. End boundary: 8600 Feet. Ideal speed: 35 MPH. "
                                         "The arrow keys move the start boundary."));
}

TEST_F(frmPlotRunSpeedProfileHorizTest, ZoomAndScroll) {
    OpenPlot();
    auto& scroll = Get<QScrollBar>("HScroll1");
    EXPECT_FALSE(scroll.isEnabled());
    for (const auto& [key, scale] : {std::pair{Qt::Key_Plus, "750"}, {Qt::Key_Minus, "1000"}}) {
        PlotKey(key, Qt::ControlModifier);
        EXPECT_EQ(Text("cmbPlotScaleList"), scale);
    }
    for (const auto& [turn, scale] : {std::pair{60, "1000"}, {60, "750"}, {-120, "1000"}, {-1200, "20000"}}) {
        Wheel(At(500), turn);
        EXPECT_EQ(Text("cmbPlotScaleList"), scale) << turn;
    }
    Pick("cmbPlotScaleList", "100");  // a foot a pixel
    EXPECT_TRUE(scroll.isEnabled());
    EXPECT_EQ(scroll.maximum(), 8000);
    scroll.setValue(3000);
    Drag(At(0), {At(500)});
    EXPECT_EQ(Entry().CDStartDist, 3500);
    // Held beyond the edge, the plot scrolls on to the end of the run.
    Hold(At(500));
    MoveTo(At(1010));
    EXPECT_TRUE(QTest::qWaitFor([&] { return scroll.value() >= 3200; }, 5000));
    MoveTo(At(400));
    Release(At(400));
    EXPECT_EQ(Entry().CDStartDist, scroll.value() + 400);
}

TEST_F(frmPlotRunSpeedProfileHorizTest, AReleaseThatNobodyToldIsMadeUpFor) {
    OpenPlot();
    Hold(At(0));
    MoveTo(At(100));
    QMouseEvent move(QEvent::MouseMove, At(400), Plot().mapToGlobal(At(400)), Qt::NoButton, {}, {});
    QCoreApplication::sendEvent(&Plot(), &move);
    EXPECT_EQ(Entry().CDStartDist, 1000);
    Drag(At(100), {At(200)});
    EXPECT_TRUE(IsEnabled("BtnPlotSpeedExit"));
    MoveTo(At(200));
    EXPECT_EQ(Plot().cursor().shape(), Qt::SizeHorCursor);
    MoveTo(At(450));
    EXPECT_EQ(Plot().cursor().shape(), Qt::ArrowCursor);
}

TEST_F(frmPlotRunSpeedProfileHorizTest, RunsWithoutAProfileSaySoAndTakeNoDrag) {
    using Case = std::pair<RunRecord, const char*>;
    SetBoundaries(10, 20);
    for (const auto& [run, says] : {Case{RunOf({}), "no samples"}, Case{RunOf({0, 0, 0}), "does not move"},
                                    Case{RunOf({20, 20}, 0), "calibration constant of this run is 0"}}) {
        Use(run);
        OpenPlot();
        EXPECT_THAT(FromQt(NothingToDraw(ProfileTrace(run, 1), run.Header.CalConstant)), HasSubstr(says));
        DragBoundaries();
        PlotKey(Qt::Key_Right);
        PlotKey(Qt::Key_Plus, Qt::ControlModifier);
        EXPECT_FALSE(Window->grab().isNull());
        EXPECT_EQ(Entry(), EntryBefore);
        EXPECT_FALSE(Window->ChangedEntry());
        EXPECT_FALSE(IsEnabled("btnToggleSpdTime"));
        CloseEarly();
    }
}

TEST_F(frmPlotRunSpeedProfileHorizTest, TheLongestRunIsDrawn) {
    std::vector<int> values;
    for (int i = 0; i < 32767; ++i) values.push_back(20 + i % 50);
    Use(RunOf(std::move(values)));
    OpenPlot();
    EXPECT_EQ(Text("cmbPlotScaleList"), "20000");
    Press("btnToggleSpdTime");
    EXPECT_EQ(Text("cmbPlotScaleList"), "5000");
    EXPECT_FALSE(Plot().grab().isNull());
}

TEST_F(frmPlotRunSpeedProfileHorizTest, PaintsTraceAndLinesWhereTheyAre) {
    OpenPlot();
    Drag(At(0), {At(200)});
    Drag(At(200), {At(400)});
    const QImage picture = Plot().grab().toImage();
    const auto isBlueAt = [&](int x) {
        const QColor colour = picture.pixelColor(At(x, 300));
        return colour.blue() > 180 && colour.red() < 80;
    };
    EXPECT_FALSE(isBlueAt(200));
    EXPECT_TRUE(isBlueAt(400));
    // 34 mph is 341 pixels above the baseline: soft below the trace, plain above it and behind the end of the run.
    const QColor plain = Plot().palette().color(QPalette::Base);
    EXPECT_NE(picture.pixelColor(At(150, 320)), plain);
    for (const QPoint& place : {At(150, 360), At(950, 320)}) EXPECT_EQ(picture.pixelColor(place), plain);
}

TEST_F(frmPlotRunSpeedProfileHorizTest, PartlyRepaintedWindowLooksAsIfPaintedWhole) {
    OpenPlot();
    DragBoundaries();
    Drag(At(500, 341), {At(500, 200)});
    Hold(At(700));
    for (const QPoint& place : {At(650), At(205), At(190), At(960)}) {
        MoveTo(place);
        QCoreApplication::processEvents();
        const QRect area = Plot().rect().translated(Plot().mapTo(Window.get(), QPoint(0, 0)));
        const QImage shown = Window->screen()->grabWindow(Window->winId()).toImage().copy(area);
        EXPECT_EQ(shown.convertToFormat(QImage::Format_RGB32),
                  Window->grab().toImage().copy(area).convertToFormat(QImage::Format_RGB32))
            << place.x();
    }
}

}  // namespace
}  // namespace vantor
