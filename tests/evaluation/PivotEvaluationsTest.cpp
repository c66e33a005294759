#include "caudalis/evaluation/PivotEvaluations.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <vector>

#include "ErrorMatchers.hpp"
#include "LocaleGuard.hpp"
#include "PersistenceDatabases.hpp"
#include "caudalis/core/Arrays.hpp"
#include "caudalis/core/Doubles.hpp"
#include "caudalis/db/Connection.hpp"
#include "caudalis/db/DatabaseErrors.hpp"
#include "caudalis/evaluation/FieldSamples.hpp"
#include "caudalis/evaluation/Pluviometros.hpp"

using namespace caudalis;

namespace {

/// One stored row of pivot_evaluations, read with plain SQL.
struct StoredRow {
    Variant id;
    Variant name;
    Variant pluviometer_diameter;
    Variant first_samples;
    Variant second_samples;
};

class PivotEvaluationsTest : public ::testing::TestWithParam<caudalis::testing::TestEngine> {
protected:
    PivotEvaluationsTest() : databases(GetParam()) { con.Open(databases.projectConnection()); }

    const PivotEvaluations& evaluations() const { return *PivotEvaluations::shared(); }

    static BoundedArray<FieldSample> readingList(std::initializer_list<FieldSample> items) {
        return BoundedArray<FieldSample>::of(items);
    }

    /// An evaluation with a gauge of diameter 0.2 and readings in both passes.
    PivotEvaluation fullEvaluation(const String& name) const {
        PivotEvaluation evaluation = evaluations().newEvaluation(name);
        evaluation.pluviometer = Pluviometros::shared()->newPluviometro(0.2);
        evaluation.firstSample = readingList({{125.5, 37}, {0, 40}});
        evaluation.secondSample = readingList({{12.25, 10}, {3, 20}, {-1, 30}});
        return evaluation;
    }

    PivotEvaluation savedEvaluation(const String& name) {
        PivotEvaluation evaluation = fullEvaluation(name);
        evaluations().save(con, evaluation);
        return evaluation;
    }

    StoredRow storedRow(Long id) {
        const auto row = con.Execute("SELECT * FROM pivot_evaluations WHERE id = " + std::to_string(id));
        return StoredRow{row->Fields("id"), row->Fields("name"), row->Fields("pluviometer_diameter"),
                         row->Fields("first_samples"), row->Fields("second_samples")};
    }

    /// Every row as "id|name|diameter|first|second", ordered by id.
    std::vector<std::string> tableContents() {
        std::vector<std::string> rows;
        const auto rs = con.Execute("SELECT * FROM pivot_evaluations ORDER BY id");
        for (; !rs->EOF_(); rs->MoveNext()) {
            std::string text;
            for (const char* column :
                 {"id", "name", "pluviometer_diameter", "first_samples", "second_samples"}) {
                const Variant value = rs->Fields(column);
                text += (value.isNull() ? std::string("<null>") : value.toString()) + "|";
            }
            rows.push_back(text);
        }
        return rows;
    }

    static std::vector<std::string> sortedNames(const BoundedArray<String>& names) {
        std::vector<std::string> sorted;
        for (Long i = 1; i <= Arrays::shared()->Length(names); ++i) {
            sorted.push_back(names(i));
        }
        std::sort(sorted.begin(), sorted.end());
        return sorted;
    }

    static void expectSameReadings(const BoundedArray<FieldSample>& actual,
                                   const BoundedArray<FieldSample>& expected) {
        ASSERT_EQ(Arrays::shared()->Length(actual), Arrays::shared()->Length(expected));
        for (Long i = 1; i <= Arrays::shared()->Length(expected); ++i) {
            EXPECT_EQ(actual(i), expected(i)) << "reading " << i;
        }
    }

    /// Makes every `event` (INSERT or UPDATE) on the table fail.
    void refuseEvery(const std::string& event) const {
        databases.refuseOnProject("pivot_evaluations", event);
    }

    caudalis::testing::PersistenceDatabases databases;
    Connection con;
};

}  // namespace

