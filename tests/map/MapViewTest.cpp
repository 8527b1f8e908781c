#include "map/forms/MapView.h"

#include <QMenu>
#include <QWheelEvent>

#include "core/UserChoices.h"
#include "fakes/FormScene.h"

namespace vantor {
namespace {

class MapViewTest : public FormScene<MapView> {
protected:
    MapViewTest() {
        MapContents contents;
        contents.Title = "Runs";
        for (int run = 0; run < 3; ++run) {
            MapTrack& track = contents.Tracks.emplace_back();
            track.Name = "NB-" + std::to_string(run + 1);
            for (int i = 0; i <= 10; ++i) track.Add({{33.7 + run * 0.01, -84.4 + i * 0.004}, 3.0 * i});
        }
        Open(nullptr).Show(std::make_shared<const MapScene>(std::move(contents)));
        Window->OnChosen = [this] { Told += std::to_string(Window->ChosenItem()); };
        Window->resize(600, 400);
    }
    QPoint PlaceOf(const Position& at) const {
        const CanvasPoint place = Window->Window().PlaceOf(WorldOf(at));
        return {static_cast<int>(place.X), static_cast<int>(place.Y)};
    }
    QColor ColourAt(QPoint place) { return Window->grab().toImage().pixelColor(place); }
    std::string Told;
};

TEST_F(MapViewTest, KeysAndMouseChooseTracksAndPlaces) {
    for (const Qt::Key key : {Qt::Key_PageUp, Qt::Key_PageUp, Qt::Key_Home, Qt::Key_PageDown, Qt::Key_End})
        PressKey(key);
    EXPECT_EQ(Told, "32123");
    EXPECT_EQ(Window->accessibleDescription(), "3 tracks, 0 nodes. NB-3");
    Position clicked;
    Window->OnPlace = [&](const Position& at) { clicked = at; };
    QTest::mouseClick(Window.get(), Qt::LeftButton, {}, PlaceOf({33.71, -84.38}));
    EXPECT_EQ(Told, "321232");
    EXPECT_NEAR(clicked.Latitude, 33.71, 1e-3);
    EXPECT_NEAR(clicked.Longitude, -84.38, 1e-3);
    PressKey(Qt::Key_Return);
    EXPECT_NEAR(clicked.Longitude, PositionOf(Window->Window().Centre).Longitude, 1e-9);
}

TEST_F(MapViewTest, ZoomsAndMovesByWheelKeysAndDragging) {
    const MapWindow whole = Window->Window();
    const Position at{33.71, -84.39};
    const QPoint place = PlaceOf(at);
    QWheelEvent wheel(place, Window->mapToGlobal(place), {}, {0, 240}, Qt::NoButton, {}, Qt::NoScrollPhase, false);
    QApplication::sendEvent(Window.get(), &wheel);
    EXPECT_GT(Window->Window().Zoom, whole.Zoom + 0.5);
    EXPECT_LE((PlaceOf(at) - place).manhattanLength(), 1) << "what is pointed at stays";
    QTest::mousePress(Window.get(), Qt::LeftButton, {}, place);
    QTest::mouseMove(Window.get(), place - QPoint(60, 20));
    QTest::mouseRelease(Window.get(), Qt::LeftButton, {}, place - QPoint(60, 20));
    EXPECT_LE((PlaceOf(at) - place + QPoint(60, 20)).manhattanLength(), 2);
    EXPECT_EQ(Told, "") << "a drag chooses nothing";
    const QPoint before = PlaceOf(at);
    PressKey(Qt::Key_Right);
    EXPECT_EQ((before - PlaceOf(at)).x(), 75) << "an eighth of 600";
    PressKey(Qt::Key_F);
    EXPECT_EQ(Window->Window().Zoom, whole.Zoom);
    PressKey(Qt::Key_Minus);
    EXPECT_LT(Window->Window().Zoom, whole.Zoom);
    QContextMenuEvent event(QContextMenuEvent::Keyboard, place, Window->mapToGlobal(place));
    QApplication::sendEvent(Window.get(), &event);
    auto& menu = Find<QMenu>(*Window, "mnuMap");
    for (QAction* action : menu.actions())
        if (action->objectName() == QLatin1String("mnuCopyPicture")) action->trigger();
    EXPECT_EQ(DesktopServices.CopiedPicture.size(), 2U);
    menu.close();
}

TEST_F(MapViewTest, TheBaseMapLiesUnderTheTracksAndMayBeMissing) {
    const QPoint aside = PlaceOf({33.715, -84.38});
    EXPECT_EQ(ColourAt(aside), QColor(Qt::white));
    Tiles.Path = "/maps/town.mbtiles";
    Tiles.Facts = {"Town", "(c) Surveyors", 0, 0};
    Tiles.Tiles[{0, 0, 0}] = {2, 2, std::vector<std::uint32_t>(4, 0xFF336699)};
    State.Choices[BaseMapKey] = Tiles.Path;
    PressKey(Qt::Key_F);
    EXPECT_TRUE(QTest::qWaitFor([&] { return ColourAt(aside) == QColor(0x33, 0x66, 0x99); }));
    State.Choices[BaseMapKey] = "/maps/gone.mbtiles";
    PressKey(Qt::Key_F);
    EXPECT_TRUE(QTest::qWaitFor([&] { return ColourAt(aside) == QColor(Qt::white); })) << "it works without";
    Window->ShowText("No run has positions.");
    EXPECT_EQ(Window->accessibleDescription(), "No run has positions.");
}

}  // namespace
}  // namespace vantor
