#include <gtest/gtest.h>

#include <cmath>
#include <memory>

#include "caudalis/catalogue/Aspersor.hpp"
#include "caudalis/catalogue/AspersoresStatic.hpp"
#include "caudalis/core/Statics.hpp"
#include "caudalis/design/DesignError.hpp"
#include "caudalis/design/NozzlePackageStrategy.hpp"
#include "caudalis/hydraulics/PivotWrapper.hpp"
#include "caudalis/machine/Pivots.hpp"
#include "caudalis/machine/Tramos.hpp"
#include "caudalis/machine/Types.hpp"

using namespace caudalis;
using namespace caudalis::design;

namespace {

std::shared_ptr<Aspersor> nozzle(const std::string& name, double a) {
    return Statics::application()->Aspersores()->newAspersor(name, a, 0.5, 50, 300, 0.05, 1.5,
                                                             modelo{1, "M", marca{1, "B"}, 1});
}

CollectionRef collectionOf(std::initializer_list<std::shared_ptr<Aspersor>> nozzles) {
    auto collection = Collection::create();
    for (const auto& n : nozzles) {
        collection->Add(Variant(n));
    }
    return collection;
}

saida outletAt(double pressure, double required, double distance = 10) {
    saida outlet;
    outlet.pressao_actuante = pressure;
    outlet.pressao_real = pressure + 50;  // must not be used for the match
    outlet.caudal = required;
    outlet.distanciaAoPivot = distance;
    return outlet;
}

/// One span of `outlets` outlets every 2.5 m, with or without an end gun.
pivot machineWith(int outlets, bool endGun) {
    const auto statics = Statics::application();
    pivot machine = statics->newPivot();
    machine.presion = 200;
    machine.caudal = 5;
    machine.rugosidad = 140;
    const auto span = statics->Tramos()->newTramo(1, "S", 2.5 * outlets, 114.3, 250);
    statics->Pivots()->setFixedSpans(machine, BoundedArray<tramo>::of({span}),
                                     BoundedArray<Double>::of({0.0}));
    if (endGun) {
        statics->Pivots()->setEndGun(machine, statics->Gun()->newGun(10));
    }
    return machine;
}

}  // namespace

TEST(NozzlePackageStrategy, PicksTheClosestNozzleAtTheActingPressure) {
    // At 100 kPa the nozzles give 0.1 * 10 = 1.0, 0.11 * 10 = 1.1 and 0.095 * 10 = 0.95 l/s.
    const auto low = nozzle("low", 0.095);
    const auto exact = nozzle("exact", 0.1);
    const auto high = nozzle("high", 0.11);
    NozzlePackageStrategy strategy(collectionOf({low, exact, high}), 0.2, 1000);
    EXPECT_EQ(strategy.aspersorFor(outletAt(100, 1.0)), exact);
    EXPECT_EQ(strategy.aspersorFor(outletAt(100, 1.09)), high);
    EXPECT_EQ(strategy.aspersorFor(outletAt(100, 0.96)), low);
}

TEST(NozzlePackageStrategy, LeavesAnOutletWithoutNozzleOutsideTheToleranceAndRecordsIt) {
    NozzlePackageStrategy strategy(collectionOf({nozzle("only", 0.1)}), 0.1, 1000);
    EXPECT_EQ(strategy.aspersorFor(outletAt(100, 2.0, 42.5)), nullptr);
    ASSERT_EQ(strategy.unfittedDistances().size(), 1u);
    EXPECT_DOUBLE_EQ(strategy.unfittedDistances()[0], 42.5);
    // 1.0 l/s against 0.92 l/s required deviates by 8.7 %, within 10 %.
    EXPECT_NE(strategy.aspersorFor(outletAt(100, 0.92)), nullptr);
    EXPECT_EQ(strategy.unfittedDistances().size(), 1u);
}

TEST(NozzlePackageStrategy, UsesTheCollectionHandedToTheWrapper) {
    NozzlePackageStrategy strategy(collectionOf({}), 0.1, 1000);
    EXPECT_EQ(strategy.aspersorFor(outletAt(100, 1.0)), nullptr);
    const auto n = nozzle("n", 0.1);
    strategy.setAvaillableAspersores(collectionOf({n}));
    EXPECT_EQ(strategy.aspersorFor(outletAt(100, 1.0)), n);
}

TEST(NozzlePackageStrategy, OwnsAChart) {
    NozzlePackageStrategy strategy(collectionOf({}), 0.1, 1000);
    ASSERT_NE(strategy.carta(), nullptr);
    EXPECT_EQ(strategy.carta(), strategy.carta());
}

TEST(NozzlePackageStrategy, CountsThePassesOfTheMarch) {
    // Without any nozzle the march gives 0, then 0 again: two passes of 4 outlets and the gun.
    auto strategy = std::make_shared<NozzlePackageStrategy>(collectionOf({}), 0.1, 1000);
    const auto wrapper = Statics::application()->newPivotWrapper(machineWith(4, true), strategy);
    wrapper->calculate();
    EXPECT_EQ(strategy->passes(), 2);
    EXPECT_EQ(strategy->unfittedDistances().size(), 5u);
    // A new calculation counts afresh.
    wrapper->calculate();
    EXPECT_EQ(strategy->passes(), 2);
}

TEST(NozzlePackageStrategy, CountsPassesOfAMachineWhoseFlowsSettleSlowly) {
    // Nozzles fitted everywhere: the discharge changes from pass to pass until it settles.
    auto nozzles = Collection::create();
    for (double a = 0.0005; a < 0.3; a *= 1.03) {
        nozzles->Add(Variant(nozzle("n", a)));
    }
    auto strategy = std::make_shared<NozzlePackageStrategy>(nozzles, 0.05, 1000);
    const auto wrapper = Statics::application()->newPivotWrapper(machineWith(20, false), strategy);
    wrapper->calculate();
    const auto counted = strategy->passes();
    EXPECT_GE(counted, 2);
    // The same machine with one pass allowed fails in the second.
    auto limited = std::make_shared<NozzlePackageStrategy>(nozzles, 0.05, counted - 1);
    const auto again = Statics::application()->newPivotWrapper(machineWith(20, false), limited);
    EXPECT_THROW(again->calculate(), DesignError);
    EXPECT_EQ(limited->passes(), counted);
}

TEST(NozzlePackageStrategy, StopsWithAClearErrorPastTheMaximum) {
    auto strategy = std::make_shared<NozzlePackageStrategy>(collectionOf({}), 0.1, 1);
    const auto wrapper = Statics::application()->newPivotWrapper(machineWith(3, false), strategy);
    try {
        wrapper->calculate();
        FAIL() << "no error";
    } catch (const DesignError& error) {
        EXPECT_STREQ(error.what(), "the computation did not settle within 1 pass");
        EXPECT_EQ(error.kind(), DesignError::Kind::NotSettled);
    }
    EXPECT_EQ(strategy->passes(), 2);
}
