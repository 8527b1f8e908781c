#include "plots/forms/TraceImage.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

namespace vantor {
namespace {

constexpr float SurfaceOpacity = 0.14F;

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

std::vector<Span> SpansOf(const QPolygonF& line, const QPointF& origin, double pixelRatio, int columns) {
    std::vector<Span> spans(static_cast<std::size_t>(columns));
    for (qsizetype i = 0; i + 1 < line.size(); ++i) {
        const QPointF from = (line[i] - origin) * pixelRatio;
        const QPointF to = (line[i + 1] - origin) * pixelRatio;
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

class Canvas {
public:
    explicit Canvas(const QSize& size) : image_(size, QImage::Format_ARGB32_Premultiplied) {
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

    QImage Image(double pixelRatio) {
        image_.setDevicePixelRatio(pixelRatio);
        return image_;
    }

private:
    QImage image_;
    QRgb* pixels_;
    qsizetype stride_;
};

}  // namespace

QImage TraceImage(const QPolygonF& line, const QRectF& rect, double pixelRatio, const QColor& colour, bool drawsLine) {
    const QSize size = (rect.size() * pixelRatio).toSize();
    const auto spans = SpansOf(line, rect.topLeft(), pixelRatio, size.width());
    Canvas canvas(size);
    QColor surface = colour;
    surface.setAlphaF(SurfaceOpacity);
    const double halfWidth = TraceWidth * pixelRatio / 2;
    for (int column = 0; column < size.width(); ++column) {
        const Span& span = spans[static_cast<std::size_t>(column)];
        if (span.IsEmpty()) continue;
        canvas.FillColumn(column, span.Top, size.height(), qPremultiply(surface.rgba()));
        if (drawsLine)
            canvas.FillColumn(column, span.Top - halfWidth, span.Bottom + halfWidth, qPremultiply(colour.rgba()));
    }
    return canvas.Image(pixelRatio);
}

}  // namespace vantor