TEST_P(PivotEvaluationsTest, NewEvaluationHasAZeroGaugeAndNoReadings) {
    const PivotEvaluation evaluation = evaluations().newEvaluation("North field");
    EXPECT_EQ(evaluation.id, 0);
    EXPECT_EQ(evaluation.name, "North field");
    EXPECT_EQ(evaluation.pluviometer.diameter, 0);
    EXPECT_EQ(evaluation.pluviometer.p_area, 0);
    EXPECT_FALSE(std::isnan(evaluation.pluviometer.p_area));
    EXPECT_EQ(Arrays::shared()->Length(evaluation.firstSample), 0);
    EXPECT_EQ(Arrays::shared()->Length(evaluation.secondSample), 0);
}

TEST_P(PivotEvaluationsTest, EnumerateOfAnEmptyTableIsEmpty) {
    const BoundedArray<String> names = evaluations().Enumerate(con);
    EXPECT_EQ(Arrays::shared()->Length(names), 0);
    EXPECT_FALSE(names.isAllocated());
}

TEST_P(PivotEvaluationsTest, EnumerateListsTheNamesOfAllEvaluations) {
    savedEvaluation("beta");
    savedEvaluation("alpha");
    savedEvaluation("gamma");
    const BoundedArray<String> names = evaluations().Enumerate(con);
    EXPECT_EQ(names.lbound(), 1);
    EXPECT_EQ(sortedNames(names), (std::vector<std::string>{"alpha", "beta", "gamma"}));
}

TEST_P(PivotEvaluationsTest, SaveOfANewEvaluationInsertsAndWritesTheIdBack) {
    PivotEvaluation evaluation = fullEvaluation("first");
    evaluations().save(con, evaluation);
    EXPECT_GT(evaluation.id, 0);
    EXPECT_EQ(storedRow(evaluation.id).name.toString(), "first");

    PivotEvaluation second = fullEvaluation("second");
    evaluations().save(con, second);
    EXPECT_GT(second.id, evaluation.id);
}

TEST_P(PivotEvaluationsTest, ASecondSaveOfTheSameRecordUpdatesItsRow) {
    PivotEvaluation evaluation = fullEvaluation("before");
    evaluations().save(con, evaluation);
    const Long id = evaluation.id;

    evaluation.name = "after";
    evaluation.pluviometer.diameter = 0.3;
    evaluation.firstSample = readingList({{1, 2}});
    evaluation.secondSample = BoundedArray<FieldSample>{};
    evaluations().save(con, evaluation);

    EXPECT_EQ(evaluation.id, id);
    ASSERT_EQ(tableContents().size(), 1u);
    const StoredRow row = storedRow(id);
    EXPECT_EQ(row.name.toString(), "after");
    EXPECT_EQ(row.pluviometer_diameter.toDouble(), 0.3);
    EXPECT_EQ(row.first_samples.toString(), "1 2");
    EXPECT_TRUE(row.second_samples.isNull());
}

TEST_P(PivotEvaluationsTest, ANegativeIdCountsAsNew) {
    PivotEvaluation evaluation = fullEvaluation("negative");
    evaluation.id = -5;
    evaluations().save(con, evaluation);
    EXPECT_GT(evaluation.id, 0);
    EXPECT_EQ(tableContents().size(), 1u);
}

TEST_P(PivotEvaluationsTest, ReadingsAreStoredOneLinePerReading) {
    PivotEvaluation evaluation = evaluations().newEvaluation("lines");
    evaluation.firstSample = readingList({{125.5, 37}, {0, 40}});
    evaluations().save(con, evaluation);

    EXPECT_EQ(storedRow(evaluation.id).first_samples.toString(), "125.5 37\r\n0 40");
    const PivotEvaluation loaded = evaluations().find(con, "id = " + std::to_string(evaluation.id));
    expectSameReadings(loaded.firstSample, evaluation.firstSample);
}

