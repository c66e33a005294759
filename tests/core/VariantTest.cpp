#include <gtest/gtest.h>

#include <cmath>

#include "ErrorMatchers.hpp"
#include "LocaleGuard.hpp"
#include "caudalis/core/NumberText.hpp"
#include "caudalis/core/Records.hpp"
#include "caudalis/core/Variant.hpp"

using caudalis::Variant;
using caudalis::testing::DecimalSeparatorGuard;
namespace rt = caudalis::RuntimeError;

TEST(Variant, DefaultIsEmptyAndConvertsToZeroAndEmptyText) {
    Variant empty;
    EXPECT_TRUE(empty.isEmpty());
    EXPECT_EQ(empty.toDouble(), 0.0);
    EXPECT_EQ(empty.toLong(), 0);
    EXPECT_EQ(empty.toString(), "");
    EXPECT_FALSE(empty.toBoolean());
}

TEST(Variant, NullRaisesInvalidUseOfNullOnEveryConversion) {
    const Variant null = Variant::null();
    EXPECT_TRUE(null.isNull());
    EXPECT_RAISES(null.toDouble(), rt::InvalidUseOfNull);
    EXPECT_RAISES(null.toLong(), rt::InvalidUseOfNull);
    EXPECT_RAISES(null.toInteger(), rt::InvalidUseOfNull);
    EXPECT_RAISES(null.toString(), rt::InvalidUseOfNull);
    EXPECT_RAISES(null.toBoolean(), rt::InvalidUseOfNull);
}

TEST(Variant, NumberToTextUsesFifteenSignificantDigits) {
    EXPECT_EQ(Variant(1.5).toString(), "1.5");
    EXPECT_EQ(Variant(0.1 + 0.2).toString(), "0.3");
    EXPECT_EQ(Variant(1.0 / 3.0).toString(), "0.333333333333333");
    EXPECT_EQ(Variant(123456789012345.0).toString(), "123456789012345");
    EXPECT_EQ(Variant(1e20).toString(), "1E+20");
    EXPECT_EQ(Variant(-2.5e-7).toString(), "-2.5E-07");
    EXPECT_EQ(Variant(-0.0).toString(), "0");
    EXPECT_EQ(Variant(caudalis::Long{-42}).toString(), "-42");
    EXPECT_EQ(Variant(true).toString(), "True");
    EXPECT_EQ(Variant(false).toString(), "False");
}

TEST(Variant, NumberToTextFollowsTheLocaleDecimalSeparator) {
    DecimalSeparatorGuard comma(',');
    EXPECT_EQ(Variant(1.5).toString(), "1,5");
    EXPECT_EQ(Variant(-1234.25).toString(), "-1234,25");
    EXPECT_EQ(Variant(2.0).toString(), "2");
}

TEST(Variant, TextToNumberReadsTheLocaleForm) {
    EXPECT_EQ(Variant("2.5").toDouble(), 2.5);
    EXPECT_EQ(Variant("  -7 ").toDouble(), -7.0);
    EXPECT_EQ(Variant("1e3").toDouble(), 1000.0);
    EXPECT_RAISES(Variant("2,5").toDouble(), rt::TypeMismatch);
    EXPECT_RAISES(Variant("abc").toDouble(), rt::TypeMismatch);
    EXPECT_RAISES(Variant("").toDouble(), rt::TypeMismatch);
    DecimalSeparatorGuard comma(',');
    EXPECT_EQ(Variant("2,5").toDouble(), 2.5);
    EXPECT_RAISES(Variant("2.5").toDouble(), rt::TypeMismatch);
}

TEST(Variant, FifteenDigitRoundTripThroughText) {
    const double raw = 0.12345678901234567;
    const double back = Variant(Variant(raw).toString()).toDouble();
    EXPECT_EQ(back, 0.123456789012346);
    EXPECT_NE(back, raw);
}

TEST(Variant, LeadingNumberReaderIsLocaleIndependent) {
    DecimalSeparatorGuard comma(',');
    EXPECT_EQ(caudalis::readLeadingNumber("0.5"), 0.5);
    EXPECT_EQ(caudalis::readLeadingNumber("0,5"), 0.0);
    EXPECT_EQ(caudalis::readLeadingNumber("12abc"), 12.0);
    EXPECT_EQ(caudalis::readLeadingNumber("  -3.25e2xyz"), -325.0);
    EXPECT_EQ(caudalis::readLeadingNumber("1e"), 1.0);
    EXPECT_EQ(caudalis::readLeadingNumber("abc"), 0.0);
    EXPECT_EQ(caudalis::readLeadingNumber(""), 0.0);
    EXPECT_EQ(caudalis::readLeadingNumber(".5"), 0.5);
    EXPECT_EQ(caudalis::readLeadingNumber("inf"), 0.0);
}

