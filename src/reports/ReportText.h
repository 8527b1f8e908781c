#pragma once

#include <string>
#include <vector>

#include "core/ports/Canvas.h"

namespace vantor {

// The look of the printed reports.

inline constexpr TextStyle OrganizationStyle{13, true, PaperColours.Text};
inline constexpr TextStyle HeadingStyle{9.5, false, PaperColours.DimText};
inline constexpr TextStyle TitleStyle{15, true, PaperColours.Text};
inline constexpr TextStyle SectionStyle{10, true, PaperColours.Text};
inline constexpr TextStyle BodyStyle{9, false, PaperColours.Text};
inline constexpr TextStyle CaptionStyle{8, false, PaperColours.DimText};
inline constexpr TextStyle FigureStyle{18, true, PaperColours.Text};
inline constexpr TextStyle CellStyle{8, false, PaperColours.Text};
inline constexpr TextStyle CellHeadStyle{8, true, PaperColours.Text};

inline constexpr LineStyle ReportRule{0.75, PaperColours.Rule};
inline constexpr LineStyle ReportFaintRule{0.4, PaperColours.Grid};

/// What stands where there is nothing to tell.
inline constexpr const char* NoFigure = "\u2013";

/// The lines of a text that fit into a width, broken at its line breaks and blanks, and within words where a word alone
/// is too wide. At least one line.
std::vector<std::string> WrappedLines(const std::string& text, double width, const TextStyle& style,
                                      const TextMeasure& measure);

/// The width of the widest word.
double WidestWord(const std::string& text, const TextStyle& style, const TextMeasure& measure);

}  // namespace vantor
