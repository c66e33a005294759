#include "caudalis/machine/Tramos.hpp"

#include <gtest/gtest.h>

#include "ErrorMatchers.hpp"
#include "MachineBuilders.hpp"
#include "caudalis/core/Doubles.hpp"

using namespace caudalis;
using namespace caudalis::testing;

namespace {

std::shared_ptr<Tramos> tramos() {
    return Tramos::shared();
}

tramo placedSpan(Long id) {
    tramo span = spanOfLength(id, 50);
    span.site = Placement{0, 1, 50, 0, 0};
    return span;
}

tramo spanWithFlows(Double idealEntry, Double idealExit, Double entry, Double exit) {
    tramo span;
    span.ideal_entry_conditions.caudal = idealEntry;
    span.ideal_exit_conditions.caudal = idealExit;
    span.entry_conditions.caudal = entry;
    span.exit_condition.caudal = exit;
    return span;
}

}  // namespace

TEST(Tramos, SharedInstanceIsOneObject) {
    EXPECT_EQ(Tramos::shared(), Tramos::shared());
}

TEST(Tramos, NewTramoSizesItsOutletsFromTheSpacing) {
    const tramo span = tramos()->newTramo(1, "A-50", 50, 168, 250);
    EXPECT_EQ(span.id, 1);
    EXPECT_EQ(span.denominacion, "A-50");
    EXPECT_EQ(span.longitude, 50);
    EXPECT_EQ(span.diametro, 168);
    EXPECT_EQ(span.separationSaidas_cm, 250);
    EXPECT_EQ(span.separacionSaidas, 2.5);
    ASSERT_TRUE(span.Saidas.isAllocated());
    EXPECT_EQ(span.Saidas.lbound(), 1);
    EXPECT_EQ(span.Saidas.ubound(), 20);
    EXPECT_TRUE(span.p_complete);
    EXPECT_EQ(span.cota, 0);
    EXPECT_EQ(span.p_outlet_count, 0);
    EXPECT_EQ(span.site.Length, 0);
}

TEST(Tramos, NewTramoDropsTheRemainderOfTheLength) {
    EXPECT_EQ(tramos()->newTramo(1, "A", 51, 168, 250).Saidas.ubound(), 20);
}

TEST(Tramos, NewTramoWithoutSpacingHasNoOutletsAndIsIncomplete) {
    tramo span = tramos()->newTramo(1, "A", 50, 168, 0);
    EXPECT_FALSE(span.Saidas.isAllocated());
    EXPECT_FALSE(span.p_complete);
    span.site = Placement{0, 0, 50, 0, 0};
    EXPECT_FALSE(tramos()->isComplete(span));
}

TEST(Tramos, NewTramoTakesTheOptionalElevation) {
    EXPECT_EQ(tramos()->newTramo(1, "A", 50, 168, 250, Variant(12.5)).cota, 12.5);
    EXPECT_EQ(tramos()->newTramo(1, "A", 50, 168, 250, Variant("7")).cota, 7);
    EXPECT_RAISES(tramos()->newTramo(1, "A", 50, 168, 250, Variant("high")), RuntimeError::TypeMismatch);
}

TEST(Tramos, NewTramoShorterThanOneSpacingCannotSizeItsOutlets) {
    EXPECT_RAISES(tramos()->newTramo(1, "A", 2, 168, 250), RuntimeError::SubscriptOutOfRange);
}

TEST(Tramos, NewTramoWithTooManyOutletsOverflows) {
    EXPECT_RAISES(tramos()->newTramo(1, "A", 40000, 168, 100), RuntimeError::Overflow);
}

TEST(Tramos, SpanIsCompleteWhenPlacedAndSized) {
    EXPECT_TRUE(tramos()->isComplete(placedSpan(1)));
    EXPECT_FALSE(tramos()->isComplete(spanOfLength(1, 50)));
}

TEST(Tramos, AllCompleteOfAnEmptyListIsTrue) {
    EXPECT_TRUE(tramos()->AllComplete(BoundedArray<tramo>{}));
}

TEST(Tramos, AllCompleteNeedsEverySpanComplete) {
    EXPECT_TRUE(tramos()->AllComplete(spanList({placedSpan(1), placedSpan(2)})));
    EXPECT_FALSE(tramos()->AllComplete(spanList({placedSpan(1), spanOfLength(2, 50)})));
}

TEST(Tramos, AllEqualComparesOnlyTheIds) {
    EXPECT_TRUE(tramos()->AllEqual(spanList({spanOfLength(1, 50), spanOfLength(2, 40)}),
                                   spanList({spanOfLength(1, 30), spanOfLength(2, 60)})));
    EXPECT_FALSE(tramos()->AllEqual(spanList({spanOfLength(1, 50), spanOfLength(2, 40)}),
                                    spanList({spanOfLength(1, 50), spanOfLength(3, 40)})));
}

