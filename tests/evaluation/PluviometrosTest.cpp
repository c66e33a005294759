#include "caudalis/evaluation/Pluviometros.hpp"

#include <gtest/gtest.h>

#include <cmath>

#include "ErrorMatchers.hpp"
#include "caudalis/core/Doubles.hpp"
#include "caudalis/core/Errors.hpp"

using namespace caudalis;

namespace {

constexpr auto incompleteGauge = errorNumber(PluviometroException::PluviometroIncompleteException);

/// The area of a gauge of diameter 0.1: 0.05 squared times 3.14159265358979.
constexpr double areaOfTenthDiameter = 0.007853981633974477;

const Pluviometros& gauges() {
    return *Pluviometros::shared();
}

bool isLibraryNaN(double value) {
    return std::isnan(value) && std::signbit(value);
}

}  // namespace

TEST(PluviometrosTest, NewGaugeKeepsItsDiameterAndHasNoAreaYet) {
    const Pluviometro gauge = gauges().newPluviometro(0.2);
    EXPECT_EQ(gauge.diameter, 0.2);
    EXPECT_TRUE(isLibraryNaN(gauge.p_area));
    EXPECT_TRUE(Doubles::shared()->isNaN(gauge.p_area));
}

TEST(PluviometrosTest, AGaugeIsValidOnlyWithAPositiveDiameter) {
    EXPECT_TRUE(gauges().Valid(gauges().newPluviometro(0.1)));
    EXPECT_TRUE(gauges().Valid(gauges().newPluviometro(1e-300)));
    EXPECT_FALSE(gauges().Valid(gauges().newPluviometro(0)));
    EXPECT_FALSE(gauges().Valid(gauges().newPluviometro(-0.1)));
    EXPECT_FALSE(gauges().Valid(gauges().newPluviometro(Doubles::shared()->NaN())));
}

TEST(PluviometrosTest, AreaUsesTheFifteenDigitPiAndIsWrittenBack) {
    Pluviometro gauge = gauges().newPluviometro(0.1);
    EXPECT_EQ(gauges().Area(gauge), areaOfTenthDiameter);
    EXPECT_EQ(gauge.p_area, areaOfTenthDiameter);
    EXPECT_NE(gauge.p_area, std::pow(0.05, 2) * 3.141592653589793);
    EXPECT_NEAR(gauge.p_area, 0.0078539816339744, 1e-16);
}

TEST(PluviometrosTest, ACachedAreaIsReturnedWithoutComputing) {
    Pluviometro gauge = gauges().newPluviometro(0.1);
    gauges().Area(gauge);
    gauge.diameter = 2;
    EXPECT_EQ(gauges().Area(gauge), areaOfTenthDiameter);
    gauge.p_area = 42;
    EXPECT_EQ(gauges().Area(gauge), 42);
}

TEST(PluviometrosTest, AreaOfAnInvalidGaugeRaisesAndLeavesTheCacheAlone) {
    for (const double diameter : {0.0, -0.1, Doubles::shared()->NaN()}) {
        Pluviometro gauge = gauges().newPluviometro(diameter);
        EXPECT_RAISES(gauges().Area(gauge), incompleteGauge) << diameter;
        EXPECT_TRUE(isLibraryNaN(gauge.p_area)) << diameter;
    }
}

TEST(PluviometrosTest, AnInvalidGaugeRaisesEvenWithACachedArea) {
    Pluviometro gauge{0, 0.5};
    EXPECT_RAISES(gauges().Area(gauge), incompleteGauge);
}

TEST(PluviometrosTest, AnAreaTooLargeForADoubleOverflows) {
    Pluviometro gauge = gauges().newPluviometro(1e300);
    EXPECT_RAISES(gauges().Area(gauge), RuntimeError::Overflow);
}
