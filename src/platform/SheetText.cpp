#include "platform/SheetText.h"

#include <algorithm>
#include <set>

#include "core/Text.h"
#include "core/Windows1252.h"

namespace vantor {
namespace {

constexpr std::size_t MostNameUnits = 31;

constexpr char32_t CellCharacter(char32_t c) {
    if (c < 0x20 && c != '\t' && c != '\n') return ' ';
    const bool isSurrogate = c >= 0xD800 && c <= 0xDFFF;
    const bool isNoCharacter = (c & 0xFFFE) == 0xFFFE;
    return isSurrogate || isNoCharacter || c > 0x10FFFF ? 0xFFFD : c;
}

template <class Append>
void ForEachCellCharacter(std::string_view utf8, std::size_t mostUnits, Append append) {
    std::size_t units = 0;
    for (std::size_t at = 0; at < utf8.size();) {
        const char32_t character = CellCharacter(NextCharacter(utf8, at));
        units += character > 0xFFFF ? 2 : 1;
        if (units > mostUnits) return;
        append(character);
    }
}

std::string CleanName(const std::string& name, std::size_t number) {
    std::string clean = CellText(name, MostNameUnits);
    std::replace_if(
        clean.begin(), clean.end(),
        [](char c) { return std::string_view("[]:*?/\\\t\n").find(c) != std::string_view::npos; }, '_');
    if (clean.find_first_not_of(' ') == std::string::npos) return "Sheet" + std::to_string(number);
    // Neither an apostrophe at an end nor this one word is allowed.
    if (clean.front() == '\'') clean.front() = '_';
    if (clean.back() == '\'') clean.back() = '_';
    return FoldCase(clean) == FoldCase("History") ? clean + "_" : clean;
}

}  // namespace

std::string CellText(std::string_view utf8, std::size_t mostUnits) {
    std::string text;
    text.reserve(utf8.size());
    ForEachCellCharacter(utf8, mostUnits, [&](char32_t character) { AppendUtf8(text, character); });
    return text;
}

std::u16string CellText16(std::string_view utf8, std::size_t mostUnits) {
    std::u16string text;
    text.reserve(std::min(utf8.size(), mostUnits));
    ForEachCellCharacter(utf8, mostUnits, [&](char32_t character) {
        if (character > 0xFFFF) {
            text += static_cast<char16_t>(0xD800 + ((character - 0x10000) >> 10));
            text += static_cast<char16_t>(0xDC00 + (character & 0x3FF));
        } else {
            text += static_cast<char16_t>(character);
        }
    });
    return text;
}

std::vector<std::string> SheetNames(const std::vector<Sheet>& sheets) {
    std::vector<std::string> names;
    std::set<std::string> taken;
    for (const Sheet& sheet : sheets) {
        const std::string name = CleanName(sheet.Name, names.size() + 1);
        std::string unique = name;
        for (int copy = 2; !taken.insert(FoldCase(unique)).second; ++copy) {
            const std::string suffix = " (" + std::to_string(copy) + ")";
            unique = CellText(name, MostNameUnits - suffix.size()) + suffix;
        }
        names.push_back(unique);
    }
    return names;
}

}  // namespace vantor
