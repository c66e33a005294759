#include <gtest/gtest.h>

#include <cmath>

#include "ErrorMatchers.hpp"
#include "caudalis/core/Errors.hpp"
#include "caudalis/hydraulics/Drops.hpp"
#include "caudalis/hydraulics/PipeMaterials.hpp"

using namespace caudalis;

namespace {

PipeMaterial rubber() {
    PipeMaterial material;
    material.id = 3;
    material.name = "rubber";
    material.rugosidade = 135;
    return material;
}

Drop hose() {
    return Drops::shared()->newDrop(25.4, 2.5, rubber());
}

}  // namespace

TEST(Drops, NewDropTakesTheDiameterFirst) {
    const Drop drop = hose();
    EXPECT_EQ(drop.diametro, 25.4);
    EXPECT_EQ(drop.longitud, 2.5);
    EXPECT_EQ(drop.pipe_material, rubber());
    EXPECT_EQ(drop.p_pipe_material_id, 3);
    EXPECT_FALSE(drop.p_is_null);
    EXPECT_FALSE(drop.p_installed);
}

TEST(Drops, NullDropHasNothingButTheFlag) {
    const Drop none = Drops::shared()->createNull();
    EXPECT_TRUE(none.p_is_null);
    EXPECT_FALSE(none.p_installed);
    EXPECT_EQ(none.longitud, 0);
    EXPECT_EQ(none.diametro, 0);
    EXPECT_EQ(none.pipe_material, PipeMaterial{});
    EXPECT_EQ(none.p_pipe_material_id, 0);
}

TEST(Drops, Validity) {
    const auto drops = Drops::shared();
    EXPECT_TRUE(drops->isValid(hose()));
    Drop noMaterial = hose();
    noMaterial.p_pipe_material_id = 0;
    EXPECT_FALSE(drops->isValid(noMaterial));
    EXPECT_FALSE(drops->isValid(drops->newDrop(0, 2.5, rubber())));
    EXPECT_FALSE(drops->isValid(drops->newDrop(25.4, 0, rubber())));
}

TEST(Drops, PressureLossOfTheNullDropIsZero) {
    const Drop none = Drops::shared()->createNull();
    EXPECT_EQ(Drops::shared()->PressureLoss(none, 0.5), 0.0);
    EXPECT_EQ(Drops::shared()->PressureLoss(none, -3.0), 0.0);
}

TEST(Drops, PressureLossWithZeroDischargeIsZero) {
    EXPECT_EQ(Drops::shared()->PressureLoss(hose(), 0.0), 0.0);
}

TEST(Drops, PressureLossIsHazenWilliamsOverTheLengthWithoutFactorTen) {
    const double q = 0.4;
    const double x = q / 135.0;
    const double k = std::pow(10.0, 10.0) * 1.21 * std::pow(x, 1.852);
    const double unit = std::pow(25.4, -4.87) * k;
    EXPECT_DOUBLE_EQ(Drops::shared()->PressureLoss(hose(), q), unit * 2.5);
}

TEST(Drops, PressureLossWithZeroRoughnessRaises) {
    Drop drop = hose();
    drop.pipe_material.rugosidade = 0;
    EXPECT_RAISES(Drops::shared()->PressureLoss(drop, 0.4), RuntimeError::DivisionByZero);
}

TEST(Drops, IsEmpty) {
    const auto drops = Drops::shared();
    EXPECT_TRUE(drops->IsEmpty(drops->newDrop(0, 0, PipeMaterials::shared()->NullPipeMaterial())));
    Drop nullWithLengths = drops->createNull();
    nullWithLengths.longitud = 4;
    nullWithLengths.diametro = 20;
    EXPECT_TRUE(drops->IsEmpty(nullWithLengths));
    EXPECT_FALSE(drops->IsEmpty(hose()));
}

TEST(Drops, EqualsIgnoresTheInstalledFlagAndTheStoredId) {
    const auto drops = Drops::shared();
    Drop installed = hose();
    drops->Install(installed);
    Drop other = hose();
    other.p_pipe_material_id = 99;
    EXPECT_TRUE(drops->Equals(installed, hose()));
    EXPECT_TRUE(drops->Equals(other, hose()));
    EXPECT_FALSE(drops->Differs(installed, hose()));
    Drop longer = hose();
    longer.longitud = 3;
    EXPECT_TRUE(drops->Differs(longer, hose()));
    Drop otherMaterial = hose();
    otherMaterial.pipe_material.id = 4;
    EXPECT_FALSE(drops->Equals(otherMaterial, hose()));
}

TEST(Drops, InstallAndUninstall) {
    const auto drops = Drops::shared();
    Drop drop = hose();
    drops->Install(drop);
    EXPECT_TRUE(drops->IsInstalled(drop));
    drops->Uninstall(drop);
    EXPECT_FALSE(drops->IsInstalled(drop));
}

TEST(Drops, InstallOfAnIncompleteDropRaisesAndChangesNothing) {
    Drop drop = hose();
    drop.p_pipe_material_id = 0;
    EXPECT_RAISES(Drops::shared()->Install(drop), -2147220604);
    EXPECT_RAISES(Drops::shared()->Install(drop), errorNumber(DropException::DropIncompleteException));
    EXPECT_FALSE(drop.p_installed);
}

TEST(PipeMaterials, NullPipeMaterialAndEquals) {
    const auto materials = PipeMaterials::shared();
    EXPECT_EQ(materials->NullPipeMaterial(), PipeMaterial{});
    PipeMaterial renamed = rubber();
    renamed.name = "other";
    EXPECT_TRUE(materials->Equals(rubber(), Variant::record(renamed)));
    EXPECT_FALSE(materials->Equals(rubber(), Variant::record(PipeMaterial{})));
    EXPECT_FALSE(materials->Equals(rubber(), Variant(Long{3})));
    EXPECT_FALSE(materials->Equals(rubber(), Variant::record(marca{3, "x"})));
}

TEST(PipeMaterials, SharedInstance) {
    EXPECT_EQ(PipeMaterials::shared(), PipeMaterials::shared());
}
