#pragma once

#include <string>
#include <vector>

#include "core/AppSettings.h"
#include "core/ports/DocumentWriter.h"

namespace vantor {

enum class Paper { Letter, A4 };

/// Width and height of a sheet in points.
CanvasSize PageSizeOf(Paper paper, bool isLandscape);

/// On what reports are printed.
struct PageChoice {
    Paper Sheet = Paper::Letter;
    bool IsLandscape = false;
    bool HasHeadings = true;  ///< the lines of the settings, at the top of every report
};

/// What stands on every page around its contents.
struct PageFrame {
    CanvasSize Page;
    IndexedArray<std::string, 1, 3> Headings;
    std::string Study;    ///< at the foot
    std::string Printed;  ///< date and time, at the foot
    bool HasPageNumbers = false;
};

/// Lays out reports from top to bottom, page by page. A report begins on a page of its own with the headings and its
/// title; the pages behind it have a running head. Lengths are points.
class ReportPages {
public:
    /// Keeps clear of the edges that printers do not reach.
    static constexpr double Margin = 40;

    ReportPages(PageFrame frame, const TextMeasure& measure) : frame_(std::move(frame)), measure_(measure) {}

    const TextMeasure& Measure() const { return measure_; }
    double Left() const { return Margin + SideIndent; }
    double Width() const { return frame_.Page.Width - 2 * Left(); }
    /// From the current place down to the foot of the page.
    double Room() const { return Bottom() - y_; }
    /// A height that fits on a page of its own.
    double WholePage() const;

    void BeginReport(const std::string& title);
    /// Goes on to the next page, unless `height` fits here or nothing stands below the head yet. True when it did.
    bool Need(double height);
    /// The top of a strip at the current place, on the next page where it does not fit here.
    double Take(double height);
    /// Leaves room empty, where there is any.
    void Skip(double height) { y_ += height; }
    /// Draws on the current page.
    void Draw(Drawing drawing) { pages_.back().push_back(std::move(drawing)); }
    void DrawText(const CanvasBox& box, const std::string& text, const TextStyle& style);
    void DrawRule(double y, const LineStyle& style);
    /// A paragraph across the page.
    void AddText(const std::string& text, const TextStyle& style);
    /// A heading that stays with what follows it, `following` points high.
    void AddHeading(const std::string& text, double following);

    /// The pages with their feet. Nothing can be added afterwards.
    PagedDocument Finish(std::string title);

private:
    static constexpr double SideIndent = 10;
    double Bottom() const;
    void BeginPage();
    void DrawFoot(std::size_t page);

    PageFrame frame_;
    const TextMeasure& measure_;
    std::string title_;
    std::vector<std::vector<Drawing>> pages_;
    std::vector<Bookmark> bookmarks_;  ///< a report each
    double y_ = 0;
    double firstY_ = 0;  ///< below the head of the page
};

}  // namespace vantor
