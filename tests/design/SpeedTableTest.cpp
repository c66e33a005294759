#include <gtest/gtest.h>

#include <numbers>
#include <stdexcept>

#include "caudalis/design/DepthBalance.hpp"
#include "caudalis/design/SpeedTable.hpp"

using namespace caudalis;
using namespace caudalis::design;

TEST(SpeedTable, TenRowsFromTheRevolutionTimeAtFullSpeed) {
    // 20 h at 100 %, end tower at 400 m, 6 mm per revolution at 100 %.
    const auto table = SpeedTable::build(20, 400, 6);
    EXPECT_EQ(table.tempoH100, 20);
    EXPECT_EQ(table.velocidades(1).percentagem, 10);
    EXPECT_DOUBLE_EQ(table.velocidades(1).tempoDeUmaVolta, 200);
    EXPECT_DOUBLE_EQ(table.velocidades(1).velocidadeLinear, 2 * std::numbers::pi * 400 / 200);  // 12.566 m/h
    EXPECT_DOUBLE_EQ(table.velocidades(1).dotacao, 60);
    EXPECT_EQ(table.velocidades(4).percentagem, 40);
    EXPECT_DOUBLE_EQ(table.velocidades(4).tempoDeUmaVolta, 50);
    EXPECT_NEAR(table.velocidades(4).velocidadeLinear, 50.265482, 1e-6);
    EXPECT_DOUBLE_EQ(table.velocidades(4).dotacao, 15);
    EXPECT_EQ(table.velocidades(10).percentagem, 100);
    EXPECT_DOUBLE_EQ(table.velocidades(10).tempoDeUmaVolta, 20);
    EXPECT_DOUBLE_EQ(table.velocidades(10).dotacao, 6);
}

TEST(SpeedTable, RefusesValuesItCannotUse) {
    EXPECT_THROW(SpeedTable::build(0, 400, 6), std::invalid_argument);
    EXPECT_THROW(SpeedTable::build(20, 0, 6), std::invalid_argument);
    EXPECT_THROW(SpeedTable::build(20, 400, -1), std::invalid_argument);
    EXPECT_THROW(SpeedTable::depthPerRevolutionMm(50, 20, 0), std::invalid_argument);
}

TEST(SpeedTable, DepthPerRevolutionIsVolumeOverArea) {
    // 47.733 l/s for 20 h on 57.09 ha: 47.733 x 3600 x 20 / 570900 = 6.02 mm.
    EXPECT_NEAR(SpeedTable::depthPerRevolutionMm(47.733, 20, 570900), 6.0199, 1e-4);
}

TEST(DepthBalance, ThreeFiguresByHand) {
    // A span outlet at 10 m with a 2 m ring giving 1 l/s and an end gun at 20 m with a 10 m ring
    // giving 5 l/s, 1 h per revolution, on a circle of radius 25 m (1963.50 m2):
    //   volume over area 6 x 3600 / 1963.50 = 11.0008 mm;
    //   outlet depths 3600 / (2 pi 10 x 2) = 28.648 mm and 18000 / (2 pi 20 x 10) = 14.324 mm,
    //   distance-weighted (10 x 28.648 + 20 x 14.324) / 30 = 19.0986 mm;
    //   ring area mean 21600 / (2 pi 220) = 15.6261 mm; the gun has 20/30 of the weight and
    //   200/220 of the ring area.
    const std::vector<OutletRing> rings{{10, 2, 1}, {20, 10, 5}};
    const auto figures = DepthBalance::compute(rings, 6, 1, std::numbers::pi * 625);
    EXPECT_NEAR(figures.volumeOverAreaMm, 11.000790, 1e-6);
    EXPECT_NEAR(figures.distanceWeightedMeanMm, 19.098593, 1e-6);
    EXPECT_NEAR(figures.ringAreaMeanMm, 15.626122, 1e-6);
    EXPECT_NEAR(figures.ringsAreaM2, 2 * std::numbers::pi * 220, 1e-9);
    EXPECT_DOUBLE_EQ(figures.widestRingWeightShare, 20.0 / 30);
    EXPECT_DOUBLE_EQ(figures.widestRingAreaShare, 200.0 / 220);
    const auto text = DepthBalance::explanation(figures, UnitText(Units()));
    EXPECT_NE(text.find("11.00 mm as volume over area"), std::string::npos) << text;
    EXPECT_NE(text.find("weighted by distance, as the uniformity figures weigh them, is 19.10 mm"),
              std::string::npos);
    EXPECT_NE(text.find("66.7 % of the weight but 90.9 % of the watered ground"), std::string::npos);
    EXPECT_NE(text.find("Weighted by ring area the outlets give 15.63 mm"), std::string::npos);
}

TEST(DepthBalance, ExplainsInTheUnitsAskedFor) {
    const std::vector<OutletRing> rings{{5, 2, 1}, {15, 2, 2}, {25, 20, 3}};
    const auto figures = DepthBalance::compute(rings, 6, 1, std::numbers::pi * 625);
    const auto text = DepthBalance::explanation(figures, UnitText(Units(UnitSystem::US)));
    EXPECT_NE(text.find("0.433 in as volume over area"), std::string::npos) << text;
    EXPECT_NE(text.find("acre of the"), std::string::npos) << text;
    EXPECT_EQ(text.find(" mm"), std::string::npos) << text;
    EXPECT_EQ(text.find(" ha "), std::string::npos) << text;
}

TEST(DepthBalance, RefusesRingsItCannotWeigh) {
    EXPECT_THROW(DepthBalance::compute({}, 6, 1, 100), std::invalid_argument);
    EXPECT_THROW(DepthBalance::compute({{10, 0, 1}}, 6, 1, 100), std::invalid_argument);
    EXPECT_THROW(DepthBalance::compute({{0, 2, 1}}, 6, 1, 100), std::invalid_argument);
    EXPECT_THROW(DepthBalance::compute({{10, 2, 1}}, 6, 0, 100), std::invalid_argument);
}
