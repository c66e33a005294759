#include <gtest/gtest.h>

#include <typeinfo>

#include "caudalis/core/Statics.hpp"
#include "caudalis/evaluation/WaterDepths.hpp"
#include "caudalis/machine/CoordenadasSaidas.hpp"
#include "caudalis/machine/Pivots.hpp"
#include "caudalis/machine/Tramos.hpp"
#include "caudalis/machine/Types.hpp"

using namespace caudalis;

TEST(MachineStatics, HelperAccessorsReturnTheSameObjectEveryTime) {
    Statics one;
    Statics two;
    EXPECT_EQ(one.Tramos(), one.Tramos());
    EXPECT_EQ(one.Tramos(), two.Tramos());
    EXPECT_EQ(one.Pivots(), two.Pivots());
    EXPECT_EQ(one.CoordenadasSaidas(), two.CoordenadasSaidas());
    EXPECT_EQ(one.WaterDepths(), two.WaterDepths());
    EXPECT_EQ(one.Gun(), two.Gun());
    EXPECT_EQ(one.Placements(), two.Placements());
    EXPECT_EQ(one.Saidas(), two.Saidas());
}

TEST(MachineStatics, AccessorsHandOutTheInstancesTheLibraryUses) {
    const auto statics = Statics::application();
    EXPECT_EQ(statics->Tramos(), Tramos::shared());
    EXPECT_EQ(statics->Pivots(), Pivots::shared());
    EXPECT_EQ(statics->CoordenadasSaidas(), CoordenadasSaidas::shared());
    EXPECT_EQ(statics->WaterDepths(), WaterDepths::shared());
    EXPECT_EQ(statics->Gun(), Types::gunInstance());
    EXPECT_EQ(statics->Placements(), Types::placementsInstance());
    EXPECT_EQ(statics->Saidas(), Types::saidasInstance());
}

TEST(MachineStatics, GunPlacementsAndSaidasAreThreeDifferentTypesObjects) {
    const auto statics = Statics::application();
    const auto gun = statics->Gun();
    const auto placements = statics->Placements();
    const auto saidas = statics->Saidas();
    EXPECT_NE(gun, placements);
    EXPECT_NE(gun, saidas);
    EXPECT_NE(placements, saidas);
    EXPECT_EQ(typeid(*gun), typeid(Types));
    EXPECT_EQ(typeid(*placements), typeid(Types));
    EXPECT_EQ(typeid(*saidas), typeid(Types));
}

TEST(MachineStatics, NewPivotIsAnEmptyIncompleteMachine) {
    const auto statics = Statics::application();
    pivot machine = statics->newPivot();
    const auto pivots = statics->Pivots();
    EXPECT_EQ(pivots->FixedSpansCount(machine), 0);
    EXPECT_FALSE(pivots->hasOverHang(machine));
    EXPECT_FALSE(pivots->hasEndGun(machine));
    EXPECT_FALSE(pivots->isComplete(machine));
}
