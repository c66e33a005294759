#include <gtest/gtest.h>

#include "../../src/catalogue/CatalogueRows.hpp"
#include "ErrorMatchers.hpp"
#include "LocaleGuard.hpp"
#include "MachineFixtures.hpp"
#include "PersistenceDatabases.hpp"
#include "caudalis/catalogue/AspersoresStatic.hpp"
#include "caudalis/core/Errors.hpp"
#include "caudalis/core/NumberText.hpp"
#include "caudalis/core/Statics.hpp"
#include "caudalis/db/DatabaseErrors.hpp"

using namespace caudalis;
using namespace caudalis::testing;

namespace {

constexpr std::int32_t missingBrandName = -2147220704;
constexpr std::int32_t missingModelName = -2147220804;
constexpr std::int32_t brandIsNew = -2147220803;
constexpr std::int32_t missingSprinklerData = -2147221004;

class CatalogueDatabase : public ::testing::TestWithParam<TestEngine> {
protected:
    explicit CatalogueDatabase(bool sample = true) : databases(GetParam(), sample) {}

    std::shared_ptr<Aspersor> aspersorAt(const CollectionRef& list, Long index) const {
        return list->objectAt<Aspersor>(index);
    }

    /// A nozzle of a model and brand given by their records.
    std::shared_ptr<Aspersor> nozzleOf(const modelo& model, const String& name = "Nozzle 7",
                                       Double a = 0.0125, Double b = 0.5) const {
        return catalogue.newAspersor(name, a, b, 100, 300, 0.1, 0.3, model);
    }

    static modelo newModel(const String& name = "New model", const String& brand = "New brand") {
        modelo model;
        model.nome = name;
        model.marca.nome = brand;
        return model;
    }

    double count(const std::string& table) const {
        return databases.catalogueNumber("SELECT count(*) FROM " + table);
    }

