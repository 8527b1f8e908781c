#include "corridor/forms/CorridorPlotViews.h"

#include "Drives.h"
#include "core/forms/PainterCanvas.h"
#include "fakes/FormScene.h"

namespace vantor {
namespace {

/// Beside the view stands a button that takes the focus.
class CorridorProfilesViewTest : public FormScene<CorridorProfilesView> {
protected:
    CorridorProfilesViewTest() {
        Street.Add(Drives::Drive(30));
        Street.Add(Drives::Drive(0));
        Open(nullptr).Show(Street.Street, Street.Runs, {}, Way::Forward);
        Window->OnBandMoved = [this](std::size_t node, const Band& band) {
            Told += std::to_string(node) + ":" + std::to_string(band.UpstreamFt) + "/" +
                    std::to_string(band.DownstreamFt) + " ";
        };
        Window->OnNodeChosen = [this](std::size_t node) { Told += "node " + std::to_string(node) + " "; };
        Window->OnRunChosen = [this](std::size_t run) { Told += "run " + std::to_string(run) + " "; };
        Window->resize(1212, 400);
    }
    /// The view shows what outlives it.
    ~CorridorProfilesViewTest() override { Window.reset(); }

    /// Where a distance and a speed lie.
    QPoint PlaceOf(PlotPoint value) const {
        const PlotLook look{LightColours, double(QFontInfo(Window->font()).pixelSize()), true, false};
        const CanvasBox box{6, 6, Window->width() - 12.0, Window->height() - 12.0};
        const CanvasPoint place =
            MapOf(FontMeasure(), box, static_cast<PlotView&>(*Window).Shown(), look, Window->Window()).Of(value);
        return QPointF(place.X + 0.5, place.Y + 0.5).toPoint();
    }
    void Drag(double from, double to) {
        QTest::mousePress(Window.get(), Qt::LeftButton, {}, PlaceOf({from, 15}));
        QTest::mouseMove(Window.get(), PlaceOf({to, 15}));
        EXPECT_EQ(Told, "") << "told when it is let go";
        QTest::mouseRelease(Window.get(), Qt::LeftButton, {}, PlaceOf({to, 15}));
    }

    Drives Street;
    std::string Told;
};

TEST_F(CorridorProfilesViewTest, BordersAreDraggedAndNodesAndRunsChosen) {
    Drag(1400, 1600);
    int upstream = 0;
    int downstream = 0;
    ASSERT_EQ(std::sscanf(Told.c_str(), "1:%d/%d", &upstream, &downstream), 2) << Told;
    EXPECT_EQ(upstream, 600);
    EXPECT_NEAR(downstream, 600, 5) << "as exactly as a pixel is";
    Told.clear();
    QTest::mouseClick(Window.get(), Qt::LeftButton, {}, PlaceOf({2100, 2}));
    QTest::mouseClick(Window.get(), Qt::LeftButton, {}, PlaceOf({2600, 2}));
    EXPECT_EQ(Told, "node 2 ") << "in the band of Pine, and in none";
    QTest::mouseClick(Window.get(), Qt::LeftButton, {}, PlaceOf({2700, 60 * 40 / 88.0}));
    EXPECT_EQ(Told, "node 2 run 0 ");
    EXPECT_EQ(Window->ChosenRun(), 0);
    Window->SetChosenRun(1);
    EXPECT_EQ(Window->ChosenItem(), 2);
    EXPECT_EQ(Told, "node 2 run 0 ") << "who chooses knows it";
}

TEST_F(CorridorProfilesViewTest, KeysMoveBordersAndEscPutsThemBack) {
    PressKey(Qt::Key_Tab);
    PressKey(Qt::Key_Tab);
    EXPECT_EQ(Window->accessibleDescription(), "Oak: the band ends 400 ft behind the node.");
    PressKey(Qt::Key_Right, Qt::ShiftModifier);
    EXPECT_EQ(Told, "0:600/410 ");
    Told.clear();
    QTest::keyPress(Window.get(), Qt::Key_Left);
    PressKey(Qt::Key_Escape);
    QTest::keyRelease(Window.get(), Qt::Key_Left);
    EXPECT_EQ(Told, "");
    PressKey(Qt::Key_Backtab);
    EXPECT_EQ(Window->accessibleDescription(), "Oak: the band begins 600 ft before the node.");
    PressKey(Qt::Key_Escape);
    PressKey(Qt::Key_Right);
    EXPECT_EQ(Told, "run 0 ") << "without a border the arrows step through the runs";
}

TEST_F(CorridorProfilesViewTest, AnOwnBandNeedsAChosenRun) {
    Window->SetMovesOwn(true);
    Drag(1400, 1600);
    EXPECT_EQ(Told, "");
    Street.Street.Runs[1].OwnBands = {{1, {300, 100}}};
    Window->SetChosenRun(1);
    Drag(1100, 1200);
    int downstream = 0;
    ASSERT_EQ(std::sscanf(Told.c_str(), "1:300/%d", &downstream), 1) << Told;
    EXPECT_NEAR(downstream, 200, 5);
}

}  // namespace
}  // namespace vantor
