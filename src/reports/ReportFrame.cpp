#include "reports/ReportFrame.h"

namespace vantor {

PageFrame FrameOf(const AppSettings& settings, const std::string& subject, Date printed, const PageChoice& choice) {
    PageFrame frame;
    frame.Page = PageSizeOf(choice.Sheet, choice.IsLandscape);
    if (choice.HasHeadings) frame.Headings = settings.ReportHeading;
    frame.Study = subject;
    frame.Printed = "Printed " + ShortDate(printed) + " " + ShortTime(printed);
    frame.HasPageNumbers = settings.ShowPageNumbers != 0;
    return frame;
}

double RememberingMeasure::TextWidth(const std::string& text, const TextStyle& style) const {
    auto& widths = widths_[{style.Size, style.IsBold}];
    const auto known = widths.find(text);
    if (known != widths.end()) return known->second;
    return widths[text] = measure_.TextWidth(text, style);
}

}  // namespace vantor
