#include "caudalis/design/NozzleSize.hpp"

#include <cctype>
#include <regex>

namespace caudalis::design {

namespace {

constexpr double millimetresPerInch = 25.4;

double number(std::string text) {
    for (auto& c : text) {
        c = c == ',' ? '.' : c;
    }
    return std::stod(text);
}

NozzleSize fromInch128ths(double size) {
    return NozzleSize{size * millimetresPerInch / 128, size};
}

NozzleSize fromMillimetres(double size) {
    return NozzleSize{size, size / millimetresPerInch * 128};
}

}  // namespace

std::optional<NozzleSize> NozzleSize::fromDesignation(const std::string& designation) {
    static const std::regex numbered(R"(#\s*(\d+(?:[.,]\d+)?))");
    static const std::regex fraction(R"((\d+(?:[.,]\d+)?)\s*/\s*128)");
    static const std::regex metric(R"((\d+(?:[.,]\d+)?)\s*mm\b)", std::regex::icase);
    std::smatch match;
    if (std::regex_search(designation, match, numbered) || std::regex_search(designation, match, fraction)) {
        return fromInch128ths(number(match[1].str()));
    }
    if (std::regex_search(designation, match, metric)) {
        return fromMillimetres(number(match[1].str()));
    }
    return std::nullopt;
}

}  // namespace caudalis::design
