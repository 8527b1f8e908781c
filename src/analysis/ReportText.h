#pragma once

#include <string>
#include <vector>

#include "core/ports/Canvas.h"

namespace vantor {

// The look of the printed reports.

inline constexpr Colour ReportInk{0x20, 0x20, 0x20};
inline constexpr Colour ReportDimInk{0x60, 0x60, 0x60};
inline constexpr Colour ReportRuleInk{0x80, 0x80, 0x80};
inline constexpr Colour ReportFaintInk{0xD8, 0xD8, 0xD8};

inline constexpr TextStyle OrganizationStyle{13, true, ReportInk};
inline constexpr TextStyle HeadingStyle{9.5, false, ReportDimInk};
inline constexpr TextStyle TitleStyle{15, true, ReportInk};
inline constexpr TextStyle SectionStyle{10, true, ReportInk};
inline constexpr TextStyle BodyStyle{9, false, ReportInk};
inline constexpr TextStyle CaptionStyle{8, false, ReportDimInk};
inline constexpr TextStyle FigureStyle{18, true, ReportInk};
inline constexpr TextStyle CellStyle{8, false, ReportInk};
inline constexpr TextStyle CellHeadStyle{8, true, ReportInk};

inline constexpr LineStyle ReportRule{0.75, ReportRuleInk};
inline constexpr LineStyle ReportFaintRule{0.4, ReportFaintInk};

/// What stands where there is nothing to tell.
inline constexpr const char* NoFigure = "\u2013";

inline TextStyle OnSide(TextStyle style, TextSide side) {
    style.Side = side;
    return style;
}

/// The lines of a text that fit into a width, broken at its line breaks and blanks, and within words where a word alone
/// is too wide. At least one line.
std::vector<std::string> WrappedLines(const std::string& text, double width, const TextStyle& style,
                                      const TextMeasure& measure);

/// The width of the widest word.
double WidestWord(const std::string& text, const TextStyle& style, const TextMeasure& measure);

}  // namespace vantor
