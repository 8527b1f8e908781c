#include "core/Numeric.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>

#include "core/RunTimeError.h"
#include "core/Text.h"

namespace vantor {
namespace {

template <class Integer>
Integer RoundTo(double value) {
    // Halves to even whatever the thread's rounding mode is.
    const double floor = std::floor(value);
    const double fraction = value - floor;
    double rounded = fraction > 0.5 ? floor + 1 : floor;
    if (fraction == 0.5 && std::fmod(floor, 2.0) != 0.0) rounded = floor + 1;
    if (!(rounded >= std::numeric_limits<Integer>::min() && rounded <= std::numeric_limits<Integer>::max()))
        throw RunTimeError(ErrorNumber::Overflow);
    return static_cast<Integer>(rounded);
}

template <class Integer>
Integer Narrowed(std::int64_t value) {
    if (value < std::numeric_limits<Integer>::min() || value > std::numeric_limits<Integer>::max())
        throw RunTimeError(ErrorNumber::Overflow);
    return static_cast<Integer>(value);
}

struct LeadingNumber {
    double Value = 0;        ///< infinite for one that a double cannot hold
    std::size_t Length = 0;  ///< characters read, blanks before the number included; 0 where there is none
};

LeadingNumber ReadLeadingNumber(std::string_view text) {
    std::size_t start = 0;
    while (start < text.size() && (text[start] == ' ' || text[start] == '\t')) ++start;
    const bool hasSign = start < text.size() && (text[start] == '+' || text[start] == '-');
    const std::size_t digits = start + (hasSign ? 1 : 0);
    const char* first = text.data() + (hasSign && text[start] == '+' ? digits : start);
    const char* last = text.data() + text.size();
    // from_chars alone would also read "inf" and "nan".
    if (digits >= text.size() || (!IsDigit(text[digits]) && text[digits] != '.')) return {};
    LeadingNumber number;
    const auto [end, error] = std::from_chars(first, last, number.Value);
    if (error == std::errc::invalid_argument) return {};
    if (error == std::errc::result_out_of_range) number.Value = std::numeric_limits<double>::infinity();
    number.Length = static_cast<std::size_t>(end - text.data());
    return number;
}

double Finite(double value) {
    if (!std::isfinite(value)) throw RunTimeError(ErrorNumber::Overflow);
    return value;
}

}  // namespace

std::int16_t Round16(double value) { return RoundTo<std::int16_t>(value); }
std::int32_t Round32(double value) { return RoundTo<std::int32_t>(value); }

std::int32_t Add32(std::int32_t left, std::int32_t right) { return Narrowed<std::int32_t>(std::int64_t{left} + right); }

std::int32_t Subtract32(std::int32_t left, std::int32_t right) {
    return Narrowed<std::int32_t>(std::int64_t{left} - right);
}

std::int16_t Add16(std::int16_t left, std::int16_t right) { return To16(std::int64_t{left} + right); }

std::int16_t To16(std::int64_t value) { return Narrowed<std::int16_t>(value); }

std::string Str(std::int64_t value) { return (value < 0 ? "" : " ") + std::to_string(value); }

double Val(std::string_view text) { return Finite(ReadLeadingNumber(text).Value); }

std::int32_t IntegerOfText(std::string_view text) {
    const std::string_view trimmed = Trim(text);
    const LeadingNumber number = ReadLeadingNumber(trimmed);
    Finite(number.Value);
    if (number.Length == 0 || number.Length != trimmed.size()) throw RunTimeError(ErrorNumber::TypeMismatch);
    return Round32(number.Value);
}

std::optional<double> NumberOfText(std::string_view text, bool mayHaveExponent) {
    const std::string_view trimmed = Trim(text);
    if (!mayHaveExponent && trimmed.find_first_of("eE") != std::string_view::npos) return std::nullopt;
    const LeadingNumber number = ReadLeadingNumber(trimmed);
    const bool isWhole = number.Length > 0 && number.Length == trimmed.size() && std::isfinite(number.Value);
    return isWhole ? std::optional(number.Value) : std::nullopt;
}

std::optional<std::int32_t> CountOfText(std::string_view text, std::int32_t most) {
    const std::string_view digits = Trim(text);
    if (digits.empty() || !std::ranges::all_of(digits, IsDigit)) return std::nullopt;
    std::int32_t value = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
    return error == std::errc() && value <= most ? std::optional(value) : std::nullopt;
}

std::string FormatRatio(double value) {
    Finite(value);
    // The shortest decimal with 15 significant digits, as plain digits: d.dddddddddddddde±xx.
    char scientific[40];
    std::snprintf(scientific, sizeof scientific, "%.14e", std::fabs(value));
    std::string digits;
    for (const char* c = scientific; *c != 'e'; ++c)
        if (IsDigit(*c)) digits += *c;
    const int exponent = std::atoi(std::string(scientific).substr(std::string(scientific).find('e') + 1).c_str());

    // Hundredths as digits: those up to two places right of the point, rounded by the one after them.
    const int kept = exponent + 3;
    std::string hundredths = kept <= 0 ? "0" : digits.substr(0, static_cast<std::size_t>(kept));
    if (kept > static_cast<int>(digits.size())) hundredths.append(static_cast<std::size_t>(kept) - digits.size(), '0');
    if (kept >= 0 && kept < static_cast<int>(digits.size()) && digits[static_cast<std::size_t>(kept)] >= '5') {
        std::size_t i = hundredths.size();
        while (i > 0 && hundredths[i - 1] == '9') hundredths[--i] = '0';
        if (i > 0)
            ++hundredths[i - 1];
        else
            hundredths.insert(0, "1");
    }
    while (hundredths.size() < 3) hundredths.insert(0, "0");
    std::string whole = hundredths.substr(0, hundredths.size() - 2);
    std::string decimals = hundredths.substr(hundredths.size() - 2);
    while (!whole.empty() && whole.front() == '0') whole.erase(0, 1);
    while (!decimals.empty() && decimals.back() == '0') decimals.pop_back();
    const bool vanished = whole.empty() && decimals.empty();
    return (value < 0 && !vanished ? "-" : "") + whole + "." + decimals;
}

std::string OneDecimal(double value) {
    const std::int32_t tenths = Round32(value * 10);
    const std::string digits = ZeroPadded(std::abs(tenths), 2);
    return (tenths < 0 ? "-" : "") + digits.substr(0, digits.size() - 1) + "." + digits.back();
}

std::string FixedDecimals(double value, int decimals) {
    if (!std::isfinite(value)) return {};
    char text[std::numeric_limits<double>::max_exponent10 + 16];
    // printf rounds exact halves to even: a value on the half is moved past it.
    const double past = std::nextafter(value, std::copysign(std::numeric_limits<double>::infinity(), value));
    const int length = std::snprintf(text, sizeof text, "%.*f", decimals, value == 0 ? 0.0 : past);
    return {text, static_cast<std::size_t>(length)};
}

std::string SignificantDigits(double value, int digits) {
    if (!std::isfinite(value)) return {};
    char text[32];
    const auto end =
        std::to_chars(text, text + sizeof text, value == 0 ? 0.0 : value, std::chars_format::general, digits);
    return {text, end.ptr};
}

std::string ZeroPadded(std::int64_t value, int width) {
    std::string digits = std::to_string(value < 0 ? -value : value);
    while (static_cast<int>(digits.size()) < width) digits.insert(0, "0");
    return (value < 0 ? "-" : "") + digits;
}

}  // namespace vantor
