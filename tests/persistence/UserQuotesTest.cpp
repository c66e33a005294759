#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "ChartFixture.hpp"
#include "caudalis/core/Error.hpp"
#include "caudalis/db/Connection.hpp"
#include "caudalis/db/DatabaseErrors.hpp"
#include "caudalis/evaluation/PivotEvaluations.hpp"

using namespace caudalis;
using namespace caudalis::testing;

namespace {

/// The apostrophes a user types into a name: a doubled ASCII quote (an SQL habit) is refused,
/// since the statement would store it as one quote; the typographic apostrophe (U+2019) and the
/// modifier letter apostrophe (U+02BC) are ordinary text and are stored byte for byte.
const std::string doubled = "O''Brien";
const std::string curly =
    "O\xE2\x80\x99"
    "Brien";
const std::string modifier =
    "O\xCA\xBC"
    "Brien";

class UserQuotes : public ::testing::TestWithParam<TestEngine>, public ChartFixture {
protected:
    UserQuotes() : ChartFixture(GetParam()) { project.Open(databases.projectConnection()); }

    /// Expects `change` to be refused with a syntax error naming `field`, both databases
    /// unchanged.
    void expectRefused(const std::function<void()>& change, const std::string& field) {
        const TableDump projectBefore = databases.dumpProject();
        const TableDump catalogueBefore = databases.dumpCatalogue();
        try {
            change();
            ADD_FAILURE() << "a doubled quote was accepted for " << field;
        } catch (const Error& error) {
            EXPECT_EQ(error.number(), DatabaseError::SyntaxError) << error.description();
            EXPECT_NE(error.description().find("The value for " + field + " holds '"), std::string::npos)
                << error.description();
        }
        EXPECT_EQ(databases.dumpProject(), projectBefore);
        EXPECT_EQ(databases.dumpCatalogue(), catalogueBefore);
    }

    std::string lastCatalogueName(const std::string& column, const std::string& table) const {
        return databases
            .catalogueRows("SELECT " + column + " FROM " + table + " WHERE " + column + " LIKE 'O%Brien'")
            .at(0);
    }

    std::shared_ptr<Aspersor> nozzleNamed(const std::string& nozzle, const std::string& model,
                                          const std::string& brand) const {
        modelo named;
        named.nome = model;
        named.marca.nome = brand;
        return sprinklers.newAspersor(nozzle, 0.0125, 0.5, 100, 300, 0.1, 0.3, named);
    }

    Connection project;
    AspersoresStatic sprinklers;
};

}  // namespace

TEST_P(UserQuotes, ADoubledQuoteInAChartNameIsRefusedNamingTheField) {
    auto chart = fullChart(doubled);
    expectRefused([&] { saveAsNew(*chart); }, "nome");
    auto stored = fullChart("Stored");
    saveAsNew(*stored);
    stored->setNome(doubled);
    expectRefused([&] { save(*stored); }, "nome");
}

TEST_P(UserQuotes, ADoubledQuoteInAnEvaluationNameIsRefusedNamingTheField) {
    auto evaluation = PivotEvaluations::shared()->newEvaluation(doubled);
    expectRefused([&] { PivotEvaluations::shared()->save(project, evaluation); }, "name");
}

TEST_P(UserQuotes, ADoubledQuoteInACatalogueNameIsRefusedNamingTheField) {
    expectRefused([&] { sprinklers.save(databases.catalogueConnection(), *nozzleNamed(doubled, "M", "B")); },
                  "denominacion");
    expectRefused([&] { sprinklers.save(databases.catalogueConnection(), *nozzleNamed("N", doubled, "B")); },
                  "Modelo");
    expectRefused([&] { sprinklers.save(databases.catalogueConnection(), *nozzleNamed("N", "M", doubled)); },
                  "nome");
}

TEST_P(UserQuotes, TypographicApostrophesAreStoredByteForByte) {
    for (const auto& name : {curly, modifier}) {
        auto chart = fullChart(name);
        saveAsNew(*chart);
        EXPECT_EQ(load(static_cast<Integer>(chart->id()))->getNome(), name);
        EXPECT_EQ(
            databases.projectRows("SELECT nome FROM tb_cartas WHERE id_carta=" + std::to_string(chart->id()))
                .at(0),
            name);

        auto evaluation = PivotEvaluations::shared()->newEvaluation(name);
        PivotEvaluations::shared()->save(project, evaluation);
        EXPECT_EQ(
            databases
                .projectRows("SELECT name FROM pivot_evaluations WHERE id=" + std::to_string(evaluation.id))
                .at(0),
            name);

        sprinklers.save(databases.catalogueConnection(), *nozzleNamed(name, name, name));
        EXPECT_EQ(lastCatalogueName("denominacion", "Boquillas"), name);
        EXPECT_EQ(lastCatalogueName("modelo", "Modelos"), name);
        EXPECT_EQ(lastCatalogueName("nome", "marca"), name);
        // The next round's names must be the only ones matching.
        for (const char* cleanup : {"DELETE FROM Boquillas WHERE denominacion LIKE 'O%Brien'",
                                    "DELETE FROM Modelos WHERE modelo LIKE 'O%Brien'",
                                    "DELETE FROM marca WHERE nome LIKE 'O%Brien'"}) {
            Connection catalogue(databases.catalogueConnection());
            catalogue.Open();
            catalogue.Execute(cleanup);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Engines, UserQuotes, allEngines(), EngineNamer());
