#include "platform/DecodePicture.h"

#include <QBuffer>
#include <QImage>
#include <QImageReader>
#include <cstdint>

namespace vantor {

std::optional<Pixels> DecodePicture(std::span<const std::byte> file) {
    constexpr int MostPoints = 1024;
    QByteArray bytes =
        QByteArray::fromRawData(reinterpret_cast<const char*>(file.data()), static_cast<qsizetype>(file.size()));
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer);
    const QByteArray format = reader.format();
    const QSize size = reader.size();
    if ((format != "png" && format != "jpeg") || size.isEmpty() || size.width() > MostPoints ||
        size.height() > MostPoints)
        return std::nullopt;
    const QImage image = reader.read().convertToFormat(QImage::Format_ARGB32_Premultiplied);
    if (image.size() != size) return std::nullopt;
    const auto* points = reinterpret_cast<const std::uint32_t*>(image.constBits());
    return Pixels{
        size.width(), size.height(), {points, points + static_cast<std::ptrdiff_t>(size.width()) * size.height()}};
}

}  // namespace vantor
