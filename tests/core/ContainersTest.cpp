#include <gtest/gtest.h>

#include "ErrorMatchers.hpp"
#include "caudalis/core/BoundedArray.hpp"
#include "caudalis/core/Collection.hpp"
#include "caudalis/core/Records.hpp"

using namespace caudalis;
namespace rt = caudalis::RuntimeError;

TEST(BoundedArray, StartsUnallocated) {
    BoundedArray<int> values;
    EXPECT_FALSE(values.isAllocated());
    EXPECT_EQ(values.count(), 0);
    EXPECT_RAISES(values.lbound(), rt::SubscriptOutOfRange);
    EXPECT_RAISES(values.ubound(), rt::SubscriptOutOfRange);
    EXPECT_RAISES(values(1), rt::SubscriptOutOfRange);
}

TEST(BoundedArray, ExplicitBoundsAndCheckedAccess) {
    BoundedArray<int> values(3, 5);
    EXPECT_EQ(values.lbound(), 3);
    EXPECT_EQ(values.ubound(), 5);
    values(3) = 1;
    values(5) = 9;
    EXPECT_EQ(values(5), 9);
    EXPECT_RAISES(values(2), rt::SubscriptOutOfRange);
    EXPECT_RAISES(values(6), rt::SubscriptOutOfRange);
}

TEST(BoundedArray, RedimAfreshAndKeepingElements) {
    auto values = BoundedArray<int>::of({1, 2, 3});
    values.redimPreserve(1, 4);
    EXPECT_EQ(values(1), 1);
    EXPECT_EQ(values(3), 3);
    EXPECT_EQ(values(4), 0);
    values.redim(0, 1);
    EXPECT_EQ(values.lbound(), 0);
    EXPECT_EQ(values(0), 0);
    EXPECT_EQ(values(1), 0);
    EXPECT_RAISES(values.redim(2, 1), rt::SubscriptOutOfRange);
    values.erase();
    EXPECT_FALSE(values.isAllocated());
}

TEST(BoundedArray, OfWithLowerBound) {
    auto values = BoundedArray<std::string>::of({"a", "b"}, 0);
    EXPECT_EQ(values.lbound(), 0);
    EXPECT_EQ(values(1), "b");
    EXPECT_FALSE(BoundedArray<int>::of({}).isAllocated());
}

TEST(FixedArray, SpeedTableHasExactlyTenRows) {
    caixaVelocidades caixa;
    EXPECT_EQ(caixa.velocidades.count(), 10);
    EXPECT_EQ(caixa.velocidades.lbound(), 1);
    EXPECT_EQ(caixa.velocidades.ubound(), 10);
    caixa.velocidades(10).percentagem = 100;
    EXPECT_EQ(caixa.velocidades(10).percentagem, 100);
    EXPECT_EQ(caixa.velocidades(1).percentagem, 0);
    EXPECT_RAISES(caixa.velocidades(0), rt::SubscriptOutOfRange);
    EXPECT_RAISES(caixa.velocidades(11), rt::SubscriptOutOfRange);
}

TEST(Collection, AddsReadsAndCountsInInsertionOrder) {
    auto items = Collection::create();
    items->Add(Variant("first"));
    items->Add(Variant(2.0), std::string("two"));
    items->Add(Variant("third"), std::string("3"));
    EXPECT_EQ(items->Count(), 3);
    EXPECT_EQ(items->Item(1).toString(), "first");
    EXPECT_EQ(items->Item("two").toDouble(), 2.0);
    EXPECT_EQ(items->Item("TWO").toDouble(), 2.0);
    std::vector<std::string> seen;
    for (const auto& item : *items) {
        seen.push_back(item.toString());
    }
    EXPECT_EQ(seen, (std::vector<std::string>{"first", "2", "third"}));
}

TEST(Collection, KeysAreUniqueAndMissingOnesRaiseFive) {
    auto items = Collection::create();
    items->Add(Variant(1.0), std::string("k"));
    EXPECT_RAISES(items->Add(Variant(2.0), std::string("K")), rt::KeyAlreadyAssociated);
    EXPECT_EQ(items->Count(), 1);
    EXPECT_RAISES(items->Item("missing"), rt::InvalidProcedureCall);
    EXPECT_RAISES(items->Remove("missing"), rt::InvalidProcedureCall);
    EXPECT_RAISES(items->Item(0), rt::SubscriptOutOfRange);
    EXPECT_RAISES(items->Item(2), rt::SubscriptOutOfRange);
}

TEST(Collection, RemoveByKeyKeepsTheOthersReachable) {
    auto items = Collection::create();
    items->Add(Variant("a"), std::string("a"));
    items->Add(Variant("b"), std::string("b"));
    items->Add(Variant("c"), std::string("c"));
    items->Remove("a");
    EXPECT_EQ(items->Count(), 2);
    EXPECT_EQ(items->Item(1).toString(), "b");
    EXPECT_EQ(items->Item("c").toString(), "c");
    EXPECT_FALSE(items->Contains("a"));
    items->Add(Variant("a2"), std::string("a"));
    EXPECT_EQ(items->Item(3).toString(), "a2");
}

TEST(Collection, IsSharedByReference) {
    auto items = Collection::create();
    CollectionRef alias = items;
    alias->Add(Variant(1.0));
    EXPECT_EQ(items->Count(), 1);
}