TEST_P(PivotEvaluationsTest, ReadingsAreStoredWithAPointWhateverTheLocale) {
    caudalis::testing::DecimalSeparatorGuard comma(',');
    PivotEvaluation evaluation = evaluations().newEvaluation("comma");
    evaluation.pluviometer.diameter = 0.25;
    evaluation.firstSample = readingList({{0.5, 12.75}});
    evaluations().save(con, evaluation);

    const StoredRow row = storedRow(evaluation.id);
    EXPECT_EQ(row.first_samples.toString(), "0.5 12.75");
    EXPECT_EQ(row.pluviometer_diameter.toDouble(), 0.25);
}

TEST_P(PivotEvaluationsTest, AnEmptySecondPassIsStoredAsNullAndLoadsEmpty) {
    PivotEvaluation evaluation = fullEvaluation("one pass");
    evaluation.secondSample = BoundedArray<FieldSample>{};
    evaluations().save(con, evaluation);

    EXPECT_TRUE(storedRow(evaluation.id).second_samples.isNull());
    const PivotEvaluation loaded = evaluations().find(con, "name = 'one pass'");
    EXPECT_EQ(Arrays::shared()->Length(loaded.secondSample), 0);
    EXPECT_EQ(Arrays::shared()->Length(loaded.firstSample), 2);
}

TEST_P(PivotEvaluationsTest, AGaugeDiameterOfZeroIsStoredAsNullAndLoadsWithoutArea) {
    PivotEvaluation evaluation = evaluations().newEvaluation("no gauge");
    evaluations().save(con, evaluation);

    const StoredRow row = storedRow(evaluation.id);
    EXPECT_TRUE(row.pluviometer_diameter.isNull());
    EXPECT_TRUE(row.first_samples.isNull());
    const PivotEvaluation loaded = evaluations().find(con, "name = 'no gauge'");
    EXPECT_EQ(loaded.pluviometer.diameter, 0);
    EXPECT_TRUE(Doubles::shared()->isNaN(loaded.pluviometer.p_area));
}

TEST_P(PivotEvaluationsTest, AnEvaluationWithBothPassesComesBackAsItWasSaved) {
    PivotEvaluation original = savedEvaluation("round trip");
    savedEvaluation("other");

    const PivotEvaluation loaded = evaluations().find(con, "name = 'round trip'");
    EXPECT_EQ(loaded.id, original.id);
    EXPECT_EQ(loaded.name, "round trip");
    EXPECT_EQ(loaded.pluviometer.diameter, 0.2);
    EXPECT_TRUE(Doubles::shared()->isNaN(loaded.pluviometer.p_area));
    expectSameReadings(loaded.firstSample, original.firstSample);
    expectSameReadings(loaded.secondSample, original.secondSample);
}

TEST_P(PivotEvaluationsTest, EveryStoredLineBecomesAReadingEvenWhenEmpty) {
    con.Execute(
        "INSERT INTO pivot_evaluations (name, first_samples, second_samples) VALUES ('raw', '1 2\r\n\r\n3 "
        "4\r\n', '   ')");
    const PivotEvaluation loaded = evaluations().find(con, "name = 'raw'");
    ASSERT_EQ(Arrays::shared()->Length(loaded.firstSample), 4);
    EXPECT_EQ(loaded.firstSample(1), (FieldSample{1, 2}));
    EXPECT_EQ(loaded.firstSample(2), (FieldSample{0, 0}));
    EXPECT_EQ(loaded.firstSample(3), (FieldSample{3, 4}));
    EXPECT_EQ(loaded.firstSample(4), (FieldSample{0, 0}));
    EXPECT_EQ(Arrays::shared()->Length(FieldSamples::shared()->FilterValid(loaded.firstSample)), 2);
    EXPECT_EQ(Arrays::shared()->Length(loaded.secondSample), 0);
}

TEST_P(PivotEvaluationsTest, ExistsTellsWhetherAnyEvaluationMatches) {
    EXPECT_FALSE(evaluations().exists(con, "name = 'missing'"));
    const PivotEvaluation saved = savedEvaluation("present");
    EXPECT_TRUE(evaluations().exists(con, "name = 'present'"));
    EXPECT_TRUE(evaluations().exists(con, "id = " + std::to_string(saved.id)));
    EXPECT_FALSE(evaluations().exists(con, "name = 'missing'"));
}

