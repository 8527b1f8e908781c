#include "core/Csv.h"

#include <algorithm>
#include <string_view>

namespace vantor {
namespace {

bool IsControl(char character) { return static_cast<unsigned char>(character) < ' '; }

bool LooksLikeFormula(std::string_view text) {
    const std::size_t first = text.find_first_not_of(' ');
    if (first == std::string_view::npos) return false;
    return IsControl(text[first]) || std::string_view("=+-@").find(text[first]) != std::string_view::npos;
}

std::string Neutral(const SheetField& field) {
    return !field.IsNumber && LooksLikeFormula(field.Text) ? "'" + field.Text : field.Text;
}

std::string Quoted(const std::string& text) {
    if (text.find_first_of(",\"\r\n") == std::string::npos) return text;
    std::string quoted = "\"";
    for (const char character : text) {
        if (character == '"') quoted += '"';
        quoted += character;
    }
    return quoted + '"';
}

std::string InOneLine(std::string text) {
    std::replace_if(text.begin(), text.end(), IsControl, ' ');
    return text;
}

template <class AsText>
std::string Joined(const std::vector<SheetRow>& rows, const char* separator, const char* lineEnd, AsText asText) {
    std::string text;
    for (const SheetRow& row : rows) {
        for (std::size_t i = 0; i < row.size(); ++i) text += (i == 0 ? "" : separator) + asText(row[i]);
        text += lineEnd;
    }
    return text;
}

}  // namespace

std::string CsvText(const std::vector<SheetRow>& rows) {
    constexpr const char* byteOrderMark = "\xEF\xBB\xBF";
    return byteOrderMark + Joined(rows, ",", "\r\n", [](const SheetField& field) { return Quoted(Neutral(field)); });
}

std::string TabSeparatedText(const std::vector<SheetRow>& rows) {
    return Joined(rows, "\t", "\n", [](const SheetField& field) { return InOneLine(Neutral(field)); });
}

}  // namespace vantor
