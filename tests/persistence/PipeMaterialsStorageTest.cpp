#include <gtest/gtest.h>

#include "../../src/hydraulics/DropStorage.hpp"
#include "ErrorMatchers.hpp"
#include "LocaleGuard.hpp"
#include "PersistenceDatabases.hpp"
#include "caudalis/core/Statics.hpp"
#include "caudalis/db/Connection.hpp"
#include "caudalis/hydraulics/Drops.hpp"
#include "caudalis/hydraulics/PipeMaterials.hpp"

using namespace caudalis;
using namespace caudalis::testing;

namespace {

class PipeMaterialsStorage : public ::testing::TestWithParam<TestEngine> {
protected:
    PipeMaterialsStorage() : databases(GetParam()), con(databases.projectConnection()) { con.Open(); }

    PipeMaterial materialAt(const CollectionRef& materials, Long index) const {
        return materials->Item(index).toRecord<PipeMaterial>();
    }

    PersistenceDatabases databases;
    Connection con;
};

TEST_P(PipeMaterialsStorage, AllReadsEveryMaterialInIdOrder) {
    databases.executeOnProject("INSERT INTO pipe_materials (id, name, rugosidade) VALUES (0, 'First', 99)");
    PipeMaterials materials;
    const auto all = materials.All(con);
    ASSERT_EQ(all->Count(), 6);
    EXPECT_EQ(materialAt(all, 1), (PipeMaterial{0, "First", 99}));
    EXPECT_EQ(materialAt(all, 2), (PipeMaterial{1, "PVC", 150}));
    EXPECT_EQ(materialAt(all, 6), (PipeMaterial{5, "Galvanised steel", 120}));
    EXPECT_FALSE(all->Contains("PVC"));
}

TEST_P(PipeMaterialsStorage, AllIsReadOnceAndSharedEvenAfterNewRowsAndWithAnotherConnection) {
    PipeMaterials materials;
    const auto first = materials.All(con);
    databases.executeOnProject("INSERT INTO pipe_materials (name, rugosidade) VALUES ('Copper', 140)");
    PersistenceDatabases other(GetParam());
    Connection otherConnection(other.projectConnection());
    otherConnection.Open();
    other.executeOnProject("DELETE FROM pipe_materials");
    const auto second = materials.All(otherConnection);
    EXPECT_EQ(second, first);
    EXPECT_EQ(second->Count(), 5);
    first->Add(Variant::record(PipeMaterial{77, "Added by a caller", 1}));
    EXPECT_EQ(materials.All(con)->Count(), 6);
}

TEST_P(PipeMaterialsStorage, EachObjectKeepsItsOwnList) {
    PipeMaterials one;
    PipeMaterials two;
    EXPECT_NE(one.All(con), two.All(con));
}

TEST_P(PipeMaterialsStorage, SharedInstanceHandsTheSameListToEveryCaller) {
    const auto viaStatics = Statics::application()->PipeMaterials()->All(con);
    PersistenceDatabases other(GetParam());
    Connection otherConnection(other.projectConnection());
    otherConnection.Open();
    EXPECT_EQ(PipeMaterials::shared()->All(otherConnection), viaStatics);
}

TEST_P(PipeMaterialsStorage, FindGivesTheRowOrTheNullMaterial) {
    PipeMaterials materials;
    EXPECT_EQ(materials.find(con, 3), (PipeMaterial{3, "Rubber hose", 135}));
    EXPECT_EQ(materials.find(con, 99), materials.NullPipeMaterial());
    EXPECT_EQ(materials.find(con, 0), materials.NullPipeMaterial());
}

TEST_P(PipeMaterialsStorage, FindQueriesEveryTime) {
    PipeMaterials materials;
    EXPECT_EQ(materials.find(con, 1).rugosidade, 150);
    databases.executeOnProject("UPDATE pipe_materials SET rugosidade=145 WHERE id=1");
    EXPECT_EQ(materials.find(con, 1).rugosidade, 145);
}

TEST_P(PipeMaterialsStorage, ErrorsOfTheDatabasePassUnchanged) {
    databases.executeOnProject("DROP TABLE pipe_materials");
    EXPECT_RAISES(PipeMaterials().find(con, 1), RuntimeError::DatabaseEngine);
    EXPECT_RAISES(PipeMaterials().All(con), RuntimeError::DatabaseEngine);
}

class DropStorageTest : public PipeMaterialsStorage {
protected:
    Drop pvcDrop(Double diameter, Double length) {
        return Drops::shared()->newDrop(diameter, length, PipeMaterials::shared()->find(con, 1));
    }
};

TEST_P(DropStorageTest, SavedDropLoadsBackWithItsMaterial) {
    Drop drop = pvcDrop(20.5, 1.75);
    Drops::shared()->Install(drop);
    DropStorage::saveDrop(con, drop, 4);
    EXPECT_EQ(databases.projectRows("SELECT * FROM tb_drop"), TableRows{"1.75|20.5|1|1|4"});
    const Drop loaded = DropStorage::loadDrop(con, 4);
    EXPECT_EQ(loaded, drop);
    EXPECT_FALSE(loaded.p_is_null);
    EXPECT_TRUE(loaded.p_installed);
    EXPECT_EQ(loaded.pipe_material.name, "PVC");
}

TEST_P(DropStorageTest, SavingReplacesTheChartsRowOnly) {
    DropStorage::saveDrop(con, pvcDrop(20, 1), 4);
    DropStorage::saveDrop(con, pvcDrop(25, 2), 5);
    DropStorage::saveDrop(con, pvcDrop(30, 3), 4);
    EXPECT_EQ(databases.projectRows("SELECT diametro, carta_id FROM tb_drop ORDER BY carta_id"),
              (TableRows{"30|4", "25|5"}));
    EXPECT_FALSE(DropStorage::loadDrop(con, 4).p_installed);
}

TEST_P(DropStorageTest, EmptyDropDeletesTheRowAndWritesNone) {
    DropStorage::saveDrop(con, pvcDrop(20, 1), 4);
    DropStorage::saveDrop(con, Drops::shared()->newDrop(0, 0, PipeMaterials::shared()->NullPipeMaterial()),
                          4);
    EXPECT_TRUE(databases.projectRows("SELECT * FROM tb_drop").empty());
    EXPECT_EQ(DropStorage::loadDrop(con, 4), Drops::shared()->createNull());
}

TEST_P(DropStorageTest, NullDropWritesNoRowWhateverItsLengths) {
    Drop drop = pvcDrop(20, 1);
    drop.p_is_null = true;
    DropStorage::saveDrop(con, drop, 4);
    EXPECT_TRUE(databases.projectRows("SELECT * FROM tb_drop").empty());
}

TEST_P(DropStorageTest, NullColumnsLoadAsZeroAndAnUnknownMaterialAsTheNullOne) {
    databases.executeOnProject("INSERT INTO tb_drop (longitud, carta_id) VALUES (2.5, 8)");
    const Drop loaded = DropStorage::loadDrop(con, 8);
    EXPECT_FALSE(loaded.p_is_null);
    EXPECT_EQ(loaded.longitud, 2.5);
    EXPECT_EQ(loaded.diametro, 0);
    EXPECT_EQ(loaded.p_pipe_material_id, 0);
    EXPECT_FALSE(loaded.p_installed);
    EXPECT_EQ(loaded.pipe_material, PipeMaterial{});
}

TEST_P(DropStorageTest, DeleteDropsOfRemovesOnlyThatChart) {
    DropStorage::saveDrop(con, pvcDrop(20, 1), 4);
    DropStorage::saveDrop(con, pvcDrop(25, 2), 5);
    DropStorage::deleteDropsOf(con, 4);
    EXPECT_EQ(databases.projectRows("SELECT carta_id FROM tb_drop"), TableRows{"5"});
}

TEST_P(DropStorageTest, NumbersAreWrittenWithAPointInACommaLocale) {
    DecimalSeparatorGuard comma(',');
    DropStorage::saveDrop(con, pvcDrop(20.5, 1.25), 4);
    EXPECT_EQ(databases.projectNumber("SELECT diametro FROM tb_drop"), 20.5);
    EXPECT_EQ(databases.projectNumber("SELECT longitud FROM tb_drop"), 1.25);
}

INSTANTIATE_TEST_SUITE_P(Engines, PipeMaterialsStorage, allEngines(), EngineNamer());
INSTANTIATE_TEST_SUITE_P(Engines, DropStorageTest, allEngines(), EngineNamer());

}  // namespace
