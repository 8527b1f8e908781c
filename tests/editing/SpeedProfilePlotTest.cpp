#include <gmock/gmock.h>

#include <QScreen>

#include "ProfileScene.h"
#include "plots/forms/ProfileWords.h"

namespace vantor {
namespace {

using testing::HasSubstr;

class SpeedProfilePlotTest : public ProfileScene {};

TEST_F(SpeedProfilePlotTest, ReleasesOfOneBoundaryCountTooButNotThoseOfTheIdealSpeed) {
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
    EXPECT_EQ(Window->Changes().Entries.at(1), Entry());
}

TEST_F(SpeedProfilePlotTest, SaysWithWhichBoundariesTheFiguresMeanNothing) {
    OpenPlot();
    DragBoundaries();
    Drag(At(700), {At(1000)});
    EXPECT_EQ(Text("lblWarning"), "");  // the start's second counts twice, so the last but one goes as far
    Drag(At(900), {At(50)});
    MoveTo(At(500));
    EXPECT_EQ(Text("lblWarning"), "The end boundary lies before the start boundary. The figures mean nothing then.");
}

TEST_F(SpeedProfilePlotTest, AHeldLineStaysWhereItIs) {
    SetBoundaries(106, 7000);  // 11 pixels from the edge
    OpenPlot();
    Hold(At(14));
    Wheel(At(14), 120);
    MoveTo(At(14));
    Release(At(14));
    EXPECT_EQ(Entry().CDStartDist, 106);
}

TEST_F(SpeedProfilePlotTest, AnErrorInADragOverTimeIsToldAtTheRelease) {
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

TEST_F(SpeedProfilePlotTest, KeysMoveTheActiveLineAndAReleasedKeyIsARelease) {
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

TEST_F(SpeedProfilePlotTest, ZoomAndScroll) {
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
    Drag(At(700), {At(750), At(900)});  // beside the lines: the picture moves along
    EXPECT_EQ(scroll.value(), 2800);
    Drag(At(900), {At(700)});
    // Held beyond the edge, the plot scrolls on to the end of the run.
    Hold(At(500));
    MoveTo(At(1010));
    EXPECT_TRUE(QTest::qWaitFor([&] { return scroll.value() >= 3200; }, 5000));
    MoveTo(At(400));
    Release(At(400));
    EXPECT_EQ(Entry().CDStartDist, scroll.value() + 400);
}

TEST_F(SpeedProfilePlotTest, AReleaseThatNobodyToldIsMadeUpFor) {
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

TEST_F(SpeedProfilePlotTest, RunsWithoutAProfileSaySoAndTakeNoDrag) {
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
        EXPECT_TRUE(Window->Changes().Entries.empty());
        EXPECT_FALSE(IsEnabled("btnToggleSpdTime"));
        CloseEarly();
    }
}

TEST_F(SpeedProfilePlotTest, TheLongestRunIsDrawn) {
    std::vector<int> values;
    for (int i = 0; i < 32767; ++i) values.push_back(20 + i % 50);
    Use(RunOf(std::move(values)));
    OpenPlot();
    EXPECT_EQ(Text("cmbPlotScaleList"), "20000");
    Press("btnToggleSpdTime");
    EXPECT_EQ(Text("cmbPlotScaleList"), "5000");
    EXPECT_FALSE(Plot().grab().isNull());
}

TEST_F(SpeedProfilePlotTest, PaintsTraceAndLinesWhereTheyAre) {
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

TEST_F(SpeedProfilePlotTest, PartlyRepaintedWindowLooksAsIfPaintedWhole) {
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
