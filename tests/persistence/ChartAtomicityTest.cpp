#include <gtest/gtest.h>

#include <tuple>

#include "ChartFixture.hpp"
#include "ErrorMatchers.hpp"
#include "caudalis/core/Error.hpp"

using namespace caudalis;
using namespace caudalis::testing;

namespace {

/// A failure injected into one table of the project database, on each engine: a trigger that
/// aborts the statement, as a full disk or a constraint would.
class ChartAtomicity : public ::testing::TestWithParam<std::tuple<TestEngine, const char*>>,
                       public ChartFixture {
protected:
    ChartAtomicity() : ChartFixture(std::get<0>(GetParam())) {
        existing = fullChart("Existing");
        saveAsNew(*existing);
        auto other = fullChart("Other");
        saveAsNew(*other);
    }

    static const char* table() { return std::get<1>(GetParam()); }

    void refuse(const std::string& event) const { databases.refuseOnProject(table(), event); }

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
    databases.stopRefusingOnProject(table());
    save(*chart);
    EXPECT_GT(chart->id(), 2);
    EXPECT_EQ(load(static_cast<Integer>(chart->id()))->mountedAspersores()->Count(), 3);
}

std::string engineAndTable(const ::testing::TestParamInfo<ChartAtomicity::ParamType>& info) {
    return engineName(std::get<0>(info.param)) + "_" + std::get<1>(info.param);
}

INSTANTIATE_TEST_SUITE_P(ChildTables, ChartAtomicity,
                         ::testing::Combine(allEngines(), ::testing::Values("tb_aspersores", "tb_reguladores",
                                                                            "tb_indicadores",
                                                                            "tb_pluviometria", "tb_drop")),
                         engineAndTable);

class ChartTableAtomicity : public ChartAtomicity {};

TEST_P(ChartTableAtomicity, AFailureOnTheChartRowLeavesEveryTableAsItWas) {
    refuse("INSERT");
    const TableDump before = databases.dumpProject();
    auto chart = fullChart("New");
    EXPECT_RAISES(saveAsNew(*chart), RuntimeError::DatabaseEngine);
    EXPECT_EQ(databases.dumpProject(), before);
    databases.stopRefusingOnProject(table());
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

INSTANTIATE_TEST_SUITE_P(ChartRow, ChartTableAtomicity,
                         ::testing::Combine(allEngines(), ::testing::Values("tb_cartas")), engineAndTable);

}  // namespace
