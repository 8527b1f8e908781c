#include "platform/QtDocumentWriter.h"

#include <QBuffer>
#include <QImage>
#include <QPdfWriter>
#include <QSvgGenerator>
#include <QtMath>

#include "core/Numeric.h"
#include "core/RunTimeError.h"
#include "core/forms/Named.h"
#include "platform/PdfBookmarks.h"

namespace vantor {
namespace {

constexpr double PointsPerInch = 72;
constexpr int PdfResolution = 1200;
/// Pixels of a PNG to the point.
constexpr double PixelsPerPoint = 192 / PointsPerInch;

std::vector<std::byte> BytesOf(const QByteArray& bytes) {
    const auto* first = reinterpret_cast<const std::byte*>(bytes.constData());
    return {first, first + bytes.size()};
}

QByteArray PngOf(CanvasSize size, const Drawing& drawing) {
    QImage image(qCeil(size.Width * PixelsPerPoint), qCeil(size.Height * PixelsPerPoint), QImage::Format_RGB32);
    if (image.isNull()) throw RunTimeError(ErrorNumber::OutOfMemory);
    image.setDotsPerMeterX(Round32(PixelsPerPoint * PointsPerInch / 0.0254));
    image.setDotsPerMeterY(image.dotsPerMeterX());
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing);
    painter.scale(PixelsPerPoint, PixelsPerPoint);
    PainterCanvas canvas(painter);
    drawing(canvas);
    painter.end();
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return buffer.data();
}

QByteArray SvgOf(CanvasSize size, const Drawing& drawing) {
    QBuffer buffer;
    QSvgGenerator generator;
    generator.setOutputDevice(&buffer);
    generator.setResolution(Round32(PointsPerInch));
    generator.setSize(QSizeF(size.Width, size.Height).toSize());
    generator.setViewBox(QRectF(0, 0, size.Width, size.Height));
    generator.setTitle(QStringLiteral("Vantor"));
    QPainter painter(&generator);
    PainterCanvas canvas(painter);
    canvas.FillBox({0, 0, size.Width, size.Height}, {255, 255, 255});
    drawing(canvas);
    painter.end();
    return buffer.data();
}

}  // namespace

void QtDocumentWriter::NeedFonts() const {
    if (!QCoreApplication::startingUp()) return;
    // Standard error is for what the command says; Qt would remark on a session that has no desktop.
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
    qputenv("QT_QPA_PLATFORM", "offscreen");
    static int count = 1;
    static char name[] = "vantor";
    static char* arguments[] = {name, nullptr};
    application_ = std::make_unique<QGuiApplication>(count, arguments);
}

const TextMeasure& QtDocumentWriter::Measure() const {
    NeedFonts();
    return measure_;
}

std::vector<std::byte> QtDocumentWriter::Pdf(const PagedDocument& document, const Progress& progress) const {
    NeedFonts();
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    QPdfWriter writer(&buffer);
    writer.setTitle(ToQt(document.Title));
    writer.setCreator(QStringLiteral("Vantor"));
    writer.setResolution(PdfResolution);
    writer.setPageLayout(PageLayoutOf(document.Page));
    QPainter painter(&writer);
    const bool isWhole = DrawPages(painter, writer, document, progress);
    painter.end();
    if (!isWhole) return {};
    std::vector<std::byte> pdf = BytesOf(buffer.data());
    return document.Bookmarks.empty() ? pdf : WithBookmarks(pdf, document.Bookmarks);
}

std::vector<std::byte> QtDocumentWriter::Picture(CanvasSize size, const Drawing& drawing, PictureFormat format) const {
    NeedFonts();
    switch (format) {
        case PictureFormat::Png: return BytesOf(PngOf(size, drawing));
        case PictureFormat::Svg: return BytesOf(SvgOf(size, drawing));
        case PictureFormat::Pdf: return Pdf({"Vantor", size, {drawing}});
    }
    return {};
}

QPageLayout PageLayoutOf(CanvasSize page) {
    const bool isWide = page.Width > page.Height;
    const QSizeF sheet = isWide ? QSizeF(page.Height, page.Width) : QSizeF(page.Width, page.Height);
    return {QPageSize(sheet, QPageSize::Point), isWide ? QPageLayout::Landscape : QPageLayout::Portrait,
            QMarginsF(0, 0, 0, 0), QPageLayout::Point};
}

bool DrawPages(QPainter& painter, QPagedPaintDevice& device, const PagedDocument& document, const Progress& progress) {
    painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing);
    const double scale = device.logicalDpiX() / PointsPerInch;
    painter.scale(scale, scale);
    PainterCanvas canvas(painter);
    for (std::size_t page = 0; page < document.Pages.size(); ++page) {
        if (!progress(page, document.Pages.size())) return false;
        if (page > 0) device.newPage();
        document.Pages[page](canvas);
    }
    return true;
}

}  // namespace vantor
