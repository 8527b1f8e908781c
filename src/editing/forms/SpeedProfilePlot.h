#pragma once

#include <QBasicTimer>
#include <QPixmap>
#include <QWidget>
#include <array>
#include <functional>
#include <optional>

#include "plots/ProfileLines.h"

namespace vantor {

/// Draws a speed profile and lets the user move its lines with the mouse or the keyboard. Keys: 1, 2 and 3 choose the
/// start, end and ideal speed line, the arrows move it (with Shift by one unit), Page Up and Page Down scroll. Dragging
/// beside the lines moves the picture along the run.
///
/// The picture is kept as a pixmap; while a line moves only what it covers is painted anew.
class SpeedProfilePlot : public QWidget {
public:
    explicit SpeedProfilePlot(QWidget* parent);

    /// `profile` must outlive the plot; `nothingToDraw` is shown instead of it where it is not empty.
    void SetProfile(SpeedProfile* profile, QString nothingToDraw);
    /// Draws these lines, too, or none.
    void ShowProposal(const std::optional<ProposedBoundaries>& proposal);
    /// Paints the whole picture anew.
    void Redraw();
    /// Paints the lines anew where they have moved.
    void UpdateLines();
    /// The line that the keys move.
    ProfileLine ActiveLine() const { return active_; }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

    // What the user does. A line has been moved or let go already when its callback is called.
    std::function<void()> OnMoved;
    std::function<void(ProfileLine line, bool computes)> OnReleased;
    /// A line became the active one.
    std::function<void()> OnActivated;
    /// The pointer's x over the plot; nothing when it leaves.
    std::function<void(std::optional<double> x)> OnPointer;
    /// Steps through the scale list, towards smaller steps when positive, around a pixel.
    std::function<void(int steps, double x)> OnZoom;
    /// By axis values, to the right when positive.
    std::function<void(double axisValues)> OnScroll;

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void timerEvent(QTimerEvent* event) override;

private:
    bool IsDrawable() const { return profile_ != nullptr && nothingToDraw_.isEmpty(); }
    bool IsDragging() const { return profile_->Drag().DragLine() != ProfileLine::None; }
    void PlacePlotArea();
    void RenewPicture();
    void Pan(const QMouseEvent& event);
    void DragTo(QPointF pointer);
    void Release();
    void SetActive(ProfileLine line);
    ProfileLine LineUnder(QPointF pointer) const;
    void ShowCursor(QPointF pointer);
    bool MoveByKey(int key, bool oneUnit);
    double BeyondEdge() const;
    /// Brings a pixel that lies beyond the plot into its middle, as far as the run goes.
    void ScrollTo(double x);

    SpeedProfile* profile_ = nullptr;
    QString nothingToDraw_;
    QPixmap picture_;
    bool pictureIsStale_ = true;
    std::array<QRect, 3> painted_;  ///< bounds of the lines as they were painted last
    bool paintedShaded_ = false;
    std::optional<ProposedBoundaries> proposal_;
    ProfileLine active_ = ProfileLine::Start;
    QPointF pointer_;
    std::optional<QPoint> pressedAt_;   ///< where a line was grabbed, until the pointer goes on from there
    std::optional<double> pannedFrom_;  ///< x of the pointer while it drags the picture along the run
    int heldKey_ = 0;                   ///< the arrow key that moves a line while it is down
    int wheelAngle_ = 0;
    QBasicTimer edgeScroll_;
};

}  // namespace vantor
