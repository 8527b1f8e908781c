#include "plots/forms/PlotView.h"

#include <QMenu>
#include <QWheelEvent>

#include "core/forms/PainterCanvas.h"
#include "fakes/FormScene.h"

namespace vantor {
namespace {

class PlotViewTest : public FormScene<PlotView> {
protected:
    PlotViewTest() {
        Plot plot;
        plot.Axes = {"Runs", {"Run", {0, 4}}, {"Delay (s)", {0, 100}}, {}};
        PlotPoints points;
        for (int run = 1; run <= 3; ++run) {
            points.Marks.push_back({{double(run), run * 20.0}, run});
            plot.Items.push_back({"NB-" + std::to_string(run) + "\n" + std::to_string(run * 20) + " s"});
        }
        plot.Add(points);
        Open(nullptr).Show(plot);
        Window->OnChosen = [this] { Told += std::to_string(Window->ChosenItem()); };
        Window->OnPointed = [this](int item) { Told += "p" + std::to_string(item); };
        Window->resize(600, 400);
    }

    /// Where a value lies: the view has an edge of 6 pixels around its plot.
    QPoint PlaceOf(PlotPoint value) const {
        const PlotLook look{LightColours, double(QFontInfo(Window->font()).pixelSize()), true, false};
        const CanvasBox box{6, 6, Window->width() - 12.0, Window->height() - 12.0};
        const CanvasPoint place = MapOf(FontMeasure(), box, Window->Shown(), look, Window->Window()).Of(value);
        return QPointF(place.X + 0.5, place.Y + 0.5).toPoint();
    }

    std::string Told;
};

TEST_F(PlotViewTest, KeysAndMouseChooseItems) {
    for (const Qt::Key key : {Qt::Key_Left, Qt::Key_Up, Qt::Key_Home, Qt::Key_Down, Qt::Key_End, Qt::Key_Right})
        PressKey(key);
    EXPECT_EQ(Told, "32123");
    EXPECT_EQ(Window->accessibleDescription(), "Run from 0.0 to 4.0, Delay (s) from 0 to 100. NB-3 60 s");
    Told.clear();
    QTest::mouseMove(Window.get(), PlaceOf({2, 40}));
    QTest::mouseClick(Window.get(), Qt::LeftButton, {}, PlaceOf({1, 20}));
    QTest::mouseClick(Window.get(), Qt::LeftButton, {}, PlaceOf({3, 90}));
    EXPECT_EQ(Told, "p21");
    EXPECT_EQ(Window->ChosenItem(), 1) << "nothing is there to be chosen in its place";
    Window->SetChosenItem(2);
    EXPECT_EQ(Told, "p21") << "who chooses knows it";
    QTest::mouseClick(Window.get(), Qt::LeftButton, Qt::ControlModifier, PlaceOf({2, 40}));
    EXPECT_EQ(Told, "p212") << "with Ctrl an item is told again, so that it can be left out";
    EXPECT_EQ(Window->ChosenWith(), Qt::ControlModifier);
    PressKey(Qt::Key_Home);
    EXPECT_EQ(Window->ChosenWith(), Qt::NoModifier);
}

TEST_F(PlotViewTest, ZoomsByKeysAndWheelAndMovesByDragging) {
    const PlotWindow whole = Window->Window();
    PressKey(Qt::Key_Minus);
    EXPECT_EQ(Window->Window(), whole);
    const QPoint run = PlaceOf({1, 20});
    QWheelEvent wheel(run, Window->mapToGlobal(run), {}, {0, 240}, Qt::NoButton, {}, Qt::NoScrollPhase, false);
    QApplication::sendEvent(Window.get(), &wheel);
    EXPECT_NEAR(Window->Window().Across.Span(), 4 / 1.5625, 1e-9);
    EXPECT_LE((PlaceOf({1, 20}) - run).manhattanLength(), 1) << "what is pointed at stays";

    const QPoint from = PlaceOf({1.5, 30});
    QTest::mousePress(Window.get(), Qt::LeftButton, {}, from);
    QTest::mouseMove(Window.get(), from - QPoint(60, 0));
    QTest::mouseRelease(Window.get(), Qt::LeftButton, {}, from - QPoint(60, 0));
    EXPECT_LE((PlaceOf({1.5, 30}) - from + QPoint(60, 0)).manhattanLength(), 2);
    EXPECT_EQ(Window->ChosenItem(), 0) << "a drag chooses nothing";

    for (int i = 0; i < 4; ++i) PressKey(Qt::Key_Plus);
    PressKey(Qt::Key_Home);
    EXPECT_TRUE(Window->rect().contains(PlaceOf({1, 20}))) << "what keys choose comes into view";
    PressKey(Qt::Key_0);
    EXPECT_EQ(Window->Window(), whole);
}

TEST_F(PlotViewTest, TheMenuZoomsCopiesAndSaves) {
    const auto trigger = [this](const char* name) {
        QContextMenuEvent event(QContextMenuEvent::Keyboard, {5, 5}, Window->mapToGlobal(QPoint(5, 5)));
        QApplication::sendEvent(Window.get(), &event);
        QMenu& menu = Get<QMenu>("mnuPlot");
        auto* entry = menu.findChild<QAction*>(QLatin1String(name));
        const bool isOn = entry->isEnabled();
        entry->trigger();
        menu.close();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        return isOn;
    };
    EXPECT_FALSE(trigger("mnuShowWhole"));
    EXPECT_TRUE(trigger("mnuZoomIn"));
    EXPECT_TRUE(trigger("mnuCopyPicture"));
    EXPECT_EQ(DesktopServices.CopiedPicture, BytesOf("\x89P"));
    EXPECT_EQ(Documents.Pages.at(0).Dots.size(), 3);
    EXPECT_TRUE(trigger("mnuShowWhole"));
    EXPECT_TRUE(Window->IsWhole());
    Window->PictureStart = [] { return "/start/Runs"; };
    DesktopServices.FileToSave = "/start/Runs.svg";
    EXPECT_TRUE(trigger("mnuSavePicture"));
    EXPECT_EQ(DesktopServices.AskedFrom, "/start/Runs.png");
    EXPECT_EQ(Documents.Format, PictureFormat::Svg);
    EXPECT_EQ(Files.Bytes("/start/Runs.svg"), BytesOf("\x89P"));

    Plot none;
    none.EmptyText = "No runs yet.";
    Window->Show(none);
    EXPECT_EQ(Window->accessibleDescription(), "No runs yet.");
    EXPECT_FALSE(trigger("mnuZoomIn"));
}

}  // namespace
}  // namespace vantor
