#include <gtest/gtest.h>

#include "ShippedDatabases.hpp"
#include "TemporaryFolder.hpp"
#include "caudalis/db/Connection.hpp"
#include "caudalis/db/Recordset.hpp"
#include "caudalis/fieldtests/FieldEvaluationStore.hpp"
#include "caudalis/fieldtests/FieldEvaluator.hpp"
#include "caudalis/fieldtests/FieldReadingsCsv.hpp"
#include "caudalis/fieldtests/FieldReadingsText.hpp"

using namespace caudalis;
using namespace caudalis::design;

namespace {

class FieldEvaluationStoreTest : public ::testing::Test {
protected:
    void SetUp() override {
        caudalis::testing::createProjectDatabase(folder.file("project.db"));
        connection.Open("Provider=SQLite;Data Source=" + folder.file("project.db"));
    }

    std::string column(const std::string& sql, const std::string& field) {
        const auto rows = connection.Execute(sql);
        return rows->Fields(field).isNull() ? "null" : rows->Fields(field).toString();
    }

    caudalis::testing::TemporaryFolder folder;
    Connection connection;
};

const char* const crewSheet =
    "line,distance_m,depth_mm,flag\n"
    "north,10,8,\n"
    "north,20,10,\n"
    "north,30,12,farmer's dog\n"
    "north,40,14,\n"
    "south,10,12,\n"
    "south,20,12,\n";

}  // namespace

TEST_F(FieldEvaluationStoreTest, DepthsAreStoredWithTheirFiguresAndComeBack) {
    const auto readings = FieldReadingsCsv::read({"crew.csv", crewSheet}, std::nullopt);
    FieldEvaluationSettings settings;
    settings.expectedDepthMm = 12.5;
    const auto result = FieldEvaluator::evaluate(readings, settings);
    FieldEvaluationStore store(connection);
    EXPECT_FALSE(store.nameTaken("North 2024"));
    connection.BeginTrans();
    const auto id = store.save(readings, result, "North 2024");
    connection.CommitTrans();
    EXPECT_EQ(id, 1);
    EXPECT_TRUE(store.nameTaken("North 2024"));
    // Depths go into pivot_evaluations as amounts with no gauge diameter.
    EXPECT_EQ(column("SELECT first_samples FROM pivot_evaluations", "first_samples"),
              "8 10\r\n10 20\r\n12 30\r\n14 40");
    EXPECT_EQ(column("SELECT second_samples FROM pivot_evaluations", "second_samples"), "12 10\r\n12 20");
    EXPECT_EQ(column("SELECT pluviometer_diameter FROM pivot_evaluations", "pluviometer_diameter"), "null");

    const auto found = store.find(id);
    ASSERT_TRUE(found);
    EXPECT_EQ(found->evaluation.name, "North 2024");
    EXPECT_EQ(found->evaluation.secondSample.count(), 2);
    const auto value = [&](const std::string& scope, const std::string& figure) {
        for (const auto& stored : found->figures) {
            if (stored.scope == scope && stored.figure == figure) {
                return stored;
            }
        }
        return StoredFigure{};
    };
    EXPECT_DOUBLE_EQ(*value("together", "cu_hh_percent").value, *result.together.cuHeermannHein);
    // Lines are kept under the crew's names, not their numbers.
    EXPECT_DOUBLE_EQ(*value("line south", "cu_hh_percent").value, 100);
    EXPECT_FALSE(value("line 2", "cu_hh_percent").value);
    // Line 2's two collectors have no low quarter, so the lines' mean has no DU: stored as null.
    EXPECT_FALSE(result.lineAverage.duLowQuarter);
    EXPECT_FALSE(value("lines", "du_lq_percent").value);
    EXPECT_DOUBLE_EQ(*value("lines", "cu_hh_percent").value, *result.lineAverage.cuHeermannHein);
    EXPECT_EQ(value("settings", "amounts").note, "mm");
    EXPECT_EQ(value("settings", "line 1 name").note, "north");
    EXPECT_DOUBLE_EQ(*value("settings", "expected_depth_mm").value, 12.5);
    EXPECT_FALSE(value("settings", "last_span_end_m").value);
    EXPECT_EQ(value("crew", "north:3").note, "farmer's dog");

    const auto listed = store.list();
    ASSERT_EQ(listed.size(), 1u);
    EXPECT_EQ(listed[0].name, "North 2024");
    EXPECT_DOUBLE_EQ(*listed[0].cuHeermannHein, *result.together.cuHeermannHein);
    EXPECT_DOUBLE_EQ(*listed[0].duLowQuarter, *result.together.duLowQuarter);
    EXPECT_FALSE(store.find(2));
}

TEST_F(FieldEvaluationStoreTest, VolumesKeepTheirGaugeAndOtherHostsEvaluationsAreListed) {
    const auto readings = FieldReadingsText::read({{"r.txt", "125.5 37\n0 40\n"}}, 0.15);
    const auto record = FieldEvaluationStore::record(readings, "Field 7");
    EXPECT_DOUBLE_EQ(record.pluviometer.diameter, 0.15);
    EXPECT_EQ(record.firstSample.count(), 2);
    EXPECT_EQ(record.secondSample.count(), 0);
    connection.Execute(
        "INSERT INTO pivot_evaluations (name,pluviometer_diameter,first_samples,second_samples) VALUES "
        "('Other host',0.1,'1 5',null)");
    FieldEvaluationStore store(connection);
    store.save(readings, FieldEvaluator::evaluate(readings, {}), "Field 7");
    EXPECT_EQ(column("SELECT first_samples FROM pivot_evaluations WHERE id=2", "first_samples"),
              "125.5 37\r\n0 40");
    const auto listed = store.list();
    ASSERT_EQ(listed.size(), 2u);
    EXPECT_FALSE(listed[0].cuHeermannHein);
    EXPECT_EQ(listed[1].name, "Field 7");
    // One full collector and one dry: the Heermann-Hein formula falls below 0, no CU is kept.
    EXPECT_FALSE(listed[1].cuHeermannHein);
    EXPECT_TRUE(store.find(1)->figures.empty());
}
