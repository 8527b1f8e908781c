#pragma once

#include <string>
#include <vector>

#include "core/ports/DocumentWriter.h"

namespace vantor {

/// Every character is half as wide as the font is high; a line is 1.2 times as high.
class PlainMeasure : public TextMeasure {
public:
    double TextWidth(const std::string& text, const TextStyle& style) const override {
        return static_cast<double>(text.size()) * style.Size / 2;
    }
    double LineHeight(const TextStyle& style) const override { return style.Size * 1.2; }
};

/// Keeps what is drawn, in order of its kind.
class RecordingCanvas : public Canvas {
public:
    struct Text {
        CanvasBox Box;
        std::string Shown;
        TextStyle Style;
    };
    struct Line {
        std::vector<CanvasPoint> Points;
        LineStyle Style;
    };
    struct Dot {
        CanvasPoint Centre;
        double Diameter;
        Colour Ink;
    };
    struct Box {
        CanvasBox Where;
        Colour Ink;
    };
    std::vector<Text> Texts;
    std::vector<Line> Lines;
    std::vector<Line> Polylines;
    std::vector<Dot> Dots;
    std::vector<Box> Frames;
    std::vector<Box> Fills;
    struct Shape {
        std::vector<CanvasPoint> Outline;
        Colour Ink;
        double Opacity;
    };
    std::vector<Shape> Shapes;
    struct Picture {
        CanvasBox Where;
        CanvasBox Part;
    };
    std::vector<Picture> Pictures;

    double TextWidth(const std::string& text, const TextStyle& style) const override {
        return PlainMeasure().TextWidth(text, style);
    }
    double LineHeight(const TextStyle& style) const override { return PlainMeasure().LineHeight(style); }
    void DrawText(const CanvasBox& box, const std::string& text, const TextStyle& style) override {
        Texts.push_back({box, text, style});
    }
    void DrawLine(CanvasPoint from, CanvasPoint to, const LineStyle& style) override {
        Lines.push_back({{from, to}, style});
    }
    void DrawPolyline(std::span<const CanvasPoint> points, const LineStyle& style) override {
        Polylines.push_back({{points.begin(), points.end()}, style});
    }
    void DrawFrame(const CanvasBox& box, const LineStyle& style) override { Frames.push_back({box, style.Ink}); }
    void FillBox(const CanvasBox& box, Colour ink) override { Fills.push_back({box, ink}); }
    void FillShape(std::span<const CanvasPoint> outline, Colour ink, double opacity) override {
        Shapes.push_back({{outline.begin(), outline.end()}, ink, opacity});
    }
    void DrawDot(CanvasPoint centre, double diameter, Colour ink) override { Dots.push_back({centre, diameter, ink}); }
    void DrawPicture(const CanvasBox& box, const Pixels&, const CanvasBox& part) override {
        Pictures.push_back({box, part});
    }
    void DrawInside(const CanvasBox&, const std::function<void()>& draw) override { draw(); }
};

/// Draws what it is given on recording canvases and keeps these, one a page.
class FakeDocumentWriter : public DocumentWriter {
public:
    mutable PagedDocument Document;
    mutable std::vector<RecordingCanvas> Pages;
    mutable PictureFormat Format = PictureFormat::Pdf;

    const TextMeasure& Measure() const override { return measure_; }
    using DocumentWriter::Pdf;
    std::vector<std::byte> Pdf(const PagedDocument& document, const Progress&) const override {
        Keep(document);
        return {std::byte{'%'}, std::byte{'P'}};
    }
    std::vector<std::byte> Picture(CanvasSize size, const Drawing& drawing, PictureFormat format) const override {
        Keep({"", size, {drawing}});
        Format = format;
        return {std::byte{0x89}, std::byte{'P'}};
    }

private:
    void Keep(const PagedDocument& document) const {
        Document = document;
        Pages.assign(document.Pages.size(), {});
        for (std::size_t page = 0; page < Pages.size(); ++page) document.Pages[page](Pages[page]);
    }

    PlainMeasure measure_;
};

}  // namespace vantor
