#include "caudalis/machine/CoordenadasSaidas.hpp"

#include <gtest/gtest.h>

#include "ErrorMatchers.hpp"

using namespace caudalis;

namespace {

std::shared_ptr<CoordenadasSaidas> coordinates() {
    return CoordenadasSaidas::shared();
}

CoordenadasSaida address(Integer span, Long outlet) {
    return CoordenadasSaida{span, outlet};
}

}  // namespace

TEST(CoordenadasSaidas, SharedInstanceIsOneObject) {
    EXPECT_EQ(CoordenadasSaidas::shared(), CoordenadasSaidas::shared());
}

TEST(CoordenadasSaidas, SpanOutletPrintsAndParsesBack) {
    const auto made = coordinates()->newTramoCoordenadas(2, 7);
    EXPECT_EQ(made, address(2, 7));
    EXPECT_EQ(coordinates()->ToString(made), "2-7");
    EXPECT_EQ(coordinates()->Parse("2-7"), address(2, 7));
}

TEST(CoordenadasSaidas, TextWithoutHyphenGivesTheSameNumberTwice) {
    EXPECT_EQ(coordinates()->Parse("5"), address(5, 5));
}

TEST(CoordenadasSaidas, PartsBetweenTheFirstAndTheLastAreIgnored) {
    EXPECT_EQ(coordinates()->Parse("2-x-7"), address(2, 7));
}

TEST(CoordenadasSaidas, SurroundingSpacesAreAccepted) {
    EXPECT_EQ(coordinates()->Parse(" 3 - 12 "), address(3, 12));
}

TEST(CoordenadasSaidas, MissingOrNonNumericPartsAreATypeMismatch) {
    EXPECT_RAISES(coordinates()->Parse("2-"), RuntimeError::TypeMismatch);
    EXPECT_RAISES(coordinates()->Parse("-7"), RuntimeError::TypeMismatch);
    EXPECT_RAISES(coordinates()->Parse("a-7"), RuntimeError::TypeMismatch);
    EXPECT_RAISES(coordinates()->Parse(""), RuntimeError::TypeMismatch);
}

TEST(CoordenadasSaidas, EndGunPrintsButDoesNotParseBack) {
    const auto gun = coordinates()->newEndGunCoordenadas();
    EXPECT_EQ(gun, address(-1, -1));
    EXPECT_EQ(coordinates()->ToString(gun), "-1--1");
    EXPECT_RAISES(coordinates()->Parse("-1--1"), RuntimeError::TypeMismatch);
}

TEST(CoordenadasSaidas, PartsOutsideTheIntegerRangeOverflow) {
    EXPECT_RAISES(coordinates()->Parse("40000-1"), RuntimeError::Overflow);
    EXPECT_RAISES(coordinates()->Parse("1-32768"), RuntimeError::Overflow);
    EXPECT_EQ(coordinates()->Parse("32767-1"), address(32767, 1));
}

TEST(CoordenadasSaidas, LargeOutletNumbersPrintFullyButDoNotParseBack) {
    const auto far = address(1, 40000);
    EXPECT_EQ(coordinates()->ToString(far), "1-40000");
    EXPECT_RAISES(coordinates()->Parse(coordinates()->ToString(far)), RuntimeError::Overflow);
}

TEST(CoordenadasSaidas, OutletNumberIsWidenedWithItsSign) {
    EXPECT_EQ(coordinates()->newTramoCoordenadas(-5, -7).saida, -7);
    EXPECT_EQ(coordinates()->newTramoCoordenadas(1, 32767).saida, 32767);
}

TEST(CoordenadasSaidas, ValidityNeedsBothFieldsNonZero) {
    EXPECT_FALSE(coordinates()->isValid(address(0, 3)));
    EXPECT_FALSE(coordinates()->isValid(address(3, 0)));
    EXPECT_FALSE(coordinates()->isValid(CoordenadasSaida{}));
    EXPECT_TRUE(coordinates()->isValid(address(-1, -1)));
    EXPECT_TRUE(coordinates()->isValid(address(-4, 2)));
}

TEST(CoordenadasSaidas, OnlyMinusOneTwiceIsTheEndGun) {
    EXPECT_TRUE(coordinates()->isAtEndGun(address(-1, -1)));
    EXPECT_FALSE(coordinates()->isAtEndGun(address(-1, 3)));
    EXPECT_FALSE(coordinates()->isAtEndGun(address(3, -1)));
}
