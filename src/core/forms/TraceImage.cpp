#include "core/forms/TraceImage.h"

#include <QImage>
#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

#include "core/forms/Theme.h"

namespace vantor {
namespace {

/// The part of a pixel column that the line covers.
struct Span {
    double Top = std::numeric_limits<double>::max();
    double Bottom = std::numeric_limits<double>::lowest();
    bool IsEmpty() const { return Top > Bottom; }
    void Take(double y) {
        Top = std::min(Top, y);
        Bottom = std::max(Bottom, y);
    }
};

std::vector<Span> SpansOf(std::span<const CanvasPoint> line, const QPointF& origin, double pixelRatio, int columns) {
    std::vector<Span> spans(static_cast<std::size_t>(columns));
    const auto pixel = [&](CanvasPoint point) { return (QPointF(point.X, point.Y) - origin) * pixelRatio; };
    for (std::size_t i = 0; i + 1 < line.size(); ++i) {
        const QPointF from = pixel(line[i]);
        const QPointF to = pixel(line[i + 1]);
        const double slope = to.x() > from.x() ? (to.y() - from.y()) / (to.x() - from.x()) : 0;
        const int first = static_cast<int>(std::max(0.0, std::floor(from.x())));
        const int last = static_cast<int>(std::min(columns - 1.0, std::floor(to.x())));
        for (int column = first; column <= last; ++column) {
            const double left = std::max<double>(column, from.x());
            const double right = std::min(column + 1.0, to.x());
            Span& span = spans[static_cast<std::size_t>(column)];
            span.Take(from.y() + (left - from.x()) * slope);
            span.Take(right < to.x() ? from.y() + (right - from.x()) * slope : to.y());
        }
    }
    return spans;
}

QRgb Mixed(QRgb under, QRgb over, double coverage) {
    const auto part = [&](int below, int above) { return static_cast<int>(below + (above - below) * coverage); };
    return qRgba(part(qRed(under), qRed(over)), part(qGreen(under), qGreen(over)), part(qBlue(under), qBlue(over)),
                 part(qAlpha(under), qAlpha(over)));
}

class Columns {
public:
    explicit Columns(const QSize& size) : image_(size, QImage::Format_ARGB32_Premultiplied) {
        image_.fill(Qt::transparent);
        pixels_ = reinterpret_cast<QRgb*>(image_.bits());
        stride_ = image_.bytesPerLine() / static_cast<qsizetype>(sizeof(QRgb));
    }

    void FillColumn(int column, double top, double bottom, QRgb premultiplied) {
        top = std::max(top, 0.0);
        bottom = std::min<double>(bottom, image_.height());
        const int firstWhole = static_cast<int>(std::ceil(top));
        const int endWhole = static_cast<int>(bottom);
        QRgb* const pixels = pixels_ + column;
        for (int row = firstWhole; row < endWhole; ++row) pixels[row * stride_] = premultiplied;
        const auto fillPart = [&](int row, double coverage) {
            if (coverage > 0) pixels[row * stride_] = Mixed(pixels[row * stride_], premultiplied, coverage);
        };
        fillPart(firstWhole - 1, std::min<double>(bottom, firstWhole) - top);
        if (endWhole >= firstWhole) fillPart(endWhole, bottom - endWhole);
    }

    /// From a row down to the last.
    void FillRows(int column, int columns, int top, QRgb premultiplied) {
        for (int row = top; row < image_.height(); ++row)
            std::fill_n(pixels_ + row * stride_ + column, columns, premultiplied);
    }

    void Paint(QPainter& painter, QPointF place, double pixelRatio) {
        image_.setDevicePixelRatio(pixelRatio);
        painter.drawImage(place, image_);
    }

private:
    QImage image_;
    QRgb* pixels_;
    qsizetype stride_;
};

}  // namespace

void PaintTraceImage(QPainter& painter, std::span<const CanvasPoint> line, const QRectF& rect, const LineStyle& style,
                     double opacity, bool drawsLine) {
    const double pixelRatio = painter.device()->devicePixelRatioF();
    const QSize size = (rect.size() * pixelRatio).toSize();
    const auto spans = SpansOf(line, rect.topLeft(), pixelRatio, size.width());
    const double halfWidth = style.Width * pixelRatio / 2;
    // Nothing is above the highest point.
    const double highest = std::ranges::min_element(spans, {}, &Span::Top)->Top - halfWidth;
    const double skipped = std::floor(std::clamp(highest, 0.0, size.height() - 1.0));
    const double height = size.height() - skipped;
    Columns image(QSize(size.width(), static_cast<int>(height)));
    const QColor colour = Ink(style.Ink);
    QColor surface = colour;
    surface.setAlphaF(static_cast<float>(opacity));
    // Below the lowest point of a strip the surface is filled row by row, as the pixels lie in the memory.
    constexpr int Strip = 16;
    double below = height;
    for (int column = 0; column < size.width(); ++column) {
        const auto index = static_cast<std::size_t>(column);
        if (column % Strip == 0) {
            const auto strip = std::span(spans).subspan(index, std::min<std::size_t>(Strip, spans.size() - index));
            const double lowest = std::ranges::max_element(strip, {}, &Span::Top)->Top - skipped;
            below = std::ceil(std::clamp(lowest, 0.0, height));
            image.FillRows(column, static_cast<int>(strip.size()), static_cast<int>(below),
                           qPremultiply(surface.rgba()));
        }
        const Span& span = spans[index];
        if (span.IsEmpty()) continue;
        const double top = span.Top - skipped;
        image.FillColumn(column, top, below, qPremultiply(surface.rgba()));
        if (drawsLine)
            image.FillColumn(column, top - halfWidth, span.Bottom - skipped + halfWidth, qPremultiply(colour.rgba()));
    }
    image.Paint(painter, {rect.left(), rect.top() + skipped / pixelRatio}, pixelRatio);
}

}  // namespace vantor
