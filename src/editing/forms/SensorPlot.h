#pragma once

#include <QWidget>
#include <cstdint>
#include <functional>
#include <optional>

#include "editing/SensorView.h"

namespace vantor {

/// Draws a run's sensor data. A click or the keys choose the active data point, the wheel changes how much of the run
/// is visible, dragging or the wheel with Shift moves along it.
class SensorPlot : public QWidget {
public:
    SensorPlot(QWidget* parent, SensorView& view);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

    /// The user wants another data point, which may lie before the first or behind the last one.
    std::function<void(std::int32_t point)> OnChosen;
    /// The user wants to see less of the run (positive) or more, around a pixel.
    std::function<void(int steps, double x)> OnZoom;

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    /// Where the left button went down and where the plot began then.
    struct Press {
        double X = 0;
        double Offset = 0;
        bool IsDrag = false;
    };

    void PlacePlotArea();
    void ScrollTo(double second);

    SensorView& view_;
    std::optional<Press> press_;
    int wheelAngle_ = 0;
};

}  // namespace vantor
