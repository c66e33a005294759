#include "caudalis/evaluation/WaterDepthsComparator.hpp"

#include <gtest/gtest.h>

#include "ErrorMatchers.hpp"

using namespace caudalis;

namespace {

Variant sample(Double depth, Double distance) {
    return Variant::record(WaterDepthSample{depth, distance, false});
}

WaterDepthsComparator keyedOn(compareWhat key) {
    WaterDepthsComparator comparator;
    comparator.init(key);
    return comparator;
}

// Answers EQ with true for every pair, to show which operations GTE and LTE ask.
class AlwaysEqual : public WaterDepthsComparator {
public:
    bool EQ(const Variant&, const Variant&) override { return true; }
};

}  // namespace

TEST(WaterDepthsComparator, InitWithoutArgumentKeysOnDepth) {
    WaterDepthsComparator comparator;
    comparator.init(compareWhat::distance);
    comparator.init();
    EXPECT_TRUE(comparator.GT(sample(2, 1), sample(1, 50)));
    EXPECT_FALSE(comparator.EQ(sample(1, 5), sample(2, 5)));
}

TEST(WaterDepthsComparator, DepthKeyBreaksTiesByDistance) {
    auto comparator = keyedOn(compareWhat::depth);
    EXPECT_TRUE(comparator.LT(sample(5, 10), sample(5, 20)));
    EXPECT_TRUE(comparator.GT(sample(5, 20), sample(5, 10)));
    EXPECT_FALSE(comparator.EQ(sample(5, 20), sample(5, 10)));
    EXPECT_TRUE(comparator.EQ(sample(5, 20), sample(5, 20)));
    EXPECT_TRUE(comparator.LT(sample(1, 99), sample(2, 1)));
}

TEST(WaterDepthsComparator, DistanceKeyHasNoTieBreakOnDepth) {
    auto comparator = keyedOn(compareWhat::distance);
    EXPECT_FALSE(comparator.GT(sample(9, 10), sample(1, 10)));
    EXPECT_FALSE(comparator.LT(sample(1, 10), sample(9, 10)));
    EXPECT_TRUE(comparator.EQ(sample(1, 10), sample(9, 10)));
    EXPECT_TRUE(comparator.GTE(sample(1, 10), sample(9, 10)));
    EXPECT_TRUE(comparator.LTE(sample(9, 10), sample(1, 10)));
    EXPECT_TRUE(comparator.LT(sample(9, 5), sample(1, 10)));
}

TEST(WaterDepthsComparator, OrEqualOperationsCombineStrictAndEqual) {
    auto comparator = keyedOn(compareWhat::depth);
    EXPECT_TRUE(comparator.GTE(sample(3, 1), sample(2, 1)));
    EXPECT_TRUE(comparator.GTE(sample(3, 1), sample(3, 1)));
    EXPECT_FALSE(comparator.GTE(sample(2, 1), sample(3, 1)));
    EXPECT_TRUE(comparator.LTE(sample(2, 1), sample(3, 1)));
    EXPECT_TRUE(comparator.LTE(sample(2, 1), sample(2, 1)));
    EXPECT_FALSE(comparator.LTE(sample(3, 1), sample(2, 1)));
}

TEST(WaterDepthsComparator, AnyOtherKeyAnswersFalse) {
    auto comparator = keyedOn(static_cast<compareWhat>(7));
    const auto a = sample(1, 1);
    const auto b = sample(2, 2);
    EXPECT_FALSE(comparator.GT(b, a));
    EXPECT_FALSE(comparator.LT(a, b));
    EXPECT_FALSE(comparator.EQ(a, a));
    EXPECT_FALSE(comparator.GTE(a, a));
    EXPECT_FALSE(comparator.LTE(a, a));
}

TEST(WaterDepthsComparator, OrEqualOperationsAskThisObjectsOwnOperations) {
    AlwaysEqual comparator;
    comparator.init(compareWhat::depth);
    EXPECT_TRUE(comparator.GTE(sample(1, 1), sample(2, 2)));
    EXPECT_TRUE(comparator.LTE(sample(2, 2), sample(1, 1)));
}

TEST(WaterDepthsComparator, WorksThroughTheComparatorInterface) {
    auto keyed = keyedOn(compareWhat::depth);
    Comparator& comparator = keyed;
    EXPECT_TRUE(comparator.LT(sample(1, 1), sample(2, 1)));
    EXPECT_TRUE(comparator.GTE(sample(2, 1), sample(1, 1)));
}

TEST(WaterDepthsComparator, ValuesThatAreNotSamplesAreATypeMismatch) {
    WaterDepthsComparator comparator;
    EXPECT_RAISES(comparator.GT(Variant(1.0), sample(1, 1)), RuntimeError::TypeMismatch);
    EXPECT_RAISES(comparator.LT(sample(1, 1), Variant("x")), RuntimeError::TypeMismatch);
}
