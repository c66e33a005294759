#include "caudalis/fieldtests/ReadingsText.hpp"

#include <charconv>
#include <cmath>

namespace caudalis::design {

std::string ReadingsTextTools::trimmed(const std::string& text) {
    const auto first = text.find_first_not_of(" \t\r");
    if (first == std::string::npos) {
        return "";
    }
    return text.substr(first, text.find_last_not_of(" \t\r") - first + 1);
}

std::vector<std::string> ReadingsTextTools::csvFields(const std::string& row, bool& unclosedQuote) {
    std::vector<std::string> fields(1);
    bool quoted = false;
    for (std::size_t i = 0; i < row.size(); ++i) {
        const char c = row[i];
        if (quoted && c == '"' && i + 1 < row.size() && row[i + 1] == '"') {
            fields.back() += '"';
            ++i;
        } else if (c == '"') {
            quoted = !quoted;
        } else if (c == ',' && !quoted) {
            fields.emplace_back();
        } else {
            fields.back() += c;
        }
    }
    unclosedQuote = quoted;
    return fields;
}

std::optional<double> ReadingsTextTools::number(const std::string& text) {
    double value = 0;
    const auto* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value);
    if (text.empty() || error != std::errc() || stop != end || !std::isfinite(value)) {
        return std::nullopt;
    }
    return value;
}

}  // namespace caudalis::design
