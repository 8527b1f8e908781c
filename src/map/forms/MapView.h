#pragma once

#include <QPixmap>
#include <QWidget>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "core/AppContext.h"
#include "map/MapDrawing.h"
#include "map/forms/BaseMap.h"

class QMenu;

namespace vantor {

/// Shows a map. Dragging and the arrow keys move it, the wheel and the keys + and - zoom, F or 0 shows all; in a window
/// that scrolls the wheel zooms with Ctrl. A click chooses a track, Page Up and Page Down, Home and End step through
/// them; what is pointed at is told by a tool tip. The context menu has the zoom and the picture.
class MapView : public QWidget {
public:
    /// `context` is for the clipboard, for saving and for the base map.
    MapView(AppContext& context, QWidget* parent);

    /// Shows a map; what the user has moved to stays in view where the new one has something there. No item is chosen
    /// then.
    void Show(std::shared_ptr<const MapScene> scene);
    /// A text in place of a map.
    void ShowText(const std::string& text);
    const MapScene& Shown() const { return *scene_; }

    /// The chosen track, from 1; 0 for none.
    int ChosenItem() const { return chosen_; }
    /// Chooses without calling OnChosen: for what is chosen elsewhere.
    void SetChosenItem(int item);
    /// The user chose another track.
    std::function<void()> OnChosen;
    /// The user clicked a place, or pressed Enter, which stands for the place in the middle. Without it places mean
    /// nothing here.
    std::function<void(const Position& place)> OnPlace;
    /// Rings a place, as that of a row of a list, and brings it into view; nothing for none.
    void SetMark(const std::optional<Position>& place);
    const std::optional<Position>& Mark() const { return mark_; }
    /// Adds to the context menu; the place under the pointer is as clicked first.
    std::function<void(QMenu& menu)> ExtendMenu;
    /// Where a picture is saved: a path without extension.
    std::function<std::string()> PictureStart;

    MapWindow Window() const;
    void ShowAll();
    /// About the middle.
    void ZoomBy(double levels);
    void CopyPicture();
    void SavePicture();

    QSize sizeHint() const override { return {640, 420}; }
    QSize minimumSizeHint() const override { return {160, 60}; }

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    MapLook Look() const;
    MapHit HitAt(QPointF place) const;
    void MoveTo(const MapWindow& window);
    void MoveBy(double across, double up);
    void Redraw();
    void DrawBase();
    void PaintOver(QPainter& painter);
    /// Why there is no base map, in the upper left corner.
    void PaintProblem(QPainter& painter);
    void Choose(int item);
    void PointAt(int item);
    void BringIntoView(int item);
    void BringIntoView(const WorldBox& bounds);
    void PaintMark(Canvas& canvas, const MapWindow& window);
    void DescribeItself();
    std::vector<std::byte> Picture(PictureFormat format) const;
    QMenu* MakeMenu();

    AppContext& context_;
    BaseMap* under_;
    std::shared_ptr<const MapScene> scene_;
    MapWindow window_;
    bool isMoved_ = false;  ///< by the user; else it shows all, whatever its size
    int chosen_ = 0;
    int pointed_ = 0;
    std::optional<Position> mark_;
    QPixmap base_;  ///< the map without what is chosen; null when it is to be drawn anew
    std::optional<QPointF> grabbed_;
    bool isDragging_ = false;
};

}  // namespace vantor
