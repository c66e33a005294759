#include "PlainText.hpp"

#include <charconv>
#include <cmath>

namespace caudalis::cli {

std::string withoutBlanksAround(const std::string& text) {
    const auto first = text.find_first_not_of(" \t\r");
    if (first == std::string::npos) {
        return "";
    }
    return text.substr(first, text.find_last_not_of(" \t\r") - first + 1);
}

std::string oneLine(std::string text) {
    for (auto& c : text) {
        if (c == '\n' || c == '\r') {
            c = ' ';
        }
    }
    return text;
}

std::optional<double> numberIn(const std::string& text) {
    double value = 0;
    const auto* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value);
    if (text.empty() || error != std::errc() || stop != end || !std::isfinite(value)) {
        return std::nullopt;
    }
    return value;
}

}  // namespace caudalis::cli
