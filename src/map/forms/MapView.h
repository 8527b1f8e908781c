#pragma once

#include <memory>

#include "core/forms/DrawingView.h"
#include "map/MapDrawing.h"
#include "map/forms/BaseMap.h"

namespace vantor {

/// Shows a map, whose items are its tracks. The arrow keys move it, F shows all, Page Up and Page Down step through the
/// tracks.
class MapView : public DrawingView {
public:
    /// `context` is for the base map, too.
    MapView(AppContext& context, QWidget* parent);

    /// Shows a map; what the user has moved to stays in view where the new one has something there. No item is chosen
    /// then.
    void Show(std::shared_ptr<const MapScene> scene);
    /// A text in place of a map.
    void ShowText(const std::string& text);
    const MapScene& Shown() const { return *scene_; }

    /// The user clicked a place, or pressed Enter, which stands for the place in the middle. Without it places mean
    /// nothing here.
    std::function<void(const Position& place)> OnPlace;
    /// Rings a place, as that of a row of a list, and brings it into view; nothing for none.
    void SetMark(const std::optional<Position>& place);
    const std::optional<Position>& Mark() const { return mark_; }

    MapWindow Window() const;
    bool IsWhole() const override { return !isMoved_; }
    void ShowWhole() override;

    QSize sizeHint() const override { return {640, 420}; }
    QSize minimumSizeHint() const override { return {160, 60}; }

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    QString Draw(Canvas& canvas) override;
    void DrawItem(Canvas& canvas, int item) override;
    void PaintOver(QPainter& painter) override;
    bool HasDrawing() const override { return !scene_->IsEmpty(); }
    std::string Title() const override { return scene_->Contents().Title; }
    std::string Description() const override;
    std::vector<std::byte> Picture(const DocumentWriter& documents, PictureFormat format) const override;
    int LastItem() const override { return scene_->Items(); }
    int ItemAt(CanvasPoint place) const override { return HitAt(place).Item; }
    std::string TipAt(CanvasPoint place) const override;
    void BringIntoView(int item) override { BringIntoView(scene_->Track(item).Bounds()); }
    void ClickAt(CanvasPoint place) override;
    bool Drag(CanvasPoint from, CanvasPoint to) override;
    void ZoomAbout(CanvasPoint place, double factor) override;

    MapLook Look() const;
    MapHit HitAt(CanvasPoint place) const;
    void MoveTo(const MapWindow& window);
    void MoveBy(double across, double up);
    void BringIntoView(const WorldBox& bounds);
    void PaintMark(Canvas& canvas, const MapWindow& window);
    /// Where Enter stands for the place in the middle, it is marked.
    void PaintMiddle(QPainter& painter);
    /// Why there is no base map, in the upper left corner.
    void PaintProblem(QPainter& painter);

    BaseMap* under_;
    std::shared_ptr<const MapScene> scene_;
    MapWindow window_;
    bool isMoved_ = false;  ///< by the user; else it shows all, whatever its size
    std::optional<Position> mark_;
};

}  // namespace vantor
