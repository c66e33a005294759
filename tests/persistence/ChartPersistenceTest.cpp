#include <gtest/gtest.h>

#include "ChartFixture.hpp"
#include "ErrorMatchers.hpp"
#include "LocaleGuard.hpp"
#include "caudalis/charts/MountedAspersor.hpp"
#include "caudalis/core/Errors.hpp"
#include "caudalis/core/Factories.hpp"
#include "caudalis/core/Statics.hpp"
#include "caudalis/db/DatabaseErrors.hpp"
#include "caudalis/hydraulics/Drops.hpp"
#include "caudalis/hydraulics/ReguladorPression.hpp"
#include "caudalis/machine/CoordenadasSaidas.hpp"

using namespace caudalis;
using namespace caudalis::testing;

namespace {

constexpr std::int32_t nameTaken = -2147220504;

class ChartPersistence : public ::testing::TestWithParam<TestEngine>, public ChartFixture {
protected:
    ChartPersistence() : ChartFixture(GetParam()) {}

    static CoordenadasSaida at(Integer span, Integer outlet) {
        return CoordenadasSaidas::shared()->newTramoCoordenadas(span, outlet);
    }

    TableRows chartRows() const {
        return databases.projectRows("SELECT id_carta, nome, boost, id_sistema FROM tb_cartas");
    }
};

TEST_P(ChartPersistence, StaticsHandsOutOneChartPersistenceObjectPerStatics) {
    Statics one;
    Statics two;
    EXPECT_NE(one.CartaAspersor(), nullptr);
    EXPECT_EQ(one.CartaAspersor(), one.CartaAspersor());
    EXPECT_NE(one.CartaAspersor(), two.CartaAspersor());
}

TEST_P(ChartPersistence, NewMountedAspersorPairsTheOutletWithTheSprinkler) {
    const auto mounted = charts.newMountedAspersor(at(2, 5), nozzle(1));
    EXPECT_EQ(mounted->saida(), at(2, 5));
    EXPECT_EQ(mounted->Aspersor(), nozzle(1));
    EXPECT_EQ(mounted->id(), 0);
    EXPECT_FALSE(mounted->deleted());
}

TEST_P(ChartPersistence, SaveAsNewWritesEveryTable) {
    auto chart = fullChart("North field");
    saveAsNew(*chart);
    ASSERT_EQ(chart->id(), 1);
    EXPECT_EQ(chartRows(), TableRows{"1|North field|12.5|7"});
    EXPECT_EQ(databases.projectRows(
                  "SELECT tramo, saida, id_aspersor, id_carta FROM tb_aspersores ORDER BY id_aspersores"),
              (TableRows{"1|1|" + std::to_string(nozzle(3)->id()) + "|1",
                         "2|1|" + std::to_string(nozzle(11)->id()) + "|1",
                         "-1|-1|" + std::to_string(nozzle(398)->id()) + "|1"}));
    EXPECT_EQ(databases.projectRows("SELECT * FROM tb_reguladores"),
              (TableRows{"1|1|137.5|2.25|0.125|1", "1|2|103.4|1.5|0.05|0"}));
    EXPECT_EQ(databases.projectRows("SELECT id_carta, numero_horas, numero_obturadas FROM tb_indicadores"),
              TableRows{"1|22.5|3"});
    EXPECT_EQ(databases.projectRows(
                  "SELECT id_carta, distCentro1, distCentro2, Dmoj1, Dmoj2, k, a FROM tb_pluviometria"),
              TableRows{"1|120.5|310.75|18.25|21.5|0.0625|0.75"});
    EXPECT_EQ(databases.projectRows("SELECT * FROM tb_drop"), TableRows{"2.75|19.5|2|1|1"});
}

TEST_P(ChartPersistence, FindRebuildsTheSavedChart) {
    auto chart = fullChart("North field");
    saveAsNew(*chart);
    const auto loaded = load(static_cast<Integer>(chart->id()));
    EXPECT_EQ(loaded->id(), chart->id());
    EXPECT_EQ(loaded->getNome(), "North field");
    EXPECT_EQ(loaded->getEndGunBoost(), 12.5);
    ASSERT_EQ(loaded->mountedAspersores()->Count(), 3);
    for (const auto& [coordinates, position] :
         {std::pair{at(1, 1), 3}, std::pair{at(2, 1), 11},
          std::pair{CoordenadasSaidas::shared()->newEndGunCoordenadas(), 398}}) {
        const auto mounted = loaded->mountedAspersorAt(coordinates);
        ASSERT_NE(mounted, nullptr);
        EXPECT_EQ(mounted->Aspersor()->id(), nozzle(position)->id());
        EXPECT_EQ(mounted->Aspersor()->a(), nozzle(position)->a());
        EXPECT_EQ(mounted->Aspersor()->modelo(), nozzle(position)->modelo());
        EXPECT_GT(mounted->id(), 0);
    }
    EXPECT_FALSE(loaded->hasMountedAspersorAt(at(1, 2)));
    EXPECT_EQ(loaded->mountedAspersorAt(at(1, 1))->id(),
              databases.projectNumber("SELECT id_aspersores FROM tb_aspersores WHERE tramo=1 AND saida=1"));
    const auto regulators = loaded->getReguladores();
    ASSERT_EQ(regulators->Count(), 2);
    const auto first = regulators->objectAt<ReguladorPression>(1);
    EXPECT_EQ(first->tramo(), 1);
    EXPECT_EQ(first->pression(), 137.5);
    EXPECT_EQ(first->maximum_caudal(), 2.25);
    EXPECT_EQ(first->minimum_caudal(), 0.125);
    EXPECT_TRUE(first->installed());
    EXPECT_FALSE(regulators->objectAt<ReguladorPression>(2)->installed());
    EXPECT_EQ(loaded->getDrop(), chart->getDrop());
    EXPECT_EQ(loaded->getDrop().pipe_material.name, "Polyethylene");
    const indicadores figures = loaded->getIndicadores();
    EXPECT_EQ(figures.horasRevolucao, 22.5);
    EXPECT_EQ(figures.numeroSaidasObturadas, 3);
    EXPECT_EQ(figures.id, databases.projectNumber("SELECT id_indicadores FROM tb_indicadores"));
}

TEST_P(ChartPersistence, LoadedPluviometrySamplesCarryTheFixedCodes) {
    auto chart = fullChart("North field");
    saveAsNew(*chart);
    const PluviometryCheck check = load(static_cast<Integer>(chart->id()))->getPluviometriaCheck();
    EXPECT_EQ(check.firstSample, makePivotSample(120.5, 18.25, "first_sample"));
    EXPECT_EQ(check.secondSample, makePivotSample(310.75, 21.5, "second_sample"));
    EXPECT_EQ(check.kostiakov, makeKostiakovParameters(0.0625, 0.75));
}

TEST_P(ChartPersistence, ACatalogueInAFolderWithBlanksIsJoined) {
    ASSERT_NE(databases.cataloguePath().find(' '), std::string::npos);
    auto chart = fullChart("Blank path");
    saveAsNew(*chart);
    EXPECT_EQ(load(static_cast<Integer>(chart->id()))->mountedAspersores()->Count(), 3);
}

TEST_P(ChartPersistence, ASprinklerMissingFromTheCatalogueIsLeftOut) {
    auto chart = fullChart("Inner join");
    saveAsNew(*chart);
    databases.executeOnCatalogue("DELETE FROM Boquillas WHERE ID_Boquillas=" +
                                 std::to_string(nozzle(3)->id()));
    const auto loaded = load(static_cast<Integer>(chart->id()));
    EXPECT_EQ(loaded->mountedAspersores()->Count(), 2);
    EXPECT_FALSE(loaded->hasMountedAspersorAt(at(1, 1)));
}

TEST_P(ChartPersistence, FindOfAnUnknownIdGivesAnEmptyChart) {
    const auto loaded = load(42);
    EXPECT_EQ(loaded->id(), 0);
    EXPECT_EQ(loaded->getNome(), "");
    EXPECT_EQ(loaded->mountedAspersores()->Count(), 0);
    EXPECT_TRUE(loaded->getDrop().p_is_null);
}

TEST_P(ChartPersistence, FindOfAChartWithoutIndicatorsRaisesTheDataAccessError) {
    auto chart = fullChart("No indicators");
    saveAsNew(*chart);
    databases.executeOnProject("DELETE FROM tb_indicadores");
    EXPECT_RAISES(load(static_cast<Integer>(chart->id())), RuntimeError::DataAccess);
}

TEST_P(ChartPersistence, FindOfAChartWithoutPluviometryRaisesTheDataAccessError) {
    auto chart = fullChart("No pluviometry");
    saveAsNew(*chart);
    databases.executeOnProject("DELETE FROM tb_pluviometria");
    EXPECT_RAISES(load(static_cast<Integer>(chart->id())), RuntimeError::DataAccess);
}

TEST_P(ChartPersistence, ANullBoostLoadsAsZero) {
    auto chart = fullChart("No boost");
    saveAsNew(*chart);
    databases.executeOnProject("UPDATE tb_cartas SET boost = null");
    EXPECT_EQ(load(static_cast<Integer>(chart->id()))->getEndGunBoost(), 0);
}

TEST_P(ChartPersistence, AChartWithoutDropLoadsTheNullDropAndNoRegulators) {
    auto chart = fullChart("Bare");
    chart->setDrop(Drops::shared()->createNull());
    chart->setReguladores(Collection::create());
    saveAsNew(*chart);
    EXPECT_EQ(rowsOfChart("tb_drop", chart->id()), 0);
    const auto loaded = load(static_cast<Integer>(chart->id()));
    EXPECT_EQ(loaded->getDrop(), Drops::shared()->createNull());
    EXPECT_EQ(loaded->getReguladores()->Count(), 0);
}

TEST_P(ChartPersistence, DuplicateNameOnInsertionRaisesAndWritesNothing) {
    auto existing = fullChart("A");
    saveAsNew(*existing);
    const TableDump before = databases.dumpProject();
    auto second = fullChart("A");
    EXPECT_RAISES(save(*second), nameTaken);
    EXPECT_EQ(second->id(), 0);
    EXPECT_EQ(databases.dumpProject(), before);
}

TEST_P(ChartPersistence, DuplicateNameThroughSaveAsNewRestoresTheCallersId) {
    auto existing = fullChart("A");
    saveAsNew(*existing);
    auto copy = fullChart("A");
    copy->id(existing->id());
    const TableDump before = databases.dumpProject();
    EXPECT_RAISES(saveAsNew(*copy), nameTaken);
    EXPECT_EQ(copy->id(), existing->id());
    EXPECT_EQ(databases.dumpProject(), before);
    copy->id(1234);
    EXPECT_RAISES(saveAsNew(*copy), nameTaken);
    EXPECT_EQ(copy->id(), 1234);
}

TEST_P(ChartPersistence, TheSameNameInAnotherSystemIsFree) {
    auto first = fullChart("A");
    saveAsNew(*first, 7);
    auto second = fullChart("A");
    saveAsNew(*second, 8);
    EXPECT_EQ(second->id(), 2);
}

TEST_P(ChartPersistence, SaveAsNewStoresACopy) {
    auto chart = fullChart("Original");
    saveAsNew(*chart);
    chart->setNome("Copy");
    saveAsNew(*chart);
    EXPECT_EQ(chart->id(), 2);
    EXPECT_EQ(chartRows(), (TableRows{"1|Original|12.5|7", "2|Copy|12.5|7"}));
    EXPECT_EQ(rowsOfChart("tb_aspersores", 1), 3);
    EXPECT_EQ(rowsOfChart("tb_aspersores", 2), 3);
}

TEST_P(ChartPersistence, RenamingAnExistingChartToATakenNameIsAccepted) {
    auto first = fullChart("A");
    saveAsNew(*first);
    auto second = fullChart("B");
    saveAsNew(*second);
    second->setNome("A");
    second->setEndGunBoost(3.5);
    save(*second);
    EXPECT_EQ(second->id(), 2);
    EXPECT_EQ(chartRows(), (TableRows{"1|A|12.5|7", "2|A|3.5|7"}));
}

TEST_P(ChartPersistence, SavingTwiceKeepsOneRowPerLiveSprinklerAndOneOfEachRecord) {
    auto chart = fullChart("Twice");
    saveAsNew(*chart);
    const double firstIndicatorsId = databases.projectNumber("SELECT id_indicadores FROM tb_indicadores");
    save(*chart);
    EXPECT_EQ(chart->id(), 1);
    EXPECT_EQ(chartRows().size(), 1u);
    EXPECT_EQ(rowsOfChart("tb_aspersores", 1), 3);
    EXPECT_EQ(rowsOfChart("tb_indicadores", 1), 1);
    EXPECT_EQ(rowsOfChart("tb_pluviometria", 1), 1);
    EXPECT_EQ(rowsOfChart("tb_reguladores", 1), 2);
    EXPECT_EQ(rowsOfChart("tb_drop", 1), 1);
    EXPECT_NE(databases.projectNumber("SELECT id_indicadores FROM tb_indicadores"), firstIndicatorsId);
}

TEST_P(ChartPersistence, SavingALoadedChartWithARemovedSprinklerDropsItsRow) {
    auto chart = fullChart("Edited");
    saveAsNew(*chart);
    auto loaded = load(static_cast<Integer>(chart->id()));
    loaded->removeAspersorAt(at(2, 1));
    save(*loaded);
    EXPECT_EQ(databases.projectRows("SELECT tramo, saida FROM tb_aspersores ORDER BY id_aspersores"),
              (TableRows{"1|1", "-1|-1"}));
}

TEST_P(ChartPersistence, AnIdWithoutARowInTheSystemIsSavedAsANewChart) {
    auto chart = fullChart("Elsewhere");
    saveAsNew(*chart, 7);
    save(*chart, 9);
    EXPECT_EQ(chart->id(), 2);
    EXPECT_EQ(chartRows(), (TableRows{"1|Elsewhere|12.5|7", "2|Elsewhere|12.5|9"}));
}

TEST_P(ChartPersistence, OtherChartsRowsAreLeftAlone) {
    auto first = fullChart("First");
    saveAsNew(*first);
    auto second = fullChart("Second");
    saveAsNew(*second);
    save(*first);
    for (const char* table :
         {"tb_aspersores", "tb_reguladores", "tb_indicadores", "tb_pluviometria", "tb_drop"}) {
        EXPECT_GT(rowsOfChart(table, 2), 0) << table;
    }
}

TEST_P(ChartPersistence, DestroyRemovesTheChartAndAllItsRowsOnly) {
    auto first = fullChart("First");
    saveAsNew(*first);
    auto second = fullChart("Second");
    saveAsNew(*second);
    charts.destroy(databases.projectConnection(), 1);
    for (const char* table :
         {"tb_cartas", "tb_aspersores", "tb_reguladores", "tb_indicadores", "tb_pluviometria", "tb_drop"}) {
        EXPECT_EQ(rowsOfChart(table, 1), 0) << table;
        EXPECT_GT(rowsOfChart(table, 2), 0) << table;
    }
    EXPECT_EQ(load(1)->id(), 0);
}

TEST_P(ChartPersistence, DestroyOfAnUnknownChartChangesNothing) {
    auto chart = fullChart("Kept");
    saveAsNew(*chart);
    const TableDump before = databases.dumpProject();
    charts.destroy(databases.projectConnection(), 99);
    EXPECT_EQ(databases.dumpProject(), before);
}

TEST_P(ChartPersistence, ASystemWithoutChartsHasNone) {
    EXPECT_FALSE(charts.AnyFor(databases.projectConnection(), 7));
    EXPECT_EQ(charts.enumerateAll(databases.projectConnection(), 7)->Count(), 0);
}

TEST_P(ChartPersistence, EnumerateAllListsTheSystemsChartsOnly) {
    for (const char* name : {"One", "Two"}) {
        auto chart = fullChart(name);
        saveAsNew(*chart, 7);
    }
    auto other = fullChart("Other");
    saveAsNew(*other, 8);
    EXPECT_TRUE(charts.AnyFor(databases.projectConnection(), 7));
    EXPECT_FALSE(charts.AnyFor(databases.projectConnection(), 9));
    const auto list = charts.enumerateAll(databases.projectConnection(), 7);
    ASSERT_EQ(list->Count(), 2);
    EXPECT_EQ(list->Item(1).toRecord<CartaInfo>(), (CartaInfo{"One", 1}));
    EXPECT_EQ(list->Item(2).toRecord<CartaInfo>(), (CartaInfo{"Two", 2}));
}

TEST_P(ChartPersistence, InsertedNumbersUseAPointInACommaLocale) {
    DecimalSeparatorGuard comma(',');
    auto chart = fullChart("Comma");
    saveAsNew(*chart);
    EXPECT_EQ(databases.projectNumber("SELECT boost FROM tb_cartas"), 12.5);
    EXPECT_EQ(databases.projectNumber("SELECT pression FROM tb_reguladores WHERE tramo=1"), 137.5);
    EXPECT_EQ(databases.projectNumber("SELECT caudal_min FROM tb_reguladores WHERE tramo=1"), 0.125);
    EXPECT_EQ(databases.projectNumber("SELECT numero_horas FROM tb_indicadores"), 22.5);
    EXPECT_EQ(databases.projectNumber("SELECT k FROM tb_pluviometria"), 0.0625);
    EXPECT_EQ(databases.projectNumber("SELECT diametro FROM tb_drop"), 19.5);
    const auto loaded = load(static_cast<Integer>(chart->id()));
    EXPECT_EQ(loaded->getEndGunBoost(), 12.5);
    EXPECT_EQ(loaded->getPluviometriaCheck().secondSample.distanceToCenter, 310.75);
}

TEST_P(ChartPersistence, AnApostropheInTheNameMakesTheStatementFail) {
    auto existing = fullChart("Existing");
    saveAsNew(*existing);
    const TableDump before = databases.dumpProject();
    auto chart = fullChart("O'Brien");
    EXPECT_NE(raisedNumber([&] { saveAsNew(*chart); }), 0);
    EXPECT_EQ(chart->id(), 0);
    EXPECT_EQ(databases.dumpProject(), before);
    existing->setNome("O'Brien");
    EXPECT_NE(raisedNumber([&] { save(*existing); }), 0);
    EXPECT_EQ(existing->id(), 1);
    EXPECT_EQ(databases.dumpProject(), before);
}

TEST_P(ChartPersistence, ABackslashInTheNameIsKeptAsItIs) {
    auto chart = fullChart("C:\\fields\\");
    saveAsNew(*chart);
    EXPECT_EQ(load(static_cast<Integer>(chart->id()))->getNome(), "C:\\fields\\");
    auto again = fullChart("C:\\fields\\");
    EXPECT_RAISES(saveAsNew(*again), nameTaken);
}

TEST_P(ChartPersistence, ANameCannotSmuggleASecondStatement) {
    auto existing = fullChart("Existing");
    saveAsNew(*existing);
    const TableDump before = databases.dumpProject();
    auto chart = fullChart("x'; DELETE FROM tb_cartas; SELECT '");
    EXPECT_RAISES(saveAsNew(*chart), DatabaseError::SyntaxError);
    EXPECT_EQ(databases.dumpProject(), before);
    existing->setNome("x'; DELETE FROM tb_aspersores; SELECT '");
    EXPECT_RAISES(save(*existing), DatabaseError::SyntaxError);
    EXPECT_EQ(databases.dumpProject(), before);
}

TEST_P(ChartPersistence, AChartIdAboveTheSixteenBitRangeOverflows) {
    databases.setLastProjectKey("tb_cartas", "id_carta", 40000);
    const TableDump before = databases.dumpProject();
    auto chart = fullChart("Far");
    EXPECT_RAISES(saveAsNew(*chart), RuntimeError::Overflow);
    EXPECT_EQ(chart->id(), 0);
    EXPECT_EQ(databases.dumpProject(), before);
    chart->id(40000);
    EXPECT_RAISES(saveAsNew(*chart), RuntimeError::Overflow);
    EXPECT_EQ(databases.dumpProject(), before);
}

TEST_P(ChartPersistence, TheHighestSixteenBitIdStillWorks) {
    databases.setLastProjectKey("tb_cartas", "id_carta", 32766);
    auto chart = fullChart("Edge");
    saveAsNew(*chart);
    EXPECT_EQ(chart->id(), 32767);
    EXPECT_EQ(load(32767)->mountedAspersores()->Count(), 3);
}

TEST_P(ChartPersistence, AnUnknownProviderPassesTheOpenError) {
    auto chart = fullChart("Nowhere");
    EXPECT_RAISES(charts.save("Provider=Nothing;Data Source=x", 7, *chart), 3706);
    EXPECT_RAISES(charts.find("Provider=Nothing;Data Source=x", databases.cataloguePath(), 1), 3706);
}

INSTANTIATE_TEST_SUITE_P(Engines, ChartPersistence, allEngines(), EngineNamer());

}  // namespace
