#include <gtest/gtest.h>

#include "ErrorMatchers.hpp"
#include "caudalis/core/Arrays.hpp"

using namespace caudalis;
namespace rt = caudalis::RuntimeError;

namespace {

/// Counts the calls of each comparison, to show that the sort uses only GTE and LT.
class CountingComparator : public Comparator {
public:
    int gt = 0, gte = 0, lt = 0, lte = 0, eq = 0;
    bool GT(const Variant& a, const Variant& b) override {
        ++gt;
        return Comparator::GT(a, b);
    }
    bool GTE(const Variant& a, const Variant& b) override {
        ++gte;
        return Comparator::GTE(a, b);
    }
    bool LT(const Variant& a, const Variant& b) override {
        ++lt;
        return Comparator::LT(a, b);
    }
    bool LTE(const Variant& a, const Variant& b) override {
        ++lte;
        return Comparator::LTE(a, b);
    }
    bool EQ(const Variant& a, const Variant& b) override {
        ++eq;
        return Comparator::EQ(a, b);
    }
};

std::vector<double> elements(const BoundedArray<double>& values) {
    return {values.begin(), values.end()};
}

}  // namespace

TEST(Arrays, UnallocatedArrayIsEmpty) {
    const auto arrays = Arrays::shared();
    BoundedArray<double> none;
    EXPECT_EQ(arrays->Length(none), 0);
    EXPECT_TRUE(arrays->IsEmpty(none));
    EXPECT_FALSE(arrays->HasAny(none));
    EXPECT_FALSE(arrays->First(none).has_value());
    EXPECT_FALSE(arrays->Last(none).has_value());
}

TEST(Arrays, LengthOfNonOneBasedArray) {
    BoundedArray<int> values(0, 4);
    EXPECT_EQ(Arrays::shared()->Length(values), 5);
    EXPECT_EQ(Arrays::shared()->First(values), 0);
}

TEST(Arrays, LengthAboveIntegerRangeIsTrappedAsZero) {
    BoundedArray<char> big(1, 40000);
    EXPECT_EQ(Arrays::shared()->Length(big), 0);
    EXPECT_TRUE(Arrays::shared()->IsEmpty(big));
}

TEST(Arrays, PushOntoUnallocatedGivesOneToOne) {
    BoundedArray<double> values;
    Arrays::shared()->Push(values, 7.0);
    EXPECT_EQ(values.lbound(), 1);
    EXPECT_EQ(values.ubound(), 1);
    EXPECT_EQ(values(1), 7.0);
}

TEST(Arrays, PushKeepsTheOldElements) {
    auto values = BoundedArray<double>::of({1, 2, 3});
    Arrays::shared()->Push(values, 4.0);
    EXPECT_EQ(values.lbound(), 1);
    EXPECT_EQ(values.ubound(), 4);
    EXPECT_EQ(elements(values), (std::vector<double>{1, 2, 3, 4}));
}

TEST(Arrays, FirstAndLast) {
    auto values = BoundedArray<std::string>::of({"a", "b", "c"});
    EXPECT_EQ(Arrays::shared()->First(values), "a");
    EXPECT_EQ(Arrays::shared()->Last(values), "c");
}

TEST(Arrays, SliceIsOneBasedAndInclusive) {
    const auto values = BoundedArray<std::string>::of({"a", "b", "c", "d"});
    const auto middle = Arrays::shared()->Slice(values, 2, 3);
    EXPECT_EQ(middle.lbound(), 1);
    EXPECT_EQ(middle.ubound(), 2);
    EXPECT_EQ(middle(1), "b");
    EXPECT_EQ(middle(2), "c");
    const auto last = Arrays::shared()->Slice(values, 4, 4);
    EXPECT_EQ(last.count(), 1);
    EXPECT_EQ(last(1), "d");
    EXPECT_EQ(values.count(), 4);
}

TEST(Arrays, SliceFailures) {
    const auto values = BoundedArray<double>::of({1, 2, 3});
    EXPECT_RAISES(Arrays::shared()->Slice(values, 3, 1), rt::SubscriptOutOfRange);
    EXPECT_RAISES(Arrays::shared()->Slice(values, 2, 4), rt::SubscriptOutOfRange);
    EXPECT_RAISES(Arrays::shared()->Slice(values, 0, 1), rt::SubscriptOutOfRange);
    EXPECT_RAISES(Arrays::shared()->Slice(values, 1, 40000), rt::Overflow);
    EXPECT_EQ(Arrays::shared()->Slice(values, 2, 1).count(), 0);
}

TEST(Arrays, SortWithTheDefaultComparator) {
    const auto values = BoundedArray<double>::of({3, 1, 2});
    Comparator comparator;
    const auto sorted = Arrays::shared()->Sort(values, comparator);
    EXPECT_EQ(elements(sorted), (std::vector<double>{1, 2, 3}));
    EXPECT_EQ(elements(values), (std::vector<double>{3, 1, 2}));
}

TEST(Arrays, SortManyValuesCallsOnlyGteAndLt) {
    BoundedArray<double> values(1, 500);
    for (Long i = 1; i <= 500; ++i) {
        values(i) = static_cast<double>((i * 7919) % 101);
    }
    CountingComparator comparator;
    const auto sorted = Arrays::shared()->Sort(values, comparator);
    EXPECT_TRUE(std::is_sorted(sorted.begin(), sorted.end()));
    auto expected = elements(values);
    std::sort(expected.begin(), expected.end());
    EXPECT_EQ(elements(sorted), expected);
    EXPECT_GT(comparator.gte + comparator.lt, 0);
    EXPECT_EQ(comparator.gt, 0);
    EXPECT_EQ(comparator.lte, 0);
    EXPECT_EQ(comparator.eq, 0);
}

TEST(Arrays, SortTextsAndEmptyArray) {
    const auto words = BoundedArray<std::string>::of({"pear", "apple", "fig"});
    Comparator comparator;
    const auto sorted = Arrays::shared()->Sort(words, comparator);
    EXPECT_EQ(sorted(1), "apple");
    EXPECT_EQ(sorted(3), "pear");
    EXPECT_FALSE(Arrays::shared()->Sort(BoundedArray<double>(), comparator).isAllocated());
}

TEST(Arrays, SortOfZeroBasedArrayFails) {
    const auto values = BoundedArray<double>::of({3, 1, 2}, 0);
    Comparator comparator;
    EXPECT_RAISES(Arrays::shared()->Sort(values, comparator), rt::SubscriptOutOfRange);
}

TEST(Comparator, DefaultComparesVariants) {
    Comparator comparator;
    EXPECT_TRUE(comparator.GT(Variant(2.0), Variant(1.0)));
    EXPECT_TRUE(comparator.GTE(Variant(2.0), Variant(2.0)));
    EXPECT_TRUE(comparator.LT(Variant("a"), Variant("b")));
    EXPECT_TRUE(comparator.LTE(Variant(), Variant(0.0)));
    EXPECT_TRUE(comparator.EQ(Variant(), Variant("")));
    EXPECT_FALSE(comparator.EQ(Variant(1.0), Variant(2.0)));
    EXPECT_RAISES(comparator.GT(Variant::null(), Variant(1.0)), rt::InvalidUseOfNull);
    EXPECT_RAISES(comparator.EQ(Variant(1.0), Variant::null()), rt::InvalidUseOfNull);
}

TEST(Random, StaysInTheUnitInterval) {
    for (int i = 0; i < 1000; ++i) {
        const float r = nextRandom();
        EXPECT_GE(r, 0.0F);
        EXPECT_LT(r, 1.0F);
    }
}
