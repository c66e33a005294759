#include "caudalis/machine/HazenWilliams.hpp"

#include <gtest/gtest.h>

#include <cmath>

#include "ErrorMatchers.hpp"

using namespace caudalis;

TEST(HazenWilliams, UnitLossInTheStatedOrder) {
    const double q = 50;
    const double d = 168;
    const double c = 140;
    const double expected = std::pow(d, -4.87) * (std::pow(10.0, 10.0) * 1.21 * std::pow(q / c, 1.852));
    EXPECT_EQ(hazenWilliamsLoss(q, d, c), expected);
    EXPECT_NEAR(hazenWilliamsLoss(q, d, c), 1.21e10 * std::pow(q / c, 1.852) * std::pow(d, -4.87), 1e-15);
}

TEST(HazenWilliams, NoFlowNoLoss) {
    EXPECT_EQ(hazenWilliamsLoss(0, 168, 140), 0);
}

TEST(HazenWilliams, ZeroCoefficientRaises) {
    EXPECT_RAISES(hazenWilliamsLoss(50, 168, 0), RuntimeError::DivisionByZero);
    EXPECT_RAISES(hazenWilliamsLoss(0, 168, 0), RuntimeError::Overflow);
}

TEST(HazenWilliams, ZeroDiameterRaisesInsteadOfAnInfiniteLoss) {
    EXPECT_NE(::caudalis::testing::raisedNumber([] { (void)hazenWilliamsLoss(50, 0, 140); }), 0);
}
