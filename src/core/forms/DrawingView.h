#pragma once

#include <QPixmap>
#include <QWidget>
#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "core/AppContext.h"

class QMenu;

namespace vantor {

/// What each kind of drawing has in its own way.
struct DrawingHabits {
    double Origin = 0;  ///< of the canvas, from the corner of the first pixel; lines may stand on pixel centres
    double KeyZoom = 1.5;
    double WheelZoom = 1.25;
    double PointedOpacity = 0.5;   ///< what is pointed at stands out less than what is chosen
    bool ZoomsOutOfWhole = false;  ///< there is more around what is shown whole
    const char* MenuName = "";
    const char* WholeName = "";  ///< of the menu's entry that shows all
    const char* WholeCaption = "";
    Qt::Key WholeKey = Qt::Key_0;
};

/// A drawing of items, as a plot or a map, that is looked at and chosen from. Dragging moves it, the wheel and the keys
/// + and - zoom, 0 shows it whole; in a window that scrolls the wheel zooms with Ctrl. A click chooses an item, Home
/// and End the first and the last; what is pointed at is told by a tool tip. The context menu has the zoom and the
/// picture.
class DrawingView : public QWidget {
public:
    /// The chosen item, from 1; 0 for none.
    int ChosenItem() const { return chosen_; }
    /// Chooses without calling OnChosen: for what is chosen elsewhere.
    void SetChosenItem(int item);
    /// The user chose another item, or the same with Ctrl or Shift.
    std::function<void()> OnChosen;
    /// Ctrl and Shift, as they were held when the user chose.
    Qt::KeyboardModifiers ChosenWith() const { return chosenWith_; }
    /// The user points at another item; 0 for none.
    std::function<void(int item)> OnPointed;
    /// Adds to the context menu; what lies under the pointer is as clicked first.
    std::function<void(QMenu& menu)> ExtendMenu;
    /// Where a picture is saved: a path without extension.
    std::function<std::string()> PictureStart;

    virtual bool IsWhole() const = 0;
    virtual void ShowWhole() = 0;
    /// About the middle; below 1 zooms out.
    void ZoomBy(double factor) { ZoomAbout(Middle(), factor); }

    void CopyPicture();
    void SavePicture();

protected:
    /// `context` is for the clipboard and for saving.
    DrawingView(AppContext& context, QWidget* parent, const DrawingHabits& habits);

    /// Draws all but what stands out. Returns what is to be read in its place, where there is nothing to draw.
    virtual QString Draw(Canvas& canvas) = 0;
    /// Draws an item once more, so that it stands out.
    virtual void DrawItem(Canvas& canvas, int item) = 0;
    /// Over the items that stand out.
    virtual void PaintOver(QPainter&) {}
    virtual bool HasDrawing() const = 0;
    virtual std::string Title() const = 0;
    virtual std::string Description() const = 0;
    virtual std::vector<std::byte> Picture(const DocumentWriter& documents, PictureFormat format) const = 0;

    /// Items are numbered up to this one.
    virtual int LastItem() const = 0;
    virtual int ItemAt(CanvasPoint place) const = 0;
    virtual std::string TipAt(CanvasPoint place) const = 0;
    virtual void BringIntoView(int item) = 0;
    /// A click that may have chosen an item before.
    virtual void ClickAt(CanvasPoint) {}
    /// False where it does not move.
    virtual bool Drag(CanvasPoint from, CanvasPoint to) = 0;
    virtual void ZoomAbout(CanvasPoint place, double factor) = 0;
    virtual CanvasPoint Middle() const { return {width() / 2.0, height() / 2.0}; }

    /// Another drawing, in which nothing is chosen.
    void BeginAnew();
    void Redraw();
    void DescribeItself();
    /// Whether an item stands out.
    bool HasItemOver() const { return pointed_ != 0 || chosen_ != 0; }
    /// As the keys for the next item and the one before do.
    void ChooseNext(const QKeyEvent& event);
    void ChooseBefore(const QKeyEvent& event);

    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
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
    CanvasPoint Place(QPointF pixel) const { return {pixel.x() - habits_.Origin, pixel.y() - habits_.Origin}; }
    void Prepare(QPainter& painter) const;
    void DrawBase();
    void PaintItems(QPainter& painter);
    void Click(QPointF pixel, Qt::KeyboardModifiers held);
    void Choose(int item, Qt::KeyboardModifiers held);
    void PointAt(int item);
    QMenu* MakeMenu();

    AppContext& context_;
    const DrawingHabits habits_;
    int chosen_ = 0;
    int pointed_ = 0;
    Qt::KeyboardModifiers chosenWith_;
    QPixmap base_;     ///< the drawing without what stands out; null when it is to be drawn anew
    QString problem_;  ///< why there is no drawing
    std::optional<QPointF> grabbed_;
    bool isDragging_ = false;
};

}  // namespace vantor
