#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "ChartFixture.hpp"
#include "ErrorMatchers.hpp"
#include "caudalis/core/Error.hpp"
#include "caudalis/db/Connection.hpp"
#include "caudalis/db/DatabaseErrors.hpp"
#include "caudalis/evaluation/PivotEvaluations.hpp"
#include "caudalis/evaluation/Pluviometros.hpp"

using namespace caudalis;
using namespace caudalis::testing;

namespace {

/// A name that tries to change what a statement does, and whether it must be refused: every name
/// that could end its literal must fail; the others may be stored, but then exactly as given.
struct HostileName {
    const char* label;
    std::string text;
    bool mustFail;
};

std::vector<HostileName> hostileNames() {
    return {
        {"QuoteComment", "x' --", true},
        {"QuoteBlockComment", "x' /*", true},
        {"QuoteOr", "x' OR '1'='1", true},
        {"QuoteAnd", "x' AND '1'='1", true},
        {"StackedStatements", "x'; DELETE FROM tb_cartas; DELETE FROM Boquillas; SELECT '1", true},
        {"ExtraAssignment", "x', id_sistema='99", true},
        {"ExtraRow", "x'), ('y", true},
        {"LoneQuote", "'", true},
        {"QuestionMark", "a?b", false},
        {"Nul", std::string("a\0b", 3), true},
        {"TenThousandCharacters", std::string(10000, 'n'), false},
        {"TenThousandWithAQuote", std::string(5000, 'n') + "'" + std::string(4999, 'n'), true},
        {"InvalidUtf8", "\xff\xfe\xc3(", false},
    };
}

std::string labelOf(const ::testing::TestParamInfo<HostileName>& info) {
    return info.param.label;
}

class HostileNames : public ::testing::TestWithParam<HostileName>, public ChartFixture {
protected:
    HostileNames() {
        existing = fullChart("Existing");
        saveAsNew(*existing);
        auto other = fullChart("Other");
        saveAsNew(*other, 8);
        project.Open(databases.projectConnection());
        evaluation = PivotEvaluations::shared()->newEvaluation("North field");
        evaluation.pluviometer = Pluviometros::shared()->newPluviometro(0.2);
        evaluation.firstSample = BoundedArray<FieldSample>::of({{125.5, 37}, {0, 40}});
        PivotEvaluations::shared()->save(project, evaluation);
        auto second = PivotEvaluations::shared()->newEvaluation("South field");
        PivotEvaluations::shared()->save(project, second);
    }

    const std::string& name() const { return GetParam().text; }

    /// Runs `change`, then checks the outcome: a failure leaves both databases byte for byte as
    /// they were; a success (allowed only for names that cannot end a literal) changes nothing
    /// but what `stored` reads back, which must be the name exactly.
    template <class Change, class Stored>
    void expectRefusedOrExact(Change change, Stored stored) {
        const TableDump projectBefore = databases.dumpProject();
        const TableDump catalogueBefore = databases.dumpCatalogue();
        const std::int32_t raised = raisedNumber(change);
        if (raised != 0 || GetParam().mustFail) {
            EXPECT_TRUE(raised == DatabaseError::SyntaxError ||
                        raised == DatabaseError::ParameterWithoutValue)
                << "raised " << raised;
            EXPECT_EQ(databases.dumpProject(), projectBefore);
            EXPECT_EQ(databases.dumpCatalogue(), catalogueBefore);
        } else {
            EXPECT_EQ(stored(), name());
        }
    }

    std::string storedChartName(Long id) const {
        return databases.projectRows("SELECT nome FROM tb_cartas WHERE id_carta=" + std::to_string(id)).at(0);
    }

    std::string storedEvaluationName(Long id) const {
        return databases.projectRows("SELECT name FROM pivot_evaluations WHERE id=" + std::to_string(id))
            .at(0);
    }

    /// The name column of the row added last to a catalogue table.
    std::string lastCatalogueName(const std::string& select) const {
        return databases.catalogueRows(select + " ORDER BY rowid DESC LIMIT 1").at(0);
    }

    std::shared_ptr<CartaAspersores> existing;
    AspersoresStatic sprinklers;
    Connection project;
    PivotEvaluation evaluation;
};

}  // namespace

TEST_P(HostileNames, RenamingAStoredChart) {
    existing->setNome(name());
    expectRefusedOrExact([&] { save(*existing); }, [&] { return storedChartName(existing->id()); });
}

TEST_P(HostileNames, SavingAChartAsNew) {
    auto chart = fullChart(name());
    expectRefusedOrExact([&] { saveAsNew(*chart); }, [&] { return storedChartName(chart->id()); });
}

TEST_P(HostileNames, RenamingAStoredEvaluation) {
    evaluation.name = name();
    expectRefusedOrExact([&] { PivotEvaluations::shared()->save(project, evaluation); },
                         [&] { return storedEvaluationName(evaluation.id); });
}

TEST_P(HostileNames, SavingANewEvaluation) {
    auto fresh = PivotEvaluations::shared()->newEvaluation(name());
    expectRefusedOrExact([&] { PivotEvaluations::shared()->save(project, fresh); },
                         [&] { return storedEvaluationName(fresh.id); });
}

TEST_P(HostileNames, ANozzleOfAStoredModel) {
    const auto model = nozzle(1)->modelo();
    const auto added = sprinklers.newAspersor(name(), 0.0125, 0.5, 100, 300, 0.1, 0.3, model);
    expectRefusedOrExact([&] { sprinklers.save(databases.catalogueConnection(), *added); },
                         [&] { return lastCatalogueName("SELECT denominacion FROM Boquillas"); });
}

TEST_P(HostileNames, ANewModelOfAStoredBrand) {
    modelo model;
    model.nome = name();
    model.marca = nozzle(1)->modelo().marca;
    const auto added = sprinklers.newAspersor("Nozzle 7", 0.0125, 0.5, 100, 300, 0.1, 0.3, model);
    expectRefusedOrExact([&] { sprinklers.save(databases.catalogueConnection(), *added); },
                         [&] { return lastCatalogueName("SELECT modelo FROM Modelos"); });
}

TEST_P(HostileNames, ANewBrand) {
    modelo model;
    model.nome = "Model 1";
    model.marca.nome = name();
    const auto added = sprinklers.newAspersor("Nozzle 7", 0.0125, 0.5, 100, 300, 0.1, 0.3, model);
    expectRefusedOrExact([&] { sprinklers.save(databases.catalogueConnection(), *added); },
                         [&] { return lastCatalogueName("SELECT nome FROM marca"); });
}

INSTANTIATE_TEST_SUITE_P(Names, HostileNames, ::testing::ValuesIn(hostileNames()), labelOf);