    PersistenceDatabases databases;
    AspersoresStatic catalogue;
};

class EmptyCatalogueDatabase : public CatalogueDatabase {
protected:
    EmptyCatalogueDatabase() : CatalogueDatabase(false) {}
};

TEST(CatalogueStatements, NozzleSelectIsBuiltFromTheColumnsAndTheNestedJoins) {
    EXPECT_EQ(nozzleColumns(),
              "b.ID_Boquillas, b.denominacion, b.a, b.b,b.pmin, b.pmax,b.qmin, b.qmax,"
              "modelos.id_modelo as modelos_id_modelo,modelos.id_marca as modelos_id_marca,modelos.modelo as "
              "modelos_modelo,marca.id_marca as marca_id_marca, marca.nome as marca_nome");
    EXPECT_EQ(&nozzleColumns(), &nozzleColumns());
    EXPECT_EQ(nozzleJoinOperands().lbound(), 0);
    EXPECT_EQ(nozzleSelect(),
              "SELECT " + nozzleColumns() +
                  " FROM ((Boquillas AS b INNER JOIN Modelos ON b.id_modelo=modelos.id_modelo) "
                  "INNER JOIN Marca ON modelos.id_marca=marca.id_marca)");
}

TEST_P(CatalogueDatabase, FindReadsEveryNozzleWithItsModelAndBrand) {
    const auto all = catalogue.find(databases.catalogueConnection());
    ASSERT_EQ(all->Count(), 398);
    const auto first = aspersorAt(all, 1);
    const auto stored = databases.catalogueRows(
        "SELECT b.ID_Boquillas, b.denominacion, m.id_modelo, m.modelo, m.id_marca, r.nome FROM Boquillas b, "
        "Modelos m, marca r WHERE b.id_modelo = m.id_modelo AND m.id_marca = r.id_marca AND b.ID_Boquillas "
        "= " +
        std::to_string(first->id()));
    ASSERT_EQ(stored.size(), 1u);
    EXPECT_EQ(stored[0], std::to_string(first->id()) + "|" + first->nome() + "|" +
                             std::to_string(first->modelo().id) + "|" + first->modelo().nome + "|" +
                             std::to_string(first->modelo().marca_id) + "|" + first->marca().nome);
    EXPECT_EQ(first->modelo().marca_id, first->marca().id);
    EXPECT_GT(first->id(), 0);
    EXPECT_DOUBLE_EQ(first->pmin(),
                     databases.catalogueNumber("SELECT pmin FROM Boquillas WHERE ID_Boquillas=" +
                                               std::to_string(first->id())));
    EXPECT_EQ(first->a(), formatNumber(databases.catalogueNumber(
                              "SELECT a FROM Boquillas WHERE ID_Boquillas=" + std::to_string(first->id()))));
}

TEST_P(CatalogueDatabase, FindByBrandAndByModelFilterByName) {
    const auto aquarion = catalogue.find_by_marca(databases.catalogueConnection(), "Aquarion");
    ASSERT_GT(aquarion->Count(), 0);
    EXPECT_EQ(aquarion->Count(),
              databases.catalogueNumber("SELECT count(*) FROM Boquillas b, Modelos m, marca r "
                                        "WHERE b.id_modelo=m.id_modelo AND m.id_marca=r.id_marca "
                                        "AND r.nome='Aquarion'"));
    for (const Variant& item : *aquarion) {
        EXPECT_EQ(item.toObject<Aspersor>()->marca().nome, "Aquarion");
    }
    const auto rotator = catalogue.find_by_modelo(databases.catalogueConnection(), "R3000 Rotator");
    ASSERT_GT(rotator->Count(), 0);
    for (const Variant& item : *rotator) {
        EXPECT_EQ(item.toObject<Aspersor>()->modelo().nome, "R3000 Rotator");
    }
}

TEST_P(CatalogueDatabase, FindByAnUnknownBrandIsEmpty) {
    EXPECT_EQ(catalogue.find_by_marca(databases.catalogueConnection(), "Nobody")->Count(), 0);
    EXPECT_EQ(catalogue.find_by_modelo(databases.catalogueConnection(), "Nothing")->Count(), 0);
}

TEST_P(CatalogueDatabase, NamesArePlacedWithoutDoublingQuotes) {
    EXPECT_RAISES(catalogue.find_by_marca(databases.catalogueConnection(), "O'Neil"),
                  DatabaseError::SyntaxError);
}

TEST_P(CatalogueDatabase, AnIncompleteRowAbortsTheWholeRead) {
    databases.executeOnCatalogue(
        "INSERT INTO Boquillas (denominacion,a,b,pmin,pmax,qmin,qmax,id_modelo) VALUES "
        "('Broken',0,0.5,1,2,1,2,1)");
    EXPECT_RAISES(catalogue.find(databases.catalogueConnection()), missingSprinklerData);
}

TEST_P(CatalogueDatabase, ANullNumberPassesTheConversionError) {
    databases.executeOnCatalogue(
        "INSERT INTO Boquillas (denominacion,a,b,pmin,pmax,qmin,qmax,id_modelo) VALUES "
        "('Null',null,0.5,1,2,1,2,1)");
    EXPECT_RAISES(catalogue.find(databases.catalogueConnection()), RuntimeError::InvalidUseOfNull);
}

TEST_P(CatalogueDatabase, AFailedOpenPassesUnchanged) {
    EXPECT_RAISES(catalogue.find("Provider=Nothing;Data Source=x"), 3706);
}

TEST_P(CatalogueDatabase, BrandsAndModelsAreListedAsRecords) {
    const auto brands = catalogue.MarcasAll(databases.catalogueConnection());
    ASSERT_EQ(brands->Count(), 4);
    EXPECT_EQ(brands->Item(1).toRecord<marca>(), (marca{1, "Aquarion"}));
    EXPECT_EQ(brands->Item(4).toRecord<marca>(), (marca{4, "Vellora"}));
    const auto models = catalogue.ModelosAll(databases.catalogueConnection());
    ASSERT_EQ(models->Count(), 12);
    for (const Variant& item : *models) {
        const modelo& model = item.toRecord<modelo>();
        EXPECT_EQ(model.marca_id, model.marca.id);
        EXPECT_FALSE(model.marca.nome.empty());
    }
    const modelo first = models->Item(1).toRecord<modelo>();
    EXPECT_EQ(first.nome, "LDN-360 Spray");
    EXPECT_EQ(first.marca, (marca{1, "Aquarion"}));
}

TEST_P(EmptyCatalogueDatabase, EmptyCatalogueGivesEmptyCollections) {
    EXPECT_EQ(catalogue.find(databases.catalogueConnection())->Count(), 0);
    EXPECT_EQ(catalogue.MarcasAll(databases.catalogueConnection())->Count(), 0);
    EXPECT_EQ(catalogue.ModelosAll(databases.catalogueConnection())->Count(), 0);
}

TEST_P(EmptyCatalogueDatabase, SavingWithANewModelAndBrandInsertsBrandThenModelThenNozzle) {
    const auto nozzle = nozzleOf(newModel());
    catalogue.save(databases.catalogueConnection(), *nozzle);
    EXPECT_EQ(databases.catalogueRows("SELECT id_marca, nome FROM marca"), TableRows{"1|New brand"});
    EXPECT_EQ(databases.catalogueRows("SELECT id_modelo, id_marca, modelo FROM Modelos"),
              TableRows{"1|1|New model"});
    EXPECT_EQ(databases.catalogueRows(
                  "SELECT denominacion, a, b, pmin, pmax, qmin, qmax, id_modelo FROM Boquillas"),
              TableRows{"Nozzle 7|0.0125|0.5|100|300|0.1|0.3|1"});
    const auto loaded = catalogue.find(databases.catalogueConnection());
    ASSERT_EQ(loaded->Count(), 1);
    EXPECT_EQ(aspersorAt(loaded, 1)->modelo().nome, "New model");
    EXPECT_EQ(aspersorAt(loaded, 1)->marca(), (marca{1, "New brand"}));
}

TEST_P(EmptyCatalogueDatabase, SavingKeepsTheCallersKeysSoASecondSaveStoresAgain) {
    const auto nozzle = nozzleOf(newModel());
    catalogue.save(databases.catalogueConnection(), *nozzle);
    EXPECT_EQ(nozzle->id(), 0);
    EXPECT_EQ(nozzle->modelo().id, 0);
    EXPECT_EQ(nozzle->marca().id, 0);
    catalogue.save(databases.catalogueConnection(), *nozzle);
    EXPECT_EQ(count("marca"), 2);
    EXPECT_EQ(count("Modelos"), 2);
    EXPECT_EQ(count("Boquillas"), 2);
    EXPECT_EQ(databases.catalogueRows("SELECT id_marca FROM Modelos ORDER BY id_modelo"),
              (TableRows{"1", "2"}));
}

TEST_P(CatalogueDatabase, SavingWithAStoredModelOfItsBrandInsertsOnlyTheNozzle) {
    modelo model = newModel("R3000 Rotator", "Aquarion");
    model.id = 5;
    model.marca.id = 1;
    model.marca_id = 1;
    const TableDump before = databases.dumpCatalogue();
    catalogue.save(databases.catalogueConnection(), *nozzleOf(model));
    const TableDump after = databases.dumpCatalogue();
    EXPECT_EQ(after.at("marca"), before.at("marca"));
    EXPECT_EQ(after.at("Modelos"), before.at("Modelos"));
    EXPECT_EQ(after.at("Boquillas").size(), before.at("Boquillas").size() + 1);
    EXPECT_EQ(databases.catalogueNumber("SELECT id_modelo FROM Boquillas ORDER BY ID_Boquillas DESC"), 5);
}

TEST_P(CatalogueDatabase, AStoredModelWhoseBrandKeyDiffersIsInsertedAgain) {
    modelo model = newModel("R3000 Rotator", "Aquarion");
    model.id = 5;
    model.marca.id = 1;
    model.marca_id = 2;
    catalogue.save(databases.catalogueConnection(), *nozzleOf(model));
    EXPECT_EQ(count("marca"), 4);
    EXPECT_EQ(count("Modelos"), 13);
    EXPECT_EQ(databases.catalogueRows("SELECT id_modelo, id_marca, modelo FROM Modelos WHERE id_modelo = 13"),
              TableRows{"13|1|R3000 Rotator"});
    EXPECT_EQ(databases.catalogueNumber("SELECT id_modelo FROM Boquillas ORDER BY ID_Boquillas DESC"), 13);
}

TEST_P(CatalogueDatabase, AStoredBrandIsNotInsertedAgain) {
    modelo model = newModel("Brand new model", "Nimbra");
    model.marca.id = 3;
    catalogue.save(databases.catalogueConnection(), *nozzleOf(model));
    EXPECT_EQ(count("marca"), 4);
    EXPECT_EQ(databases.catalogueRows("SELECT id_marca FROM Modelos WHERE modelo = 'Brand new model'"),
              TableRows{"3"});
}

TEST_P(CatalogueDatabase, ABlankBrandNameRaisesBeforeAnyInsert) {
    const TableDump before = databases.dumpCatalogue();
    EXPECT_RAISES(catalogue.save(databases.catalogueConnection(), *nozzleOf(newModel("Model", " \t "))),
                  missingBrandName);
    EXPECT_EQ(databases.dumpCatalogue(), before);
}

TEST_P(CatalogueDatabase, ABlankModelNameRaisesAndLeavesTheNewBrandUnwritten) {
    const TableDump before = databases.dumpCatalogue();
    EXPECT_RAISES(catalogue.save(databases.catalogueConnection(), *nozzleOf(newModel("  "))),
                  missingModelName);
    EXPECT_EQ(databases.dumpCatalogue(), before);
}

TEST_P(CatalogueDatabase, ABrandStillNewAfterSavingRaises) {
    // The database ignores the brand insert, so no key is generated for it.
    databases.ignoreInsertsOnCatalogue("marca");
    const TableDump before = databases.dumpCatalogue();
    EXPECT_RAISES(catalogue.save(databases.catalogueConnection(), *nozzleOf(newModel())), brandIsNew);
    EXPECT_EQ(databases.dumpCatalogue(), before);
}

TEST_P(CatalogueDatabase, AFailedSaveLeavesTheCatalogueUnchanged) {
    databases.refuseOnCatalogue("Boquillas", "INSERT");
    const TableDump before = databases.dumpCatalogue();
    EXPECT_RAISES(catalogue.save(databases.catalogueConnection(), *nozzleOf(newModel())),
                  RuntimeError::DatabaseEngine);
    EXPECT_EQ(databases.dumpCatalogue(), before);
}

TEST_P(CatalogueDatabase, AnApostropheInANameMakesTheInsertFailWithoutWriting) {
    const TableDump before = databases.dumpCatalogue();
    EXPECT_RAISES(catalogue.save(databases.catalogueConnection(), *nozzleOf(newModel("Model", "O'Neil"))),
                  DatabaseError::SyntaxError);
    EXPECT_EQ(databases.dumpCatalogue(), before);
}

TEST_P(EmptyCatalogueDatabase, InsertedNumbersUseAPointInACommaLocale) {
    DecimalSeparatorGuard comma(',');
    catalogue.save(databases.catalogueConnection(), *nozzleOf(newModel(), "Comma", 0.0125, 0.52));
    EXPECT_EQ(databases.catalogueNumber("SELECT a FROM Boquillas"), 0.0125);
    EXPECT_EQ(databases.catalogueNumber("SELECT b FROM Boquillas"), 0.52);
    EXPECT_EQ(databases.catalogueNumber("SELECT qmin FROM Boquillas"), 0.1);
    const auto loaded = catalogue.find(databases.catalogueConnection());
    ASSERT_EQ(loaded->Count(), 1);
    EXPECT_EQ(aspersorAt(loaded, 1)->a(), "0,0125");
}

TEST_P(CatalogueDatabase, TheStaticsCatalogueReadsTheDatabase) {
    const auto all = Statics::application()->Aspersores()->find(databases.catalogueConnection());
    EXPECT_EQ(all->Count(), 398);
}

INSTANTIATE_TEST_SUITE_P(Engines, CatalogueDatabase, allEngines(), EngineNamer());
INSTANTIATE_TEST_SUITE_P(Engines, EmptyCatalogueDatabase, allEngines(), EngineNamer());

}  // namespace
