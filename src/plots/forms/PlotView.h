#pragma once

#include <QPixmap>
#include <QWidget>
#include <functional>

#include "core/AppContext.h"
#include "plots/Plot.h"

class QMenu;

namespace vantor {

/// Shows a plot. Dragging moves it, the wheel and the keys + and - zoom, 0 shows it whole; in a window that scrolls the
/// wheel zooms with Ctrl. The arrow keys, Home and End step through its items, a click chooses one, and what is pointed
/// at is told by a tool tip. The context menu has the zoom and the picture.
class PlotView : public QWidget {
public:
    /// `context` is for the clipboard and for saving.
    PlotView(AppContext& context, QWidget* parent);

    /// Shows a plot; the part of another one with the same axes stays in view. No item is chosen then.
    void Show(Plot plot);
    const Plot& Shown() const { return plot_; }
    /// Where a title or a legend stands beside the view, it needs none of its own; pictures have both.
    void SetLook(bool hasTitle, bool hasLegend);

    /// The chosen item, from 1; 0 for none.
    int ChosenItem() const { return chosen_; }
    /// Chooses without calling OnChosen: for what is chosen elsewhere.
    void SetChosenItem(int item);
    /// The user chose another item.
    std::function<void()> OnChosen;
    /// The user points at another item; 0 for none.
    std::function<void(int item)> OnPointed;
    /// Adds to the context menu, which chooses what lies under the pointer first.
    std::function<void(QMenu& menu)> ExtendMenu;
    /// Where a picture is saved: a path without extension.
    std::function<std::string()> PictureStart;

    const PlotWindow& Window() const { return window_; }
    bool IsWhole() const { return window_ == plot_.Whole(); }
    /// About the middle; below 1 zooms out.
    void ZoomBy(double factor);
    void ShowWhole();

    void CopyPicture();
    void SavePicture();

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
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
    CanvasBox Box() const;
    PlotLook Look() const;
    /// Nothing where the plot cannot be drawn.
    std::optional<PlotMap> Map() const;
    PlotHit HitAt(QPointF place) const;
    void SetWindow(const PlotWindow& window);
    void ZoomAbout(QPointF place, double factor);
    void Redraw();
    QString DrawBase();
    void Choose(int item);
    void PointAt(int item);
    void BringIntoView(int item);
    void DescribeItself();
    QMenu* MakeMenu();

    AppContext& context_;
    Plot plot_;
    PlotWindow window_;
    bool hasTitle_ = false;
    bool hasLegend_ = true;
    int chosen_ = 0;
    int pointed_ = 0;
    QPixmap base_;     ///< the plot without what is chosen; null when it is to be drawn anew
    QString problem_;  ///< why there is no plot
    std::optional<QPointF> grabbed_;
    bool isDragging_ = false;
};

/// The sample of a legend's entry beside its caption.
class PlotSampleView : public QWidget {
public:
    PlotSampleView(PlotSample sample, QWidget* parent);
    QSize sizeHint() const override { return {28, 16}; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    PlotSample sample_;
};

}  // namespace vantor