TEST_P(PivotEvaluationsTest, FindWithoutAMatchRaisesTheEmptyResultError) {
    savedEvaluation("present");
    EXPECT_RAISES(evaluations().find(con, "name = 'missing'"), RuntimeError::DataAccess);
}

TEST_P(PivotEvaluationsTest, FindReturnsTheFirstOfSeveralMatches) {
    const PivotEvaluation first = savedEvaluation("twin");
    savedEvaluation("twin");
    EXPECT_EQ(evaluations().find(con, "name = 'twin' ORDER BY id").id, first.id);
}

TEST_P(PivotEvaluationsTest, BadConditionsPassTheDatabaseErrorOn) {
    EXPECT_RAISES(evaluations().exists(con, "no_such_column = 1"), RuntimeError::DatabaseEngine);
    EXPECT_RAISES(evaluations().find(con, "no_such_column = 1"), RuntimeError::DatabaseEngine);
}

TEST_P(PivotEvaluationsTest, DestroyDeletesOnlyItsRow) {
    const PivotEvaluation kept = savedEvaluation("kept");
    const PivotEvaluation removed = savedEvaluation("removed");
    evaluations().destroy(con, removed);
    EXPECT_FALSE(evaluations().exists(con, "name = 'removed'"));
    EXPECT_TRUE(evaluations().exists(con, "id = " + std::to_string(kept.id)));
    EXPECT_EQ(sortedNames(evaluations().Enumerate(con)), (std::vector<std::string>{"kept"}));
}

TEST_P(PivotEvaluationsTest, AFailedInsertWritesNothingAndKeepsTheId) {
    savedEvaluation("existing");
    const auto before = tableContents();
    refuseEvery("INSERT");

    PivotEvaluation evaluation = fullEvaluation("refused");
    EXPECT_RAISES(evaluations().save(con, evaluation), RuntimeError::DatabaseEngine);
    EXPECT_EQ(evaluation.id, 0);
    EXPECT_EQ(tableContents(), before);
}

TEST_P(PivotEvaluationsTest, AFailedUpdateLeavesTheRowAsItWas) {
    PivotEvaluation evaluation = savedEvaluation("existing");
    const Long id = evaluation.id;
    const auto before = tableContents();
    refuseEvery("UPDATE");

    evaluation.name = "changed";
    evaluation.firstSample = readingList({{9, 9}});
    EXPECT_RAISES(evaluations().save(con, evaluation), RuntimeError::DatabaseEngine);
    EXPECT_EQ(evaluation.id, id);
    EXPECT_EQ(tableContents(), before);
}

TEST_P(PivotEvaluationsTest, ANameWithAnApostropheBreaksTheStatementAndRunsNothingElse) {
    savedEvaluation("existing");
    const auto before = tableContents();

    PivotEvaluation evaluation = fullEvaluation("x'); DELETE FROM pivot_evaluations; --");
    EXPECT_RAISES(evaluations().save(con, evaluation), DatabaseError::SyntaxError);
    EXPECT_EQ(evaluation.id, 0);
    EXPECT_EQ(tableContents(), before);

    PivotEvaluation plain = fullEvaluation("O'Brien");
    EXPECT_NE(caudalis::testing::raisedNumber([&] { evaluations().save(con, plain); }), 0);
    EXPECT_EQ(plain.id, 0);
    EXPECT_EQ(tableContents(), before);
}

TEST_P(PivotEvaluationsTest, TheHostsTransactionAndConnectionAreLeftToTheHost) {
    con.BeginTrans();
    PivotEvaluation evaluation = fullEvaluation("in a transaction");
    evaluations().save(con, evaluation);
    EXPECT_TRUE(evaluations().exists(con, "name = 'in a transaction'"));
    con.RollbackTrans();

    EXPECT_TRUE(con.isOpen());
    EXPECT_FALSE(evaluations().exists(con, "name = 'in a transaction'"));
    EXPECT_EQ(Arrays::shared()->Length(evaluations().Enumerate(con)), 0);
}

INSTANTIATE_TEST_SUITE_P(Engines, PivotEvaluationsTest, caudalis::testing::allEngines(),
                         caudalis::testing::EngineNamer());
