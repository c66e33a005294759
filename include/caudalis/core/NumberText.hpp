#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace caudalis {

/// The decimal separator of the global C++ locale.
char localeDecimalPoint();

/// A number as text in the current locale's form: up to 15 significant digits, exponent
/// notation for very large or very small magnitudes ("1E+20", "1E-05").
std::string formatNumber(double value);

/// What the value's text in the current locale's form reads back as:
/// `parseLocaleNumber(formatNumber(value))`, the value rounded to 15 significant digits. Worked
/// out without the text when the decimal point lets the text read back unchanged.
std::optional<double> throughFifteenDigits(double value);

/// Reads a whole text as a number in the current locale's form (surrounding spaces allowed).
/// Returns nothing when the text is not a number.
std::optional<double> parseLocaleNumber(std::string_view text);

/// Reads the number at the start of a text, locale-independently ("." is the decimal point,
/// exponents allowed), stopping at the first character that cannot continue it. A text that
/// does not begin with a number reads as 0.
double readLeadingNumber(std::string_view text);

/// The text with leading and trailing spaces and tabs removed.
std::string trimBlanks(std::string_view text);

}  // namespace caudalis
