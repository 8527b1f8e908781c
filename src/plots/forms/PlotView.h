#pragma once

#include "core/forms/DrawingView.h"
#include "plots/Plot.h"

namespace vantor {

/// Shows a plot. The arrow keys step through its items.
class PlotView : public DrawingView {
public:
    PlotView(AppContext& context, QWidget* parent);

    /// Shows a plot; the part of another one with the same axes stays in view. No item is chosen then.
    void Show(Plot plot);
    const Plot& Shown() const { return plot_; }
    /// Where a title or a legend stands beside the view, it needs none of its own; pictures have both.
    void SetLook(bool hasTitle, bool hasLegend);

    const PlotWindow& Window() const { return window_; }
    bool IsWhole() const override { return window_ == plot_.Whole(); }
    void ShowWhole() override { SetWindow(plot_.Whole()); }

    QSize sizeHint() const override { return {900, 460}; }
    QSize minimumSizeHint() const override { return {420, 240}; }

protected:
    void keyPressEvent(QKeyEvent* event) override;
    std::string Description() const override;
    std::string TipAt(CanvasPoint place) const override { return TextOf(ItemAt(place)); }
    QString Draw(Canvas& canvas) override;
    bool Drag(CanvasPoint from, CanvasPoint to) override;
    void ZoomAbout(CanvasPoint place, double factor) override;
    CanvasBox Box() const;
    PlotLook Look() const;
    /// Nothing where the plot cannot be drawn.
    std::optional<PlotMap> Map() const;

private:
    void DrawItem(Canvas& canvas, int item) override;
    bool HasDrawing() const override { return plot_.EmptyText.empty() && Map().has_value(); }
    std::string Title() const override { return plot_.Axes.Title; }
    std::vector<std::byte> Picture(const DocumentWriter& documents, PictureFormat format) const override;
    int LastItem() const override { return static_cast<int>(plot_.Items.size()); }
    int ItemAt(CanvasPoint place) const override;
    void BringIntoView(int item) override;
    CanvasPoint Middle() const override;

    void SetWindow(const PlotWindow& window);
    std::string TextOf(int item) const;

    Plot plot_;
    PlotWindow window_;
    bool hasTitle_ = false;
    bool hasLegend_ = true;
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
