#include "reports/ReportPages.h"

#include <memory>

#include "core/Text.h"
#include "reports/ReportText.h"

namespace vantor {
namespace {

constexpr CanvasSize LetterSize{612, 792};
constexpr CanvasSize A4Size{595, 842};
constexpr double FootHeight = 14;
constexpr double FootDistance = 8;
constexpr double HeadDistance = 10;

}  // namespace

CanvasSize PageSizeOf(Paper paper, bool isLandscape) {
    const CanvasSize upright = paper == Paper::A4 ? A4Size : LetterSize;
    return isLandscape ? CanvasSize{upright.Height, upright.Width} : upright;
}

double ReportPages::Bottom() const { return frame_.Page.Height - Margin - FootHeight - FootDistance; }

double ReportPages::WholePage() const {
    return Bottom() - Margin - measure_.LineHeight(CaptionStyle) - HeadDistance - HeadDistance / 2;
}

void ReportPages::BeginPage() {
    pages_.emplace_back();
    y_ = Margin;
}

void ReportPages::BeginReport(const std::string& title) {
    BeginPage();
    bookmarks_.push_back({title, pages_.size() - 1});
    title_ = title;
    for (int line = 1; line <= 3; ++line) {
        const std::string text(Trim(frame_.Headings[line]));
        if (!text.empty()) AddText(text, line == 1 ? OrganizationStyle : HeadingStyle);
    }
    DrawRule(y_ + HeadDistance / 2, ReportRule);
    Skip(HeadDistance + HeadDistance / 2);
    const double titleWidth = measure_.TextWidth(title, TitleStyle) + HeadDistance;
    const double titleHeight = measure_.LineHeight(TitleStyle);
    DrawText({Left(), y_, Width(), titleHeight}, title, TitleStyle);
    DrawText({Left() + titleWidth, y_, Width() - titleWidth, titleHeight}, frame_.Study,
             OnSide(HeadingStyle, TextSide::Right));
    Skip(titleHeight + HeadDistance);
    firstY_ = y_;
}

bool ReportPages::Need(double height) {
    if (height <= Room() || y_ <= firstY_) return false;
    BeginPage();
    const double line = measure_.LineHeight(CaptionStyle);
    const CanvasBox box{Left(), y_, Width(), line};
    const std::string continued = title_ + " (continued)";
    const double right = measure_.TextWidth(continued, CaptionStyle) + HeadDistance;
    DrawText({box.X, box.Y, box.Width - right, line}, std::string(Trim(frame_.Headings[1])), CaptionStyle);
    DrawText(box, continued, OnSide(CaptionStyle, TextSide::Right));
    DrawRule(y_ + line + HeadDistance / 2, ReportRule);
    y_ += line + HeadDistance + HeadDistance / 2;
    firstY_ = y_;
    return true;
}

double ReportPages::Take(double height) {
    Need(height);
    const double top = y_;
    y_ += height;
    return top;
}

void ReportPages::DrawText(const CanvasBox& box, const std::string& text, const TextStyle& style) {
    if (text.empty()) return;
    Draw([box, text, style](Canvas& canvas) { canvas.DrawText(box, text, style); });
}

void ReportPages::DrawRule(double y, const LineStyle& style) {
    const CanvasPoint from{Left(), y};
    const CanvasPoint to{Left() + Width(), y};
    Draw([from, to, style](Canvas& canvas) { canvas.DrawLine(from, to, style); });
}

void ReportPages::AddText(const std::string& text, const TextStyle& style) {
    const double height = measure_.LineHeight(style);
    for (const std::string& line : WrappedLines(text, Width(), style, measure_)) {
        const double y = Take(height);
        DrawText({Left(), y, Width(), height}, line, style);
    }
}

void ReportPages::AddHeading(const std::string& text, double following) {
    Need(measure_.LineHeight(SectionStyle) + following);
    AddText(text, SectionStyle);
}

void ReportPages::DrawFoot(std::size_t page) {
    const double top = frame_.Page.Height - Margin - FootHeight;
    const CanvasBox box{Left(), top + 2, Width(), FootHeight - 2};
    const double third = Width() / 3;
    const auto draw = [&](const CanvasBox& where, const std::string& text, TextSide side) {
        const TextStyle style = OnSide(CaptionStyle, side);
        if (!text.empty())
            pages_[page].push_back([where, text, style](Canvas& canvas) { canvas.DrawText(where, text, style); });
    };
    pages_[page].push_back([top, left = Left(), right = Left() + Width()](Canvas& canvas) {
        canvas.DrawLine({left, top}, {right, top}, ReportRule);
    });
    draw({box.X, box.Y, third, box.Height}, frame_.Printed, TextSide::Left);
    draw({box.X + third, box.Y, third, box.Height}, frame_.Study, TextSide::Centre);
    if (frame_.HasPageNumbers)
        draw({box.X + 2 * third, box.Y, third, box.Height},
             "Page " + std::to_string(page + 1) + " of " + std::to_string(pages_.size()), TextSide::Right);
}

PagedDocument ReportPages::Finish(std::string title) {
    for (std::size_t page = 0; page < pages_.size(); ++page) DrawFoot(page);
    PagedDocument document{std::move(title), frame_.Page, {}, std::move(bookmarks_)};
    for (auto& drawings : pages_) {
        document.Pages.emplace_back(
            [shared = std::make_shared<const std::vector<Drawing>>(std::move(drawings))](Canvas& canvas) {
                for (const Drawing& drawing : *shared) drawing(canvas);
            });
    }
    pages_.clear();
    return document;
}

}  // namespace vantor
