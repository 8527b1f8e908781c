#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace vantor {

/// Nearest whole number with halves to even. Overflow (error 6) outside the 16-bit range or for no number.
std::int16_t Round16(double value);
/// As Round16, for 32 bits.
std::int32_t Round32(double value);

/// Sums and differences that fail with Overflow (error 6) instead of wrapping.
std::int32_t Add32(std::int32_t left, std::int32_t right);
std::int32_t Subtract32(std::int32_t left, std::int32_t right);
std::int16_t Add16(std::int16_t left, std::int16_t right);

/// A wider whole number as 16 bits; Overflow (error 6) when it does not fit.
std::int16_t To16(std::int64_t value);

/// A number as text with its sign position: a leading blank for values of 0 and above, else a minus sign.
std::string Str(std::int64_t value);

/// The leading number of a text (blanks before it are passed over), 0 where there is none.
double Val(std::string_view text);

/// The whole number that a text is, halves to even. Type mismatch (error 13) when the text, trimmed, is no
/// number as a whole; Overflow (error 6) outside 32 bits.
std::int32_t IntegerOfText(std::string_view text);

/// The number that a text, trimmed, is as a whole: digits with at most one decimal point, a sign before it or none, an
/// exponent behind it where `mayHaveExponent`. Nothing for any other text and for one that is not finite.
std::optional<double> NumberOfText(std::string_view text, bool mayHaveExponent = false);

/// The whole number from 0 to `most` that a text, trimmed, is: digits alone. Nothing for any other text.
std::optional<std::int32_t> CountOfText(std::string_view text, std::int32_t most);

/// Pattern "###.##": at most two decimals, no forced zeros (2.456 gives "2.46", 0.5 gives ".5", 3 gives "3.").
/// The value is taken with its 15 significant decimal digits, exact halves are rounded away from zero.
std::string FormatRatio(double value);

/// A number with one decimal: "0.5", "-12.0". Halves to even; Overflow (error 6) past 32 bits of tenths.
std::string OneDecimal(double value);

/// A number with that many decimals, the patterns "0", "0.0" and "0.000000": exact halves are rounded away from zero.
/// Empty for one that is not finite.
std::string FixedDecimals(double value, int decimals);
/// A number with up to `digits` significant digits; empty for one that is not finite.
std::string SignificantDigits(double value, int digits);

/// A whole number with leading zeros up to `width` digits: the patterns "00" and "000".
std::string ZeroPadded(std::int64_t value, int width);

}  // namespace vantor
