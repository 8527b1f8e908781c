#pragma once

#include <QWidget>
#include <functional>

#include "analysis/DelayChart.h"

namespace vantor {

/// Draws the delays of a study and lets the user choose a run with the mouse or the arrow keys, Home and End. Tool tips
/// tell the values of the points.
class DelayChartPlot : public QWidget {
public:
    explicit DelayChartPlot(QWidget* parent);

    /// No run is chosen then.
    void Show(DelaySeries series);
    const DelaySeries& Series() const { return series_; }

    /// The chosen run, from 1; 0 for none.
    int ChosenRun() const { return chosen_; }
    /// Another run was chosen.
    std::function<void()> OnChosen;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void changeEvent(QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    CanvasBox Box() const;
    DelayChartStyle Style() const;
    DelayScale Scale() const;
    /// The run whose point lies there, from 1; 0 for none.
    int RunAt(QPointF place) const;
    void Choose(int run);
    void PaintChosen(QPainter& painter) const;

    DelaySeries series_;
    int chosen_ = 0;
};

/// The sample of a legend's entry.
class DelayLegendSample : public QWidget {
public:
    DelayLegendSample(DelayLegend entry, QWidget* parent);
    QSize sizeHint() const override { return {28, 16}; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    DelayLegend entry_;
};

/// A run's number, name and values in one line.
QString DelaysInWords(const DelaySeries& series, int run);

}  // namespace vantor
