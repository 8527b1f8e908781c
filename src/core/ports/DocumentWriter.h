#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "core/Progress.h"
#include "core/ports/Canvas.h"

namespace vantor {

/// Draws a picture or a page; it may be called more than once.
using Drawing = std::function<void(Canvas&)>;

/// Width and height in points.
struct CanvasSize {
    double Width = 0;
    double Height = 0;
};

enum class PictureFormat { Png, Svg, Pdf };

/// Leads a reader to a page, from 0.
struct Bookmark {
    std::string Title;  ///< UTF-8
    std::size_t Page = 0;
};

/// Pages of one size, without margins: what is drawn keeps clear of the edges itself.
struct PagedDocument {
    std::string Title;  ///< UTF-8
    CanvasSize Page;
    std::vector<Drawing> Pages;
    std::vector<Bookmark> Bookmarks = {};
};

/// Makes files of drawings. Needs no display.
class DocumentWriter {
public:
    virtual ~DocumentWriter() = default;
    /// The measures of the fonts that documents are drawn with.
    virtual const TextMeasure& Measure() const = 0;
    /// The bytes of a PDF file; none when it was stopped.
    virtual std::vector<std::byte> Pdf(const PagedDocument& document, const Progress& progress) const = 0;
    std::vector<std::byte> Pdf(const PagedDocument& document) const { return Pdf(document, Progress()); }
    /// The bytes of a picture on white; a PNG has 192 pixels to the inch.
    virtual std::vector<std::byte> Picture(CanvasSize size, const Drawing& drawing, PictureFormat format) const = 0;
};

}  // namespace vantor
