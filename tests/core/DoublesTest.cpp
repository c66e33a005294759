#include <gtest/gtest.h>

#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>

#include "caudalis/core/Doubles.hpp"
#include "caudalis/core/Statics.hpp"

using namespace caudalis;

namespace {
std::uint64_t bits(double value) {
    return std::bit_cast<std::uint64_t>(value);
}
}  // namespace

TEST(Doubles, ValuesHaveTheirBitPatterns) {
    const auto doubles = Doubles::shared();
    EXPECT_EQ(bits(doubles->NaN()), 0xFFF8000000000000ULL);
    EXPECT_EQ(bits(doubles->PositiveInfinity()), 0x7FF0000000000000ULL);
    EXPECT_EQ(bits(doubles->NegativeInfinity()), 0xFFF0000000000000ULL);
    EXPECT_EQ(bits(doubles->MaxValue()), 0x7FEFFFFFFFFFFFE2ULL);
    EXPECT_EQ(bits(doubles->MinValue()), 0xFFEFFFFFFFFFFFE2ULL);
    EXPECT_NE(doubles->MaxValue(), std::numeric_limits<double>::max());
}

TEST(Doubles, MaxValueIsTheFifteenDigitLiteral) {
    const char text[] = "1.79769313486231E+308";
    double parsed = 0;
    std::from_chars(text, text + sizeof text - 1, parsed);
    EXPECT_EQ(parsed, Doubles::shared()->MaxValue());
    EXPECT_EQ(-parsed, Doubles::shared()->MinValue());
}

TEST(Doubles, NaNTest) {
    const auto doubles = Doubles::shared();
    EXPECT_TRUE(doubles->isNaN(doubles->NaN()));
    EXPECT_FALSE(doubles->isNaN(doubles->PositiveInfinity()));
    EXPECT_FALSE(doubles->isNaN(1.0));
    EXPECT_FALSE(doubles->isNaN(std::numeric_limits<double>::quiet_NaN()));
    EXPECT_NE(bits(std::numeric_limits<double>::quiet_NaN()), bits(doubles->NaN()));
}

TEST(Doubles, InfinityTestsAnswerTrueForNaN) {
    const auto doubles = Doubles::shared();
    EXPECT_TRUE(doubles->isPositiveInfinity(doubles->NaN()));
    EXPECT_TRUE(doubles->isNegativeInfinity(doubles->NaN()));
    EXPECT_TRUE(doubles->isPositiveInfinity(doubles->PositiveInfinity()));
    EXPECT_FALSE(doubles->isPositiveInfinity(doubles->NegativeInfinity()));
    EXPECT_TRUE(doubles->isNegativeInfinity(doubles->NegativeInfinity()));
    EXPECT_FALSE(doubles->isNegativeInfinity(doubles->MaxValue()));
}

TEST(Doubles, MaxAndMin) {
    const auto doubles = Doubles::shared();
    EXPECT_TRUE(doubles->isNaN(doubles->Max(1.0, doubles->NaN())));
    EXPECT_TRUE(doubles->isNaN(doubles->Min(doubles->NaN(), 1.0)));
    EXPECT_EQ(doubles->Max(3.0, 2.0), 3.0);
    EXPECT_EQ(doubles->Min(1.0, 2.0), 1.0);
    EXPECT_EQ(doubles->Min(2.0, 1.0), 1.0);
    // A tie returns the second argument: tell the two zeros apart by their sign.
    EXPECT_TRUE(std::signbit(doubles->Max(0.0, -0.0)));
    EXPECT_FALSE(std::signbit(doubles->Max(-0.0, 0.0)));
    EXPECT_EQ(doubles->Max(2.0, 2.0), 2.0);
}

TEST(Numeric, PercentToFractionAndArcSin) {
    EXPECT_EQ(percentToFraction(250.0), 2.5);
    EXPECT_DOUBLE_EQ(arcSin(0.5), 0.5235987755982989);
    EXPECT_EQ(arcSin(0.0), 0.0);
    EXPECT_TRUE(Doubles::shared()->isNaN(arcSin(1.0)));
    EXPECT_TRUE(Doubles::shared()->isNaN(arcSin(-1.5)));
    EXPECT_TRUE(Doubles::shared()->isNaN(arcSin(Doubles::shared()->NaN())));
}
