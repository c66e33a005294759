#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <random>
#include <string>
#include <vector>

#include "LocaleGuard.hpp"
#include "caudalis/core/NumberText.hpp"

namespace caudalis {
namespace {

/// printf's 15-digit text with the decimal point replaced, the form numbers have always had.
std::string printfText(double value, char point) {
    char buffer[40];
    std::snprintf(buffer, sizeof buffer, "%.15G", value);
    std::string text(buffer);
    for (char& c : text) {
        if (c == '.') {
            c = point;
        }
    }
    return text;
}

/// Powers of two over the whole range (exact ties at the fifteenth digit among them), their
/// neighbours, integers, decimal fractions and random bit patterns.
std::vector<double> testValues() {
    std::vector<double> values;
    for (int exponent = -1074; exponent <= 1023; ++exponent) {
        const double power = std::ldexp(1.0, exponent);
        values.insert(values.end(), {power, -power, std::nextafter(power, 0.0), std::nextafter(power, 1e308),
                                     power * 3, power * 5, power * 1.5});
    }
    for (int i = -2000; i <= 2000; ++i) {
        values.insert(values.end(), {static_cast<double>(i), i / 100.0, i / 7.0, i * 1e13 + 0.5});
    }
    std::mt19937_64 bits(15);
    while (values.size() < 200000) {
        const double value = std::bit_cast<double>(bits());
        if (std::isfinite(value)) {
            values.push_back(value);
        }
    }
    values.insert(values.end(), {0.1, 0.5, 2.5e-7, 123456789012345.5, 999999999999999.5, 1e15, 1e-5, 1e-4});
    std::erase_if(values, [](double value) { return !std::isfinite(value); });
    return values;
}

void expectSameAsPrintf(char point) {
    const testing::DecimalSeparatorGuard guard(point);
    long differing = 0;
    for (const double value : testValues()) {
        const std::string expected = value == 0.0 ? "0" : printfText(value, point);
        const std::string text = formatNumber(value);
        const auto readBack = parseLocaleNumber(expected);
        const auto through = throughFifteenDigits(value);
        const bool same =
            text == expected && readBack.has_value() == through.has_value() &&
            (!readBack || std::bit_cast<std::uint64_t>(*readBack) == std::bit_cast<std::uint64_t>(*through));
        if (!same && ++differing <= 5) {
            ADD_FAILURE() << std::bit_cast<std::uint64_t>(value) << ": " << text << " for " << expected;
        }
    }
    EXPECT_EQ(differing, 0);
}

TEST(FifteenDigits, TextIsPrintfsWithThePointOfTheLocale) {
    expectSameAsPrintf('.');
}

TEST(FifteenDigits, TextIsPrintfsWithACommaLocale) {
    expectSameAsPrintf(',');
}

TEST(FifteenDigits, NonFiniteValuesDoNotReadBack) {
    EXPECT_FALSE(throughFifteenDigits(std::numeric_limits<double>::infinity()).has_value());
    EXPECT_FALSE(throughFifteenDigits(std::nan("")).has_value());
    EXPECT_EQ(throughFifteenDigits(-0.0), 0.0);
}

}  // namespace
}  // namespace caudalis
