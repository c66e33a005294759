#include "caudalis/report/HtmlText.hpp"

#include <charconv>
#include <cmath>
#include <cstdio>

namespace caudalis::design {

namespace {

std::string unicodeEscape(unsigned code) {
    char buffer[8];
    std::snprintf(buffer, sizeof buffer, "\\u%04x", code);
    return buffer;
}

/// U+2028 and U+2029 end a line in older JavaScript; in UTF-8 they are E2 80 A8 and E2 80 A9.
bool isLineSeparatorAt(std::string_view text, std::size_t i) {
    return i + 2 < text.size() && static_cast<unsigned char>(text[i]) == 0xE2 &&
           static_cast<unsigned char>(text[i + 1]) == 0x80 &&
           (static_cast<unsigned char>(text[i + 2]) == 0xA8 ||
            static_cast<unsigned char>(text[i + 2]) == 0xA9);
}

}  // namespace

std::string HtmlText::escape(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    for (const char c : text) {
        switch (c) {
            case '&':
                result += "&amp;";
                break;
            case '<':
                result += "&lt;";
                break;
            case '>':
                result += "&gt;";
                break;
            case '"':
                result += "&quot;";
                break;
            case '\'':
                result += "&#39;";
                break;
            default:
                result += c;
        }
    }
    return result;
}

std::string HtmlText::jsonString(std::string_view text) {
    std::string result = "\"";
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto c = static_cast<unsigned char>(text[i]);
        if (c == '"' || c == '\\') {
            result += '\\';
            result += static_cast<char>(c);
        } else if (c < 0x20 || c == '<' || c == '>' || c == '&') {
            result += unicodeEscape(c);
        } else if (isLineSeparatorAt(text, i)) {
            result += unicodeEscape(static_cast<unsigned char>(text[i + 2]) == 0xA8 ? 0x2028 : 0x2029);
            i += 2;
        } else {
            result += static_cast<char>(c);
        }
    }
    return result + "\"";
}

std::string HtmlText::jsonNumber(double value) {
    if (!std::isfinite(value)) {
        return "null";
    }
    char buffer[32];
    const auto written = std::to_chars(buffer, buffer + sizeof buffer, value);
    return std::string(buffer, written.ptr);
}

}  // namespace caudalis::design
