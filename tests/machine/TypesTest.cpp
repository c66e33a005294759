#include "caudalis/machine/Types.hpp"

#include <gtest/gtest.h>

#include <cmath>

#include "ErrorMatchers.hpp"
#include "caudalis/core/Doubles.hpp"

using namespace caudalis;

namespace {

std::shared_ptr<Types> types() {
    return Types::placementsInstance();
}

saida outletAt(Double distance, Double required, Double delivered) {
    saida outlet;
    outlet.distanciaAoPivot = distance;
    outlet.caudal = required;
    outlet.caudal_do_aspersor = delivered;
    return outlet;
}

}  // namespace

TEST(Types, SharedInstancesAreDistinctAndStable) {
    EXPECT_EQ(Types::gunInstance(), Types::gunInstance());
    EXPECT_EQ(Types::placementsInstance(), Types::placementsInstance());
    EXPECT_EQ(Types::saidasInstance(), Types::saidasInstance());
    EXPECT_EQ(Types::application(), Types::application());
    EXPECT_NE(Types::gunInstance(), Types::placementsInstance());
    EXPECT_NE(Types::gunInstance(), Types::saidasInstance());
    EXPECT_NE(Types::placementsInstance(), Types::saidasInstance());
    EXPECT_NE(Types::application(), Types::gunInstance());
}

TEST(Types, NewGunSetsTheRingWidthOnly) {
    const Gun gun = types()->newGun(25);
    EXPECT_EQ(gun.rs, 25);
    EXPECT_EQ(gun.saida.caudal, 0);
    EXPECT_EQ(gun.saida.distanciaAoPivot, 0);
    EXPECT_EQ(gun.saida.obj_aspersor, nullptr);
}

TEST(Types, GunIsCompleteExactlyWithAPositiveRingWidth) {
    EXPECT_FALSE(types()->isComplete(types()->newGun(0)));
    EXPECT_TRUE(types()->isComplete(types()->newGun(0.01)));
    EXPECT_FALSE(types()->isComplete(types()->newGun(-1)));
    EXPECT_FALSE(types()->isComplete(types()->newGun(Doubles::shared()->NaN())));
}

TEST(Types, NewPlacementLeavesTheCachesEmpty) {
    const Placement placement = types()->newPlacement(1, 2, 3);
    EXPECT_EQ(placement.start_cota, 1);
    EXPECT_EQ(placement.end_cota, 2);
    EXPECT_EQ(placement.Length, 3);
    EXPECT_EQ(placement.p_angle, 0);
    EXPECT_EQ(placement.p_slope, 0);
}

TEST(Types, PlacementIsValidOnlyWhenTheRiseIsShorterThanTheLength) {
    EXPECT_FALSE(types()->isValid(types()->newPlacement(100, 103, 3)));
    EXPECT_TRUE(types()->isValid(types()->newPlacement(100, 102.9, 3)));
    EXPECT_TRUE(types()->isValid(types()->newPlacement(100, 97.1, 3)));
    EXPECT_FALSE(types()->isValid(types()->newPlacement(100, 97, 3)));
}

TEST(Types, ZeroLengthPlacementIsNeverValid) {
    EXPECT_FALSE(types()->isValid(types()->newPlacement(0, 0, 0)));
}

TEST(Types, NaNElevationIsInvalidButNaNLengthIsValid) {
    const double nan = Doubles::shared()->NaN();
    EXPECT_FALSE(types()->isValid(types()->newPlacement(0, nan, 10)));
    EXPECT_TRUE(types()->isValid(types()->newPlacement(0, 1, nan)));
}

TEST(Types, SlopeAngleIsCachedInTheCallersPlacement) {
    Placement placement = types()->newPlacement(0, 1, 2);
    const double angle = types()->SlopeAngle(placement);
    EXPECT_NEAR(angle, 0.5235987755982989, 1e-15);
    EXPECT_EQ(placement.p_angle, angle);
}

TEST(Types, SlopeIsTheTangentOfTheAngleAndIsCached) {
    Placement placement = types()->newPlacement(0, 1, 2);
    const double slope = types()->Slope(placement);
    EXPECT_DOUBLE_EQ(slope, std::tan(0.5235987755982989));
    EXPECT_EQ(placement.p_slope, slope);
    EXPECT_NEAR(placement.p_angle, 0.5235987755982989, 1e-15);
}

