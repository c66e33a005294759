#include <gtest/gtest.h>

#include "ErrorMatchers.hpp"
#include "MachineFixtures.hpp"
#include "caudalis/charts/MountedAspersor.hpp"
#include "caudalis/machine/CoordenadasSaidas.hpp"
#include "caudalis/machine/Pivots.hpp"
#include "caudalis/machine/Types.hpp"

using namespace caudalis;
using namespace caudalis::testing;

namespace {

pivot machineWithEverything() {
    pivot machine = makePivot(
        {makeSpan(1, 10, 168, 500), makeSpan(1, 10, 168, 500), makeSpan(1, 10, 168, 500)}, {0, 0, 0});
    Pivots::shared()->setOverhangSpan(machine, makeSpan(2, 10, 127, 500));
    Pivots::shared()->setEndGun(machine, Types::gunInstance()->newGun(20));
    return machine;
}

CoordenadasSaida at(Integer span, Integer outlet) {
    return CoordenadasSaidas::shared()->newTramoCoordenadas(span, outlet);
}

}  // namespace

TEST(MountedAspersor, KeepsTheSprinklerAndACopyOfTheAddress) {
    auto nozzle = makeNozzle("n", 0.1, 0.5);
    auto mounted = makeMountedAspersor(at(2, 1), nozzle);
    EXPECT_EQ(mounted->Aspersor(), nozzle);
    EXPECT_EQ(mounted->saida(), at(2, 1));
    EXPECT_FALSE(mounted->deleted());
    EXPECT_EQ(mounted->id(), 0);
    mounted->setMountedId(12);
    EXPECT_EQ(mounted->id(), 12);
}

TEST(MountedAspersor, SaidaIsACopy) {
    auto mounted = makeMountedAspersor(at(2, 1), makeNozzle("n", 0.1, 0.5));
    CoordenadasSaida copy = mounted->saida();
    copy.saida = 2;
    EXPECT_EQ(copy.saida, 2);
    EXPECT_EQ(mounted->saida().saida, 1);
    pivot machine = makePivot({makeSpan(1, 10, 168, 500), makeSpan(1, 10, 168, 500)}, {0, 0});
    mounted->mount_on(machine);
    EXPECT_EQ(machine.Tramos(2).Saidas(1).obj_aspersor, mounted->Aspersor());
    EXPECT_EQ(machine.Tramos(2).Saidas(2).obj_aspersor, nullptr);
}

TEST(MountedAspersor, MountsAtTheEndGunOnly) {
    pivot machine = machineWithEverything();
    auto nozzle = makeNozzle("gun", 1.0, 0.5);
    makeMountedAspersor(CoordenadasSaidas::shared()->newEndGunCoordenadas(), nozzle)->mount_on(machine);
    EXPECT_EQ(machine.endGun.saida.obj_aspersor, nozzle);
    for (Long i = 1; i <= 3; ++i) {
        for (const auto& outlet : machine.Tramos(i).Saidas) {
            EXPECT_EQ(outlet.obj_aspersor, nullptr);
        }
    }
    for (const auto& outlet : machine.tramoVOladizo.Saidas) {
        EXPECT_EQ(outlet.obj_aspersor, nullptr);
    }
}

TEST(MountedAspersor, SpanAfterTheLastFixedOneAddressesTheOverhang) {
    pivot machine = machineWithEverything();
    auto nozzle = makeNozzle("n", 0.1, 0.5);
    makeMountedAspersor(at(4, 2), nozzle)->mount_on(machine);
    EXPECT_EQ(machine.tramoVOladizo.Saidas(2).obj_aspersor, nozzle);
    makeMountedAspersor(at(3, 2), nozzle)->mount_on(machine);
    EXPECT_EQ(machine.Tramos(3).Saidas(2).obj_aspersor, nozzle);
}

TEST(MountedAspersor, ApplyWithDeletedClearsAndTwiceIsHarmless) {
    pivot machine = machineWithEverything();
    auto nozzle = makeNozzle("n", 0.1, 0.5);
    auto mounted = makeMountedAspersor(at(1, 1), nozzle);
    mounted->apply(machine);
    EXPECT_EQ(machine.Tramos(1).Saidas(1).obj_aspersor, nozzle);
    mounted->deleted(true);
    mounted->apply(machine);
    EXPECT_EQ(machine.Tramos(1).Saidas(1).obj_aspersor, nullptr);
    mounted->apply(machine);
    EXPECT_EQ(machine.Tramos(1).Saidas(1).obj_aspersor, nullptr);
}

TEST(MountedAspersor, UnMountClearsTheOutlet) {
    pivot machine = machineWithEverything();
    auto mounted = makeMountedAspersor(at(2, 2), makeNozzle("n", 0.1, 0.5));
    mounted->mount_on(machine);
    mounted->unMount_on(machine);
    EXPECT_EQ(machine.Tramos(2).Saidas(2).obj_aspersor, nullptr);
}

TEST(MountedAspersor, AddressesOutsideThePivotRaiseNineAndChangeNothing) {
    pivot machine = makePivot({makeSpan(1, 10, 168, 500)}, {0});
    auto nozzle = makeNozzle("n", 0.1, 0.5);
    EXPECT_RAISES(makeMountedAspersor(at(2, 1), nozzle)->mount_on(machine),
                  RuntimeError::SubscriptOutOfRange);
    EXPECT_RAISES(makeMountedAspersor(at(1, 3), nozzle)->mount_on(machine),
                  RuntimeError::SubscriptOutOfRange);
    EXPECT_RAISES(
        makeMountedAspersor(CoordenadasSaidas::shared()->newEndGunCoordenadas(), nozzle)->mount_on(machine),
        RuntimeError::SubscriptOutOfRange);
    for (const auto& outlet : machine.Tramos(1).Saidas) {
        EXPECT_EQ(outlet.obj_aspersor, nullptr);
    }
}
