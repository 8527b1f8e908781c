#pragma once

#include <QGuiApplication>
#include <QPageLayout>
#include <QPagedPaintDevice>
#include <memory>

#include "core/forms/PainterCanvas.h"
#include "core/ports/DocumentWriter.h"

namespace vantor {

/// Makes documents with Qt. Where the program has no window it starts Qt without a display for their fonts, when the
/// first document is made.
class QtDocumentWriter : public DocumentWriter {
public:
    const TextMeasure& Measure() const override;
    using DocumentWriter::Pdf;
    std::vector<std::byte> Pdf(const PagedDocument& document, const Progress& progress) const override;
    std::vector<std::byte> Picture(CanvasSize size, const Drawing& drawing, PictureFormat format) const override;

private:
    void NeedFonts() const;

    FontMeasure measure_;
    mutable std::unique_ptr<QGuiApplication> application_;
};

/// A page of that size without margins; a wide one is a turned sheet.
QPageLayout PageLayoutOf(CanvasSize page);

/// Draws the pages on a paged device, whose page is as large as the document's. False when it was stopped.
bool DrawPages(QPainter& painter, QPagedPaintDevice& device, const PagedDocument& document,
               const Progress& progress = {});

}  // namespace vantor