TEST(Variant, WholeNumberConversionsRoundHalfToEven) {
    EXPECT_EQ(Variant(2.5).toInteger(), 2);
    EXPECT_EQ(Variant(3.5).toInteger(), 4);
    EXPECT_EQ(Variant(-2.5).toInteger(), -2);
    EXPECT_EQ(Variant(2.4999).toLong(), 2);
    EXPECT_EQ(Variant(0.5).toLong(), 0);
    EXPECT_EQ(Variant(1.5).toLong(), 2);
    EXPECT_EQ(Variant("7.5").toLong(), 8);
    EXPECT_EQ(Variant(true).toInteger(), -1);
}

TEST(Variant, WholeNumberConversionsOverflow) {
    EXPECT_EQ(Variant(32767.0).toInteger(), 32767);
    EXPECT_RAISES(Variant(32767.5).toInteger(), rt::Overflow);
    EXPECT_RAISES(Variant(caudalis::Long{40000}).toInteger(), rt::Overflow);
    EXPECT_EQ(Variant(-32768.0).toInteger(), -32768);
    EXPECT_RAISES(Variant(2147483648.0).toLong(), rt::Overflow);
    EXPECT_RAISES(Variant(std::nan("")).toLong(), rt::Overflow);
}

TEST(Variant, BooleanConversion) {
    EXPECT_TRUE(Variant(-1.0).toBoolean());
    EXPECT_TRUE(Variant(0.1).toBoolean());
    EXPECT_FALSE(Variant(0.0).toBoolean());
    EXPECT_TRUE(Variant("True").toBoolean());
    EXPECT_FALSE(Variant("false").toBoolean());
    EXPECT_TRUE(Variant("3").toBoolean());
    EXPECT_RAISES(Variant("yes").toBoolean(), rt::TypeMismatch);
    EXPECT_EQ(Variant(true).toDouble(), -1.0);
}

TEST(Variant, RecordsAndObjects) {
    caudalis::PipeMaterial material;
    material.id = 4;
    const Variant held = Variant::record(material);
    EXPECT_TRUE(held.holdsRecord<caudalis::PipeMaterial>());
    EXPECT_FALSE(held.holdsRecord<caudalis::marca>());
    EXPECT_EQ(held.toRecord<caudalis::PipeMaterial>().id, 4);
    EXPECT_RAISES(held.toRecord<caudalis::marca>(), rt::TypeMismatch);
    EXPECT_RAISES(held.toDouble(), rt::TypeMismatch);
    EXPECT_RAISES(Variant(1.0).toRecord<caudalis::PipeMaterial>(), rt::TypeMismatch);

    struct Thing : caudalis::Object {};
    struct Other : caudalis::Object {};
    auto thing = std::make_shared<Thing>();
    const Variant object(thing);
    EXPECT_TRUE(object.isObject());
    EXPECT_EQ(object.toObject<Thing>(), thing);
    EXPECT_RAISES(object.toObject<Other>(), rt::TypeMismatch);
    EXPECT_EQ(Variant().toObject<Thing>(), nullptr);
    EXPECT_RAISES(Variant(2.0).toObject<Thing>(), rt::TypeMismatch);
}

TEST(Variant, ComparisonFollowsTheRuntime) {
    using caudalis::compareVariants;
    EXPECT_EQ(*compareVariants(Variant(2.0), Variant(caudalis::Long{10})), std::partial_ordering::less);
    EXPECT_EQ(*compareVariants(Variant("b"), Variant("a")), std::partial_ordering::greater);
    EXPECT_EQ(*compareVariants(Variant("10"), Variant("9")), std::partial_ordering::less);
    EXPECT_EQ(*compareVariants(Variant(), Variant(0.0)), std::partial_ordering::equivalent);
    EXPECT_EQ(*compareVariants(Variant(), Variant("")), std::partial_ordering::equivalent);
    EXPECT_EQ(*compareVariants(Variant(), Variant("a")), std::partial_ordering::less);
    EXPECT_EQ(*compareVariants(Variant(5.0), Variant("a")), std::partial_ordering::less);
    EXPECT_EQ(*compareVariants(Variant(true), Variant(0.0)), std::partial_ordering::less);
    EXPECT_FALSE(compareVariants(Variant::null(), Variant(1.0)).has_value());
    EXPECT_FALSE(compareVariants(Variant(1.0), Variant::null()).has_value());
}
