#include <gtest/gtest.h>

#include "ChartFixture.hpp"
#include "ErrorMatchers.hpp"
#include "caudalis/core/Error.hpp"

using namespace caudalis;
using namespace caudalis::testing;

namespace {

/// A failure injected into one table of the project database: a trigger that aborts the
/// statement, as a full disk or a constraint would.
class ChartAtomicity : public ::testing::TestWithParam<const char*>, public ChartFixture {
protected:
    ChartAtomicity() {
        existing = fullChart("Existing");
        saveAsNew(*existing);
        auto other = fullChart("Other");
        saveAsNew(*other);
    }

    void refuse(const std::string& event) const {
        databases.executeOnProject("CREATE TRIGGER injected_failure BEFORE " + event + " ON " + GetParam() +
                                   " BEGIN SELECT RAISE(ABORT, 'injected'); END");
    }

    std::shared_ptr<CartaAspersores> existing;
};

TEST_P(ChartAtomicity, AFailedInsertOfANewChartLeavesEveryTableAsItWas) {
    refuse("INSERT");
    const TableDump before = databases.dumpProject();
    auto chart = fullChart("New");
    EXPECT_RAISES(save(*chart), RuntimeError::DatabaseEngine);
    EXPECT_EQ(chart->id(), 0);
    EXPECT_EQ(databases.dumpProject(), before);
}

TEST_P(ChartAtomicity, AFailedSaveOfAnExistingChartLeavesEveryTableAsItWas) {
    refuse("INSERT");
    const TableDump before = databases.dumpProject();
    existing->setNome("Renamed");
    existing->setEndGunBoost(99);
    EXPECT_RAISES(save(*existing), RuntimeError::DatabaseEngine);
    EXPECT_EQ(existing->id(), 1);
    EXPECT_EQ(databases.dumpProject(), before);
}

TEST_P(ChartAtomicity, AFailedSaveAsNewLeavesTheIdZeroAndTheTablesAsTheyWere) {
    refuse("INSERT");
    const TableDump before = databases.dumpProject();
    existing->setNome("Copy");
    EXPECT_RAISES(saveAsNew(*existing), RuntimeError::DatabaseEngine);
    EXPECT_EQ(existing->id(), 0);
    EXPECT_EQ(databases.dumpProject(), before);
}

TEST_P(ChartAtomicity, AFailedDestroyLeavesEveryTableAsItWas) {
    refuse("DELETE");
    const TableDump before = databases.dumpProject();
    EXPECT_RAISES(charts.destroy(databases.projectConnection(), 1), RuntimeError::DatabaseEngine);
    EXPECT_EQ(databases.dumpProject(), before);
}

TEST_P(ChartAtomicity, TheDatabaseIsUsableAfterAFailure) {
    refuse("INSERT");
    auto chart = fullChart("New");
    EXPECT_RAISES(save(*chart), RuntimeError::DatabaseEngine);
    databases.executeOnProject("DROP TRIGGER injected_failure");
    save(*chart);
    EXPECT_EQ(chart->id(), 3);
    EXPECT_EQ(load(3)->mountedAspersores()->Count(), 3);
}

INSTANTIATE_TEST_SUITE_P(ChildTables, ChartAtomicity,
                         ::testing::Values("tb_aspersores", "tb_reguladores", "tb_indicadores",
                                           "tb_pluviometria", "tb_drop"));

class ChartTableAtomicity : public ChartAtomicity {};

TEST_P(ChartTableAtomicity, AFailureOnTheChartRowLeavesEveryTableAsItWas) {
    refuse("INSERT");
    const TableDump before = databases.dumpProject();
    auto chart = fullChart("New");
    EXPECT_RAISES(saveAsNew(*chart), RuntimeError::DatabaseEngine);
    EXPECT_EQ(databases.dumpProject(), before);
    databases.executeOnProject("DROP TRIGGER injected_failure");
    refuse("UPDATE");
    existing->setNome("Renamed");
    EXPECT_RAISES(save(*existing), RuntimeError::DatabaseEngine);
    EXPECT_EQ(databases.dumpProject(), before);
}

TEST_P(ChartTableAtomicity, AFailureOnTheLastDeleteOfDestroyKeepsTheChildRows) {
    refuse("DELETE");
    const TableDump before = databases.dumpProject();
    EXPECT_RAISES(charts.destroy(databases.projectConnection(), 1), RuntimeError::DatabaseEngine);
    EXPECT_EQ(databases.dumpProject(), before);
}

INSTANTIATE_TEST_SUITE_P(ChartRow, ChartTableAtomicity, ::testing::Values("tb_cartas"));

}  // namespace
