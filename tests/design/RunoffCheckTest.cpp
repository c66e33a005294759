#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <functional>
#include <numbers>
#include <stdexcept>

#include "caudalis/design/RunoffCheck.hpp"

using namespace caudalis;
using namespace caudalis::design;

namespace {

KostiakovParameters soil(double k, double a) {
    return KostiakovParameters{k, a};
}

std::string messageOf(const std::function<void()>& action) {
    try {
        action();
    } catch (const std::invalid_argument& error) {
        return error.what();
    }
    return "";
}

/// The runoff integral stepped through all 20 000 midpoints, each worked out.
RunoffEstimate everyStep(const RunoffCheck& check, double distanceM, double wettedDiameterM, double peak) {
    RunoffEstimate estimate;
    const double duration = check.applicationTimeH(distanceM, wettedDiameterM);
    const double step = duration / 20000;
    for (int i = 0; i < 20000; ++i) {
        const double t = (i + 0.5) * step;
        const double excess = RunoffCheck::applicationRateMmH(peak, duration, t) - check.intakeRateMmH(t);
        if (excess > 0) {
            estimate.runoffMm += excess * step;
            if (!estimate.runoffStartsH) {
                estimate.runoffStartsH = i * step;
            }
        }
    }
    return estimate;
}

}  // namespace

TEST(RunoffCheck, SameRunoffToTheLastBitAsSteppingThroughEveryMidpoint) {
    // Soils from a constant intake rate to a steep Kostiakov curve, strips from narrow sprays to
    // an end gun's, peaks from none to far above any intake, so that runoff starts early, late,
    // in the middle of the strip or not at all.
    int withRunoff = 0;
    int without = 0;
    for (const double a : {0.2, 0.45, 0.6, 0.85, 1.0}) {
        for (const double k : {5.0, 20.0, 50.0, 120.0}) {
            const RunoffCheck check(soil(k, a), 20);
            for (const double distance : {3.0, 40.0, 211.7, 430.0}) {
                for (const double diameter : {6.5, 14.0, 60.0}) {
                    for (const double peak : {0.0, 7.3, 31.0, 88.8, 140.0, 400.0}) {
                        const auto fast = check.at(distance, diameter, peak);
                        const auto slow = everyStep(check, distance, diameter, peak);
                        ASSERT_EQ(std::bit_cast<std::uint64_t>(fast.runoffMm),
                                  std::bit_cast<std::uint64_t>(slow.runoffMm))
                            << a << " " << k << " " << distance << " " << diameter << " " << peak;
                        ASSERT_EQ(fast.runoffStartsH.has_value(), slow.runoffStartsH.has_value());
                        if (slow.runoffStartsH) {
                            ASSERT_EQ(std::bit_cast<std::uint64_t>(*fast.runoffStartsH),
                                      std::bit_cast<std::uint64_t>(*slow.runoffStartsH));
                        }
                        ++(slow.runoffMm > 0 ? withRunoff : without);
                    }
                }
            }
        }
    }
    EXPECT_GT(withRunoff, 100);
    EXPECT_GT(without, 100);
}

TEST(RunoffCheck, KostiakovIntakeAndItsRateByHand) {
    const RunoffCheck check(soil(12.5, 0.55), 20);
    // 12.5 x 0.25^0.55 = 12.5 x 0.466516 = 5.83146 mm; 0.55 x 12.5 x 0.25^-0.45 = 12.8292 mm/h
    EXPECT_NEAR(check.infiltrationMm(0.25), 5.831456, 1e-6);
    EXPECT_NEAR(check.intakeRateMmH(0.25), 12.829204, 1e-6);
    EXPECT_DOUBLE_EQ(check.infiltrationMm(1), 12.5);
}

TEST(RunoffCheck, ApplicationTimeAndDepthByHand) {
    // A 12 m strip at 200 m on a 20 h revolution: 12 x 20 / (2 pi 200) = 0.190986 h (11.5 min);
    // at a peak of 40 mm/h the ellipse lays pi / 4 x 40 x 0.190986 = 40 x 240 / 1600 = 6 mm.
    const RunoffCheck check(soil(12.5, 0.55), 20);
    const auto estimate = check.at(200, 12, 40);
    EXPECT_NEAR(estimate.applicationTimeH, 0.1909859, 1e-7);
    EXPECT_NEAR(estimate.appliedMm, 6.0, 1e-12);
    EXPECT_NEAR(estimate.infiltrationCapacityMm, 12.5 * std::pow(0.1909859317, 0.55), 1e-6);
}

