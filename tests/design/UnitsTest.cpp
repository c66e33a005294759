#include <gtest/gtest.h>

#include <cmath>

#include "caudalis/design/Units.hpp"

using namespace caudalis::design;

TEST(Units, UsCustomaryUsesThePublishedFactors) {
    const Units us(UnitSystem::US);
    EXPECT_DOUBLE_EQ(us.toSI(Quantity::Pressure, 1), 6.894757);
    EXPECT_DOUBLE_EQ(us.toSI(Quantity::Flow, 1), 0.0630902);
    EXPECT_DOUBLE_EQ(us.toSI(Quantity::Length, 1), 0.3048);
    EXPECT_DOUBLE_EQ(us.toSI(Quantity::Diameter, 1), 25.4);
    EXPECT_DOUBLE_EQ(us.toSI(Quantity::Depth, 1), 25.4);
    EXPECT_DOUBLE_EQ(us.toSI(Quantity::Rate, 1), 25.4);
    EXPECT_DOUBLE_EQ(us.toSI(Quantity::Spacing, 57), 144.78);  // 57 in = 144.78 cm
    EXPECT_DOUBLE_EQ(us.toSI(Quantity::Area, 1) / 10000, 0.4046856);
    EXPECT_DOUBLE_EQ(us.fromSI(Quantity::Pressure, 103), 103 / 6.894757);
}

TEST(Units, SiIsTheIdentity) {
    const Units si;
    for (const auto quantity : {Quantity::Pressure, Quantity::Flow, Quantity::Length, Quantity::Diameter,
                                Quantity::Spacing, Quantity::Depth, Quantity::Rate, Quantity::Area}) {
        EXPECT_EQ(si.toSI(quantity, 12.375), 12.375);
        EXPECT_EQ(si.fromSI(quantity, 12.375), 12.375);
    }
}

TEST(Units, ConversionsGoBackAndForth) {
    const Units us(UnitSystem::US);
    for (const double value : {0.001, 1.0, 41.3, 1234.5}) {
        EXPECT_NEAR(us.fromSI(Quantity::Flow, us.toSI(Quantity::Flow, value)) / value, 1, 1e-15);
        EXPECT_NEAR(us.toSI(Quantity::Pressure, us.fromSI(Quantity::Pressure, value)) / value, 1, 1e-15);
    }
}

TEST(Units, FlowLawCoefficientGivesTheSameFlowInEitherSystem) {
    const Units us(UnitSystem::US);
    const double a = 0.0123;  // l/s at kPa^0.48
    const double b = 0.48;
    const double usA = us.flowCoefficientFromSI(a, b);
    for (const double psi : {6.0, 20.0, 45.0}) {
        const double gpm = usA * std::pow(psi, b);
        const double lps = a * std::pow(psi * 6.894757, b);
        EXPECT_NEAR(gpm * 0.0630902, lps, 1e-12);
    }
    EXPECT_NEAR(us.flowCoefficientToSI(usA, b), a, 1e-15);
}

TEST(Units, NamesSymbolsAndFieldSuffixes) {
    EXPECT_EQ(Units::parse("us"), UnitSystem::US);
    EXPECT_EQ(Units::parse("si"), UnitSystem::SI);
    EXPECT_FALSE(Units::parse("imperial"));
    const Units us(UnitSystem::US);
    EXPECT_EQ(us.name(), "us");
    EXPECT_EQ(us.symbol(Quantity::Pressure), "psi");
    EXPECT_EQ(us.suffix(Quantity::Flow), "gpm");
    EXPECT_EQ(Units().suffix(Quantity::Flow), "lps");
    EXPECT_EQ(Units().symbol(Quantity::Rate), "mm/h");
}
