#include "core/Text.h"

#include "core/Windows1252.h"

namespace vantor {
namespace {

bool IsBlank(char character) { return character == ' ' || character == '\0'; }

char32_t Folded(char32_t c) {
    if ((c >= U'A' && c <= U'Z') || (c >= 0xC0 && c <= 0xDE && c != 0xD7)) return c + 0x20;
    if (c == 0x160 || c == 0x152 || c == 0x17D) return c + 1;
    return c == 0x178 ? 0xFF : c;
}

}  // namespace

std::string_view TrimRight(std::string_view text) {
    while (!text.empty() && IsBlank(text.back())) text.remove_suffix(1);
    return text;
}

std::string_view TrimLeft(std::string_view text) {
    while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
    return text;
}

std::string_view Trim(std::string_view text) { return TrimLeft(TrimRight(text)); }

bool IsDigit(char character) { return character >= '0' && character <= '9'; }

std::string FoldCase(std::string_view text) {
    std::string folded;
    folded.reserve(text.size());
    for (std::size_t at = 0; at < text.size();) AppendUtf8(folded, Folded(NextCharacter(text, at)));
    return folded;
}

bool EqualIgnoringCase(std::string_view left, std::string_view right) {
    return left == right || FoldCase(left) == FoldCase(right);
}

std::string_view FirstCharacters(std::string_view text, std::size_t count) {
    std::size_t at = 0;
    while (count-- > 0 && at < text.size()) NextCharacter(text, at);
    return text.substr(0, at);
}

std::size_t CharactersIn(std::string_view text) {
    std::size_t count = 0;
    for (std::size_t at = 0; at < text.size(); ++count) NextCharacter(text, at);
    return count;
}

std::string Joined(const std::vector<std::string>& texts, std::string_view separator) {
    std::string joined;
    for (const std::string& text : texts) {
        if (!joined.empty()) joined += separator;
        joined += text;
    }
    return joined;
}

std::string FirstOf(const std::vector<std::string>& texts, std::size_t most, std::string_view separator) {
    if (texts.size() <= most) return Joined(texts, separator);
    const std::vector<std::string> first(texts.begin(), texts.begin() + static_cast<std::ptrdiff_t>(most));
    const std::string_view last = separator.ends_with('\n') ? separator : " ";
    return Joined(first, separator) + std::string(last) + "and " + std::to_string(texts.size() - most) + " more";
}

std::string Printable(std::string_view text) {
    constexpr std::string_view Digits = "0123456789abcdef";
    // U+0080 to U+009F are control characters, too: two bytes, of which the second is the number.
    const auto isHighControl = [&](std::size_t at) {
        return text[at] == '\xC2' && at + 1 < text.size() && static_cast<unsigned char>(text[at + 1]) < 0xA0;
    };
    std::string printable;
    for (std::size_t at = 0; at < text.size(); ++at) {
        const bool isHigh = isHighControl(at);
        if (isHigh) ++at;
        const auto byte = static_cast<unsigned char>(text[at]);
        if (isHigh || byte == 127 || (byte < 32 && byte != '\n'))
            printable += {'\\', 'x', Digits[byte >> 4U], Digits[byte & 15U]};
        else
            printable += text[at];
    }
    return printable;
}

}  // namespace vantor
