#include "analysis/forms/DelayChartPlot.h"

#include <QFontInfo>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QPainter>
#include <QToolTip>
#include <algorithm>

#include "core/Numeric.h"
#include "core/forms/Named.h"
#include "core/forms/PainterCanvas.h"
#include "core/forms/Theme.h"

namespace vantor {
namespace {

constexpr double Reach = 8;
/// Lines stand on pixel centres.
constexpr double PixelCentre = 0.5;

QString Seconds(double seconds) { return ToQt(OneDecimal(seconds)) + QStringLiteral(" s"); }

QString NotCountedText(const DelayRun& run) { return run.IsCounted ? QString() : QStringLiteral(" (not counted)"); }

QString ToolTipOf(const DelayRun& run) {
    return QStringLiteral("%1\nControl delay: %2 s%4\nRunning average: %3")
        .arg(ToQt(run.Name), QString::number(run.ControlDelay), Seconds(run.RunningAverage), NotCountedText(run));
}

}  // namespace

QString DelaysInWords(const DelaySeries& series, int run) {
    const DelayRun& values = series.Runs()[run];
    return QStringLiteral("Run %1, %2: control delay %3 s%5, running average %4")
        .arg(QString::number(values.Number), ToQt(values.Name), QString::number(values.ControlDelay),
             Seconds(values.RunningAverage), NotCountedText(values));
}

DelayChartPlot::DelayChartPlot(QWidget* parent) : QWidget(parent) {
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_OpaquePaintEvent);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
}

void DelayChartPlot::Show(DelaySeries series) {
    series_ = std::move(series);
    chosen_ = 0;
    update();
}

QSize DelayChartPlot::sizeHint() const { return {900, 460}; }
QSize DelayChartPlot::minimumSizeHint() const { return {420, 240}; }

CanvasBox DelayChartPlot::Box() const {
    constexpr double Edge = 6;
    return {Edge, Edge, width() - 2 * Edge, height() - 2 * Edge};
}

DelayChartStyle DelayChartPlot::Style() const {
    return {ColoursOf(palette()), static_cast<double>(QFontInfo(font()).pixelSize()), {}, false};
}

DelayScale DelayChartPlot::Scale() const { return {DelayPlotEdgesOf(FontMeasure(), Box(), series_, Style()), series_}; }

int DelayChartPlot::RunAt(QPointF place) const {
    try {
        return DelayRunNear(series_, Scale(), {place.x() - PixelCentre, place.y() - PixelCentre}, Reach);
    } catch (const RunTimeError&) {
        return 0;  // the chart says why it could not be drawn
    }
}

bool DelayChartPlot::event(QEvent* event) {
    if (event->type() != QEvent::ToolTip) return QWidget::event(event);
    const auto* help = static_cast<QHelpEvent*>(event);
    const int run = RunAt(help->pos());
    if (run == 0) {
        QToolTip::hideText();
        event->ignore();
    } else {
        // Plain, whatever characters a run's name has.
        const QString text = ToolTipOf(series_.Runs()[run]).toHtmlEscaped();
        QToolTip::showText(help->globalPos(), QStringLiteral("<p style='white-space:pre'>") + text, this);
    }
    return true;
}

void DelayChartPlot::paintEvent(QPaintEvent*) {
    const Colours& colours = ColoursOf(palette());
    QPainter painter(this);
    painter.fillRect(rect(), Ink(colours.Base));
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(PixelCentre, PixelCentre);
    QString problem;
    try {
        PainterCanvas canvas(painter);
        DrawDelayChart(canvas, Box(), series_, Style());
        PaintChosen(painter);
    } catch (const RunTimeError& error) {
        problem = QStringLiteral("A delay lies too far below 0 to be drawn.\n\n") + ToQt(error.Message());
    }
    painter.restore();
    painter.setPen(Ink(colours.Text));
    painter.drawText(rect().adjusted(24, 24, -24, -24), Qt::AlignCenter | Qt::TextWordWrap, problem);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(hasFocus() ? palette().color(QPalette::Highlight) : Ink(colours.Grid));
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

void DelayChartPlot::PaintChosen(QPainter& painter) const {
    if (chosen_ == 0) return;
    constexpr double Ring = 6;
    const DelayScale scale = Scale();
    const double x = scale.XOf(chosen_);
    const double y = scale.YOfDelay(series_.Runs()[chosen_].ControlDelay);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(palette().color(QPalette::Highlight), 2));
    painter.drawEllipse(QPointF(x, y), Ring, Ring);
    painter.setPen(QPen(palette().color(QPalette::Highlight), 1));
    painter.drawLine(QPointF(x, scale.Edges().Top), QPointF(x, std::max<double>(y - Ring, scale.Edges().Top)));
    painter.drawLine(QPointF(x, std::min<double>(y + Ring, scale.Edges().Bottom)), QPointF(x, scale.Edges().Bottom));
}

void DelayChartPlot::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    update();
}

void DelayChartPlot::mousePressEvent(QMouseEvent* event) {
    const int run = RunAt(event->position());
    if (event->button() == Qt::LeftButton && run != 0) Choose(run);
}

void DelayChartPlot::keyPressEvent(QKeyEvent* event) {
    const int last = series_.RunCount();
    switch (event->key()) {
        case Qt::Key_Right: return Choose(std::min(chosen_ + 1, last));
        case Qt::Key_Left: return Choose(chosen_ == 0 ? last : std::max(chosen_ - 1, 1));
        case Qt::Key_Home: return Choose(std::min(1, last));
        case Qt::Key_End: return Choose(last);
        default: QWidget::keyPressEvent(event);
    }
}

void DelayChartPlot::Choose(int run) {
    if (run == chosen_) return;
    chosen_ = run;
    update();
    if (OnChosen) OnChosen();
}

void DelayChartPlot::focusInEvent(QFocusEvent*) { update(); }
void DelayChartPlot::focusOutEvent(QFocusEvent*) { update(); }

DelayLegendSample::DelayLegendSample(DelayLegend entry, QWidget* parent) : QWidget(parent), entry_(entry) {
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void DelayLegendSample::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    PainterCanvas canvas(painter);
    DrawLegendSample(canvas, {0, 0, double(width()), double(height())}, entry_, ColoursOf(palette()));
}

}  // namespace vantor