TEST(RunoffCheck, EllipticalRateByHand) {
    EXPECT_DOUBLE_EQ(RunoffCheck::applicationRateMmH(40, 1, 0.5), 40);
    // u = 2 x 0.25 - 1 = -0.5: 40 x sqrt(0.75)
    EXPECT_DOUBLE_EQ(RunoffCheck::applicationRateMmH(40, 1, 0.25), 40 * std::sqrt(0.75));
    EXPECT_EQ(RunoffCheck::applicationRateMmH(40, 1, 0), 0);
    EXPECT_EQ(RunoffCheck::applicationRateMmH(40, 1, 1.2), 0);
}

TEST(RunoffCheck, RunoffAboveAConstantIntakeRateByHand) {
    // a = 1 makes the intake rate constant (k = 20 mm/h). r = 50 m, w = 10 m, T = 10 pi h give an
    // application time of exactly 1 h. The ellipse of peak 40 mm/h exceeds 20 mm/h for
    // |u| < u0 = sqrt(1 - (20/40)^2) = 0.866025, and the excess is
    //   (t_a / 2) (Ip asin(u0) - k u0) = 0.5 (40 pi / 3 - 20 x 0.866025) = 12.2837 mm,
    // beginning at t_a (1 - u0) / 2 = 0.066987 h.
    const RunoffCheck check(soil(20, 1), 10 * std::numbers::pi);
    const auto estimate = check.at(50, 10, 40);
    EXPECT_NEAR(estimate.applicationTimeH, 1.0, 1e-12);
    EXPECT_NEAR(estimate.runoffMm, 12.283697, 1e-3);
    ASSERT_TRUE(estimate.runoffStartsH.has_value());
    EXPECT_NEAR(*estimate.runoffStartsH, 0.066987, 1e-4);
    EXPECT_EQ(estimate.verdict, RunoffVerdict::Runoff);
}

TEST(RunoffCheck, NoRunoffWhileTheIntakeRateStaysAbove) {
    // k = 100, a = 0.5: the intake rate 50 t^-0.5 is at least 50 mm/h during the hour, above the
    // 40 mm/h peak.
    const RunoffCheck check(soil(100, 0.5), 10 * std::numbers::pi);
    const auto estimate = check.at(50, 10, 40);
    EXPECT_EQ(estimate.runoffMm, 0);
    EXPECT_FALSE(estimate.runoffStartsH.has_value());
    EXPECT_EQ(estimate.verdict, RunoffVerdict::NoRunoff);
    EXPECT_NEAR(estimate.infiltrationCapacityMm, 100, 1e-9);
}

TEST(RunoffCheck, RunoffGrowsWithThePeakRateAndShrinksWithAWiderStrip) {
    const RunoffCheck check(soil(12.5, 0.55), 20);
    const auto narrow = check.at(400, 10, 80);
    const auto steeper = check.at(400, 10, 120);
    const auto wider = check.at(400, 20, 40);  // same depth, half the peak
    EXPECT_GT(narrow.runoffMm, 0);
    EXPECT_GT(steeper.runoffMm, narrow.runoffMm);
    EXPECT_LT(wider.runoffMm, narrow.runoffMm);
    EXPECT_NEAR(wider.appliedMm, narrow.appliedMm, 1e-9);
    EXPECT_LT(narrow.runoffMm, narrow.appliedMm);
}

TEST(RunoffCheck, RefusesValuesItCannotUse) {
    EXPECT_EQ(messageOf([] { RunoffCheck(soil(0, 0.5), 20); }),
              "the Kostiakov coefficient k must be greater than 0, got 0");
    EXPECT_EQ(messageOf([] { RunoffCheck(soil(12.5, 1.2), 20); }),
              "the Kostiakov exponent a must be greater than 0 and at most 1, got 1.2");
    EXPECT_EQ(messageOf([] { RunoffCheck(soil(12.5, 0), 20); }),
              "the Kostiakov exponent a must be greater than 0 and at most 1, got 0");
    EXPECT_EQ(messageOf([] { RunoffCheck(soil(12.5, 0.5), 0); }),
              "the revolution time must be greater than 0 h, got 0");
    const RunoffCheck check(soil(12.5, 0.5), 20);
    EXPECT_EQ(messageOf([&] { check.at(0, 12, 40); }),
              "the distance from the centre must be greater than 0 m, got 0");
    EXPECT_EQ(messageOf([&] { check.at(100, -1, 40); }),
              "the wetted diameter must be greater than 0 m, got -1");
    EXPECT_EQ(messageOf([&] { check.at(100, 12, -3); }),
              "the peak application rate must not be negative, got -3");
}
