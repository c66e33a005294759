#include <gtest/gtest.h>

#include "ErrorMatchers.hpp"
#include "MachineFixtures.hpp"
#include "caudalis/core/Statics.hpp"
#include "caudalis/hydraulics/PivotWrapper.hpp"
#include "caudalis/hydraulics/ReguladorPression.hpp"
#include "caudalis/machine/Pivots.hpp"

using namespace caudalis;
using namespace caudalis::testing;

namespace {

pivot threeSpans() {
    pivot machine = makePivot(
        {makeSpan(1, 50, 168, 250), makeSpan(1, 50, 168, 250), makeSpan(1, 50, 168, 250)}, {0, 0, 0});
    machine.presion = 300;
    machine.caudal = 40;
    machine.rugosidad = 140;
    return machine;
}

CollectionRef collectionOf(std::initializer_list<std::shared_ptr<ReguladorPression>> regulators) {
    auto items = Collection::create();
    for (const auto& regulator : regulators) {
        items->Add(Variant(regulator));
    }
    return items;
}

}  // namespace

TEST(ReguladorPression, KeepsItsValues) {
    const auto regulator = Statics::application()->newReguladorPression(2, 140, 1.5, 0.2, true);
    EXPECT_EQ(regulator->tramo(), 2);
    EXPECT_EQ(regulator->pression(), 140);
    EXPECT_EQ(regulator->maximum_caudal(), 1.5);
    EXPECT_EQ(regulator->minimum_caudal(), 0.2);
    EXPECT_TRUE(regulator->installed());
    regulator->markUninstalled();
    EXPECT_FALSE(regulator->installed());
    regulator->markInstalled();
    EXPECT_TRUE(regulator->installed());
    EXPECT_NE(Statics::application()->newReguladorPression(2, 140, 1.5, 0.2, true), regulator);
}

TEST(ReguladorPression, AppliedItCarriesOnlyThePressure) {
    pivot machine = threeSpans();
    makeReguladorPression(2, 140, 1.5, 0.2, true)->apply(machine);
    EXPECT_TRUE(machine.Tramos(2).temRegulador);
    EXPECT_EQ(machine.Tramos(2).regulador.Preg, 140);
    EXPECT_EQ(machine.Tramos(2).regulador.qmax, 0);
    EXPECT_EQ(machine.Tramos(2).regulador.qmin, 0);
    EXPECT_EQ(machine.Tramos(2).regulador.marca, "");
    EXPECT_FALSE(machine.Tramos(1).temRegulador);
}

TEST(ReguladorPression, LastSpanNumberWithoutOverhangTargetsThatFixedSpan) {
    pivot machine = threeSpans();
    ASSERT_EQ(Pivots::shared()->allSpansCount(machine), 3);
    makeReguladorPression(3, 120, 0, 0, true)->apply(machine);
    EXPECT_TRUE(machine.Tramos(3).temRegulador);
    EXPECT_FALSE(machine.tramoVOladizo.temRegulador);
}

TEST(ReguladorPression, LastSpanNumberWithOverhangTargetsTheOverhang) {
    pivot machine = threeSpans();
    Pivots::shared()->setOverhangSpan(machine, makeSpan(9, 20, 127, 250));
    makeReguladorPression(4, 120, 0, 0, true)->apply(machine);
    EXPECT_TRUE(machine.tramoVOladizo.temRegulador);
    EXPECT_EQ(machine.tramoVOladizo.regulador.Preg, 120);
}

TEST(ReguladorPression, SpanOutsideTheMachineRaisesNine) {
    pivot machine = threeSpans();
    EXPECT_RAISES(makeReguladorPression(5, 120, 0, 0, true)->apply(machine),
                  RuntimeError::SubscriptOutOfRange);
}

TEST(ReguladorPression, UninstalledRegulatorSetsNothing) {
    pivot machine = threeSpans();
    makeReguladorPression(1, 120, 0, 0, false)->apply(machine);
    EXPECT_FALSE(machine.Tramos(1).temRegulador);
    EXPECT_EQ(machine.Tramos(1).regulador.Preg, 0);
}

TEST(PivotWrapperRegulators, UninstalledRegulatorClearsTheSpanFlag) {
    auto strategy = std::make_shared<RecordingStrategy>();
    auto wrapper = Statics::application()->newPivotWrapper(threeSpans(), strategy);
    wrapper->aplicaReguladores(collectionOf({makeReguladorPression(1, 120, 0, 0, true)}));
    pivot copy;
    wrapper->update(copy);
    EXPECT_TRUE(copy.Tramos(1).temRegulador);
    wrapper->aplicaReguladores(collectionOf({makeReguladorPression(1, 90, 0, 0, false)}));
    wrapper->update(copy);
    EXPECT_FALSE(copy.Tramos(1).temRegulador);
    EXPECT_EQ(copy.Tramos(1).regulador.Preg, 120);
}

TEST(PivotWrapperRegulators, EmptyCollectionRemovesAllRegulationAndIsStoredInTheChart) {
    auto strategy = std::make_shared<RecordingStrategy>();
    auto wrapper = Statics::application()->newPivotWrapper(threeSpans(), strategy);
    wrapper->aplicaReguladores(
        collectionOf({makeReguladorPression(1, 120, 0, 0, true), makeReguladorPression(3, 100, 0, 0, true)}));
    const auto none = Collection::create();
    wrapper->aplicaReguladores(none);
    pivot copy;
    wrapper->update(copy);
    for (Long i = 1; i <= 3; ++i) {
        EXPECT_FALSE(copy.Tramos(i).temRegulador);
    }
    EXPECT_EQ(wrapper->getReguladores(), none);
    EXPECT_EQ(strategy->chart->getReguladores(), none);
}

TEST(PivotWrapperRegulators, LastInstalledOfSeveralForOneSpanWins) {
    auto strategy = std::make_shared<RecordingStrategy>();
    auto wrapper = Statics::application()->newPivotWrapper(threeSpans(), strategy);
    wrapper->aplicaReguladores(
        collectionOf({makeReguladorPression(2, 120, 0, 0, true), makeReguladorPression(2, 150, 0, 0, true),
                      makeReguladorPression(2, 80, 0, 0, false)}));
    pivot copy;
    wrapper->update(copy);
    EXPECT_EQ(copy.Tramos(2).regulador.Preg, 150);
}

TEST(PivotWrapperRegulators, GetReguladoresIsEmptyBeforeAnyCall) {
    auto wrapper =
        Statics::application()->newPivotWrapper(threeSpans(), std::make_shared<RecordingStrategy>());
    EXPECT_EQ(wrapper->getReguladores(), nullptr);
}

TEST(PivotApplier, DoNothingApplierChangesNothing) {
    pivot machine = threeSpans();
    PivotApplier nothing;
    nothing.apply(machine);
    EXPECT_FALSE(machine.Tramos(1).temRegulador);
    EXPECT_EQ(machine.presion, 300);
}
