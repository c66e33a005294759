#include "caudalis/core/NumberText.hpp"

#include <charconv>
#include <clocale>
#include <cmath>
#include <locale>

namespace caudalis {
namespace {

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

bool isBlank(char c) {
    return c == ' ' || c == '\t';
}

std::string nonFiniteText(double value) {
    if (std::isinf(value)) {
        return value < 0 ? "-1.#INF" : "1.#INF";
    }
    return std::signbit(value) ? "-1.#IND" : "1.#QNAN";
}

/// Scans a number at `pos` with `point` as decimal point; returns the end of the number
/// (equal to `pos` when there is none) and writes its C-locale spelling into `out`.
std::size_t scanNumber(std::string_view text, std::size_t pos, char point, std::string& out) {
    std::size_t i = pos;
    if (i < text.size() && (text[i] == '+' || text[i] == '-')) {
        if (text[i] == '-') {
            out += '-';
        }
        ++i;
    }
    bool digits = false;
    while (i < text.size() && isDigit(text[i])) {
        out += text[i++];
        digits = true;
    }
    if (i < text.size() && text[i] == point) {
        std::size_t j = i + 1;
        std::string fraction;
        while (j < text.size() && isDigit(text[j])) {
            fraction += text[j++];
        }
        if (digits || !fraction.empty()) {
            out += '.';
            out += fraction;
            digits = true;
            i = j;
        }
    }
    if (!digits) {
        out.clear();
        return pos;
    }
    if (i < text.size() && (text[i] == 'e' || text[i] == 'E')) {
        std::size_t j = i + 1;
        std::string exponent = "e";
        if (j < text.size() && (text[j] == '+' || text[j] == '-')) {
            exponent += text[j++];
        }
        bool exponentDigits = false;
        while (j < text.size() && isDigit(text[j])) {
            exponent += text[j++];
            exponentDigits = true;
        }
        if (exponentDigits) {
            out += exponent;
            i = j;
        }
    }
    return i;
}

double toDouble(const std::string& spelling) {
    double value = 0.0;
    const char* first = spelling.data();
    if (*first == '+') {
        ++first;
    }
    std::from_chars(first, spelling.data() + spelling.size(), value);
    return value;
}

/// The value with 15 significant digits as printf's "%.15g" writes it in the C locale; returns
/// the end of the text written into `buffer`.
char* fifteenDigits(double value, char (&buffer)[40]) {
    return std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::general, 15).ptr;
}

}  // namespace

char localeDecimalPoint() {
    return std::use_facet<std::numpunct<char>>(std::locale()).decimal_point();
}

std::string formatNumber(double value) {
    if (!std::isfinite(value)) {
        return nonFiniteText(value);
    }
    if (value == 0.0) {
        return "0";
    }
    char digits[40];
    const char* end = fifteenDigits(value, digits);
    // The decimal point is the C++ locale's; a C library locale with a point of its own (as
    // printf writes it) has the last word, as it always had.
    const std::string_view libraryPoint = std::localeconv()->decimal_point;
    const std::string point =
        libraryPoint == "." ? std::string(1, localeDecimalPoint()) : std::string(libraryPoint);
    std::string text;
    text.reserve(static_cast<std::size_t>(end - digits) + point.size());
    for (const char* c = digits; c != end; ++c) {
        if (*c == '.') {
            text += point;
        } else {
            text += *c == 'e' ? 'E' : *c;
        }
    }
    return text;
}

std::optional<double> throughFifteenDigits(double value) {
    const std::string_view libraryPoint = std::localeconv()->decimal_point;
    const char point = localeDecimalPoint();
    const bool pointReadsBack = libraryPoint == "." && !isDigit(point) && point != 'e' && point != 'E';
    if (!pointReadsBack || !std::isfinite(value) || value == 0.0) {
        return parseLocaleNumber(formatNumber(value));
    }
    char digits[40];
    const char* end = fifteenDigits(value, digits);
    double result = 0.0;
    std::from_chars(digits, end, result);
    return result;
}

std::optional<double> parseLocaleNumber(std::string_view text) {
    const std::string trimmed = trimBlanks(text);
    std::string spelling;
    const std::size_t end = scanNumber(trimmed, 0, localeDecimalPoint(), spelling);
    if (end == 0 || end != trimmed.size()) {
        return std::nullopt;
    }
    return toDouble(spelling);
}

double readLeadingNumber(std::string_view text) {
    std::size_t start = 0;
    while (start < text.size() && isBlank(text[start])) {
        ++start;
    }
    std::string spelling;
    if (scanNumber(text, start, '.', spelling) == start) {
        return 0.0;
    }
    return toDouble(spelling);
}

std::string trimBlanks(std::string_view text) {
    std::size_t first = 0;
    std::size_t last = text.size();
    while (first < last && isBlank(text[first])) {
        ++first;
    }
    while (last > first && isBlank(text[last - 1])) {
        --last;
    }
    return std::string(text.substr(first, last - first));
}

}  // namespace caudalis