TEST(Tramos, AllEqualOfListsOfDifferentLengthIsFalse) {
    EXPECT_FALSE(tramos()->AllEqual(spanList({spanOfLength(1, 50)}),
                                    spanList({spanOfLength(1, 50), spanOfLength(1, 50)})));
}

TEST(Tramos, AllEqualOfTwoEmptyListsIsTrue) {
    EXPECT_TRUE(tramos()->AllEqual(BoundedArray<tramo>{}, BoundedArray<tramo>{}));
}

TEST(Tramos, BuildPlacementsLaysTheSpansEndToEnd) {
    auto spans = spanList({spanOfLength(1, 50), spanOfLength(2, 40)});
    const Double start = 100;
    tramos()->BuildPlacements(spans, start, heights({102, 101}));
    EXPECT_EQ(spans(1).site.start_cota, 100);
    EXPECT_EQ(spans(1).site.end_cota, 102);
    EXPECT_EQ(spans(1).site.Length, 50);
    EXPECT_EQ(spans(2).site.start_cota, 102);
    EXPECT_EQ(spans(2).site.end_cota, 101);
    EXPECT_EQ(spans(2).site.Length, 40);
    EXPECT_EQ(start, 100);
}

TEST(Tramos, BuildPlacementsWithTooFewElevationsPlacesTheSpansBeforeTheFailure) {
    auto spans = spanList({spanOfLength(1, 50), spanOfLength(2, 40)});
    EXPECT_RAISES(tramos()->BuildPlacements(spans, 0, heights({3})), RuntimeError::SubscriptOutOfRange);
    EXPECT_EQ(spans(1).site.end_cota, 3);
    EXPECT_EQ(spans(2).site.Length, 0);
}

TEST(Tramos, BuildPlacementsNeedsAOneBasedSpanList) {
    auto spans = BoundedArray<tramo>::of({spanOfLength(1, 50), spanOfLength(2, 40)}, 0);
    EXPECT_RAISES(tramos()->BuildPlacements(spans, 0, heights({1, 2})), RuntimeError::SubscriptOutOfRange);
}

TEST(Tramos, ConsumedDischargesAreEntryMinusExit) {
    const tramo span = spanWithFlows(10, 6, 9, 4);
    EXPECT_EQ(tramos()->IdealConsumedDischarge(span), 4);
    EXPECT_EQ(tramos()->ConsumedDischarge(span), 5);
}

TEST(Tramos, DischargeVariationIsTheAbsoluteRelativeDifference) {
    EXPECT_DOUBLE_EQ(tramos()->DischargeVariation(spanWithFlows(10, 6, 9, 4)), 0.25);
    EXPECT_DOUBLE_EQ(tramos()->DischargeVariation(spanWithFlows(10, 6, 9, 6)), 0.25);
}

TEST(Tramos, DischargeVariationWithoutIdealConsumptionRaises) {
    EXPECT_RAISES(tramos()->DischargeVariation(spanWithFlows(5, 5, 9, 4)), RuntimeError::DivisionByZero);
    EXPECT_RAISES(tramos()->DischargeVariation(spanWithFlows(5, 5, 5, 5)), RuntimeError::Overflow);
}

TEST(Tramos, OutletCountFillsTheCacheOfTheCallersSpan) {
    tramo span = spanOfLength(1, 50);
    EXPECT_EQ(tramos()->OutletCount(span), 20);
    EXPECT_EQ(span.p_outlet_count, 20);
}

TEST(Tramos, OutletCountKeepsAnExistingCount) {
    tramo span = spanOfLength(1, 50);
    span.p_outlet_count = 7;
    EXPECT_EQ(tramos()->OutletCount(span), 7);
}

TEST(Tramos, OutletCountIsNotRefreshedAfterAResize) {
    tramo span = spanOfLength(1, 50);
    (void)tramos()->OutletCount(span);
    span.Saidas.redim(1, 3);
    EXPECT_EQ(tramos()->OutletCount(span), 20);
    span.p_outlet_count = 0;
    EXPECT_EQ(tramos()->OutletCount(span), 3);
}

TEST(Tramos, OutletCountRefillsANaNCache) {
    tramo span = spanOfLength(1, 50);
    span.p_outlet_count = Doubles::shared()->NaN();
    EXPECT_EQ(tramos()->OutletCount(span), 20);
}

TEST(Tramos, OutletCountOfASpanWithoutOutletsIsZero) {
    tramo span;
    EXPECT_EQ(tramos()->OutletCount(span), 0);
    EXPECT_EQ(span.p_outlet_count, 0);
}
