#include "reports/ReportText.h"

#include <algorithm>

namespace vantor {
namespace {

/// Widths are sums of measured parts; a hair more keeps what fits exactly on its line.
constexpr double Hair = 0.01;

std::vector<std::string> SplitAt(const std::string& text, char separator) {
    std::vector<std::string> parts(1);
    for (const char character : text) {
        if (character == separator)
            parts.emplace_back();
        else if (character != '\r')
            parts.back() += character;
    }
    return parts;
}

bool ContinuesCharacter(char byte) { return (static_cast<unsigned char>(byte) & 0xC0) == 0x80; }

/// The length in bytes of the longest beginning of a text that fits; at least one character.
std::size_t FittingLength(const std::string& text, double width, const TextStyle& style, const TextMeasure& measure) {
    std::size_t fitting = 0;
    for (std::size_t end = 1; end <= text.size(); ++end) {
        if (end < text.size() && ContinuesCharacter(text[end])) continue;
        if (fitting > 0 && measure.TextWidth(text.substr(0, end), style) > width + Hair) break;
        fitting = end;
    }
    return fitting;
}

void WrapParagraph(std::vector<std::string>& lines, const std::string& paragraph, double width, const TextStyle& style,
                   const TextMeasure& measure) {
    const auto fits = [&](const std::string& text) { return measure.TextWidth(text, style) <= width + Hair; };
    std::string line;
    for (std::string word : SplitAt(paragraph, ' ')) {
        const std::string longer = line.empty() ? word : line + " " + word;
        if (fits(longer)) {
            line = longer;
            continue;
        }
        if (!line.empty()) lines.push_back(line);
        while (!fits(word)) {
            const std::size_t fitting = FittingLength(word, width, style, measure);
            if (fitting == word.size()) break;
            lines.push_back(word.substr(0, fitting));
            word.erase(0, fitting);
        }
        line = word;
    }
    lines.push_back(line);
}

}  // namespace

std::vector<std::string> WrappedLines(const std::string& text, double width, const TextStyle& style,
                                      const TextMeasure& measure) {
    std::vector<std::string> lines;
    for (const std::string& paragraph : SplitAt(text, '\n')) WrapParagraph(lines, paragraph, width, style, measure);
    return lines;
}

double WidestWord(const std::string& text, const TextStyle& style, const TextMeasure& measure) {
    double widest = 0;
    for (const std::string& paragraph : SplitAt(text, '\n'))
        for (const std::string& word : SplitAt(paragraph, ' '))
            widest = std::max(widest, measure.TextWidth(word, style));
    return widest;
}

}  // namespace vantor
