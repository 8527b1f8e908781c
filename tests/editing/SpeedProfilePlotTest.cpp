#include "editing/forms/SpeedProfilePlot.h"

#include <gmock/gmock.h>

#include <QScreen>
#include <QWheelEvent>

#include "SpeedProfileForm.h"
#include "core/forms/Named.h"

namespace vantor {
namespace {

using testing::HasSubstr;

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

TEST_F(SpeedProfileFormTest, SaysWithWhichBoundariesTheFiguresMeanNothing) {
    Open();
    SetBoundaries();
    EXPECT_EQ(Text("lblWarning"), "");
    Drag(At(700), {At(1000)});
    EXPECT_EQ(Text("lblWarning"), "");  // the start's second counts twice, so the last but one goes as far
    Drag(At(900), {At(50)});
    EXPECT_EQ(Text("lblWarning"), "The end boundary lies before the start boundary. The figures mean nothing then.");
    QTest::mouseMove(&Plot(), At(500));
    EXPECT_NE(Text("lblWarning"), "");
}

TEST_F(SpeedProfileFormTest, AHeldLineStaysWhereItIs) {
    Entry().CDStartDist = 106;  // 11 pixels from the edge
    Entry().CDEndDist = 7000;
    Open();
    QTest::mousePress(&Plot(), Qt::LeftButton, {}, At(14));
    QWheelEvent wheel(At(14), Plot().mapToGlobal(At(14)), {}, {0, 120}, Qt::LeftButton, {}, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(&Plot(), &wheel);
    QTest::mouseMove(&Plot(), At(14));
    QTest::mouseRelease(&Plot(), Qt::LeftButton, {}, At(14));
    EXPECT_EQ(Entry().CDStartDist, 106);
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
    EXPECT_THAT(FromQt(Text("lblWarning")), HasSubstr("Division by zero"));
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

}  // namespace
}  // namespace vantor