TEST(Types, CachedValuesAreReturnedWithoutRecomputing) {
    Placement placement = types()->newPlacement(0, 1, 2);
    placement.p_angle = 0.25;
    placement.p_slope = 7;
    EXPECT_EQ(types()->SlopeAngle(placement), 0.25);
    EXPECT_EQ(types()->Slope(placement), 7);
}

TEST(Types, InvalidPlacementKeepsNaNAfterItsElevationsAreCorrected) {
    Placement placement = types()->newPlacement(100, 103, 3);
    EXPECT_TRUE(std::isnan(types()->SlopeAngle(placement)));
    EXPECT_TRUE(Doubles::shared()->isNaN(placement.p_angle));
    placement.end_cota = 101;
    EXPECT_TRUE(std::isnan(types()->SlopeAngle(placement)));
    EXPECT_TRUE(std::isnan(types()->Slope(placement)));
    EXPECT_TRUE(std::isnan(placement.p_slope));
}

TEST(Types, FlatPlacementHasZeroAngleAndSlope) {
    Placement placement = types()->newPlacement(5, 5, 10);
    EXPECT_EQ(types()->SlopeAngle(placement), 0);
    EXPECT_EQ(types()->Slope(placement), 0);
    EXPECT_EQ(placement.p_angle, 0);
}

TEST(Types, FlatPlacementIsRecomputedWhenItsElevationsChange) {
    Placement placement = types()->newPlacement(5, 5, 10);
    (void)types()->SlopeAngle(placement);
    placement.end_cota = 10;
    EXPECT_NEAR(types()->SlopeAngle(placement), 0.5235987755982989, 1e-15);
}

TEST(Types, VirtualPlacementWithZeroAngleIsFlat) {
    const Placement placement = types()->newVirtualPlacement(10, 0, 40);
    EXPECT_EQ(placement.start_cota, 10);
    EXPECT_EQ(placement.end_cota, 10);
    EXPECT_EQ(placement.Length, 40);
    EXPECT_EQ(placement.p_angle, 0);
}

TEST(Types, VirtualPlacementEndsAtTheRiseOfItsAngle) {
    const double angle = 0.5235987755982989;
    const Placement placement = types()->newVirtualPlacement(10, angle, 40);
    EXPECT_DOUBLE_EQ(placement.end_cota, std::sin(angle) * 40 + 10);
    EXPECT_EQ(placement.p_angle, 0);
    EXPECT_EQ(placement.p_slope, 0);
}

TEST(Types, VirtualPlacementWithNaNAngleIsInvalid) {
    const Placement placement = types()->newVirtualPlacement(10, Doubles::shared()->NaN(), 40);
    EXPECT_TRUE(Doubles::shared()->isNaN(placement.end_cota));
    EXPECT_FALSE(types()->isValid(placement));
}

TEST(Types, IdealWaterDepthOfOneLitrePerSecondAtOneHundredMetres) {
    const auto sample = types()->IdealWaterDepthSample(outletAt(100, 1, 0), 1, 20);
    EXPECT_DOUBLE_EQ(sample.depth, 3600.0 / ((1 * 6.28318530717958 * 100) / 20));
    EXPECT_NEAR(sample.depth, 114.59, 0.005);
    EXPECT_EQ(sample.distanceFromCenter, 100);
    EXPECT_FALSE(sample.p_null);
}

TEST(Types, ActualWaterDepthUsesTheSprinklersFlow) {
    const auto outlet = outletAt(100, 1, 2);
    const auto actual = types()->ActualWaterDepthSample(outlet, 1, 20);
    const auto ideal = types()->IdealWaterDepthSample(outlet, 1, 20);
    EXPECT_DOUBLE_EQ(actual.depth, 2 * ideal.depth);
    EXPECT_EQ(actual.distanceFromCenter, 100);
}

TEST(Types, WaterDepthUsesTheFifteenDigitTwoPi) {
    const auto sample = types()->IdealWaterDepthSample(outletAt(1, 1, 0), 1, 1);
    EXPECT_EQ(sample.depth, 3600.0 / 6.28318530717958);
}

TEST(Types, WaterDepthRaisesForAZeroRing) {
    EXPECT_RAISES(types()->IdealWaterDepthSample(outletAt(0, 1, 0), 1, 20), RuntimeError::DivisionByZero);
    EXPECT_RAISES(types()->IdealWaterDepthSample(outletAt(100, 1, 0), 0, 20), RuntimeError::DivisionByZero);
    EXPECT_RAISES(types()->IdealWaterDepthSample(outletAt(100, 1, 0), 1, 0), RuntimeError::DivisionByZero);
}
