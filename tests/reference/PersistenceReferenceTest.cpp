#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <optional>

#include "LocaleGuard.hpp"
#include "MarchRecorder.hpp"
#include "OutputRecord.hpp"
#include "ReferenceFile.hpp"
#include "SeededDraws.hpp"
#include "ShippedDatabases.hpp"
#include "TemporaryFolder.hpp"
#include "caudalis/catalogue/AspersoresStatic.hpp"
#include "caudalis/charts/CartaAspersores.hpp"
#include "caudalis/charts/CartaAspersoresStatic.hpp"
#include "caudalis/charts/MountedAspersor.hpp"
#include "caudalis/core/Factories.hpp"
#include "caudalis/core/NumberText.hpp"
#include "caudalis/db/Connection.hpp"
#include "caudalis/db/SqlText.hpp"
#include "caudalis/hydraulics/Drops.hpp"
#include "caudalis/hydraulics/ReguladorPression.hpp"
#include "caudalis/machine/CoordenadasSaidas.hpp"

namespace caudalis::testing {
namespace {

constexpr long chartCount = 12;
constexpr long catalogueSize = 60;

/// A number with full precision in the SQL text of a test-side statement.
std::string exactText(double value) {
    char buffer[40];
    std::snprintf(buffer, sizeof buffer, "%.17g", value);
    return buffer;
}

/// A catalogue database of `catalogueSize` nozzles with coefficients of full precision, written
/// by plain statements.
void fillCatalogue(const std::string& connection, SeededDraws& draw) {
    Connection con(connection);
    con.Open();
    con.BeginTrans();
    con.Execute("INSERT INTO marca (nome) VALUES ('Brand');");
    con.Execute("INSERT INTO Modelos (Modelo,ID_Marca) VALUES ('Model',1);");
    for (long i = 1; i <= catalogueSize; ++i) {
        const double b = draw.uniform(0.45, 0.55);
        const double a = std::exp(draw.uniform(std::log(0.0005), std::log(0.2)));
        con.Execute("INSERT INTO Boquillas (denominacion,pmin,pmax,a,b,qmin,qmax,id_modelo) VALUES ('N" +
                    std::to_string(i) + "'," + exactText(draw.uniform(30, 100)) + "," +
                    exactText(draw.uniform(200, 450)) + "," + exactText(a) + "," + exactText(b) + "," +
                    exactText(draw.uniform(0.01, 0.1)) + "," + exactText(draw.uniform(0.5, 3)) + ",1);");
    }
    con.CommitTrans();
    con.Close();
}

std::shared_ptr<CartaAspersores> drawChart(SeededDraws& draw, const CollectionRef& catalogue, long number) {
    auto chart = makeCartaAspersores();
    chart->setNome("Chart " + std::to_string(number));
    chart->setEndGunBoost(draw.chance(0.2) ? 0.0 : draw.uniform(0, 60));
    const long sprinklers = draw.integer(0, 40);
    for (long i = 0; i < sprinklers; ++i) {
        const auto coordinates = CoordenadasSaidas::shared()->newTramoCoordenadas(
            static_cast<Integer>(i / 30 + 1), static_cast<Integer>(i % 30 + 1));
        auto mounted = makeMountedAspersor(
            coordinates, catalogue->objectAt<Aspersor>(draw.integer(1, catalogue->Count())));
        chart->addMountedAspersor(mounted);
    }
    auto regulators = Collection::create();
    for (long span = 1; span <= draw.integer(0, 5); ++span) {
        regulators->Add(
            Variant(makeReguladorPression(static_cast<Integer>(span), draw.uniform(50, 250),
                                          draw.uniform(1, 3), draw.uniform(0, 0.5), draw.chance(0.7))));
    }
    chart->setReguladores(regulators);
    if (draw.chance(0.7)) {
        chart->setDrop(
            Drops::shared()->newDrop(draw.uniform(15, 30), draw.uniform(0.5, 3),
                                     PipeMaterial{static_cast<Long>(draw.integer(1, 3)), "hose", 140}));
    }
    chart->setIndicadores(makeIndicadores(draw.uniform(5, 60), static_cast<Integer>(draw.integer(0, 9))));
    PluviometryCheck check;
    check.firstSample = makePivotSample(draw.uniform(10, 400), draw.uniform(5, 30), "a");
    check.secondSample = makePivotSample(draw.uniform(10, 400), draw.uniform(5, 30), "b");
    check.kostiakov = makeKostiakovParameters(draw.uniform(1, 20), draw.uniform(0.2, 0.9));
    chart->setPluviometriaCheck(check);
    return chart;
}

void recordNozzle(OutputRecord& out, const Aspersor& nozzle, long number) {
    out.integer("nozzle_id", nozzle.id(), number);
    out.text("nozzle_name", nozzle.nome(), number);
    out.text("nozzle_a", nozzle.a(), number);
    out.text("nozzle_b", nozzle.b(), number);
    out.number("nozzle_pmin", nozzle.pmin(), number);
    out.number("nozzle_pmax", nozzle.pmax(), number);
    out.number("nozzle_qmin", nozzle.qmin(), number);
    out.number("nozzle_qmax", nozzle.qmax(), number);
    out.number("nozzle_flow", nozzle.calculate(275.5), number);
    out.integer("model_id", nozzle.modelo().id, number);
    out.text("brand", nozzle.marca().nome, number);
}

void recordChart(OutputRecord& out, CartaAspersores& chart) {
    out.integer("id", chart.id());
    out.text("name", chart.getNome());
    out.number("boost", chart.getEndGunBoost());
    long number = 0;
    for (const Variant& item : *chart.mountedAspersores()) {
        const auto mounted = item.toObject<MountedAspersor>();
        out.integer("mounted_id", mounted->id(), ++number);
        out.integer("mounted_span", mounted->saida().numeroTramo, number);
        out.integer("mounted_outlet", mounted->saida().saida, number);
        recordNozzle(out, *mounted->Aspersor(), number);
    }
    number = 0;
    for (const Variant& item : *chart.getReguladores()) {
        const auto regulator = item.toObject<ReguladorPression>();
        out.integer("regulator_span", regulator->tramo(), ++number);
        out.number("regulator_pression", regulator->pression(), number);
        out.number("regulator_max", regulator->maximum_caudal(), number);
        out.number("regulator_min", regulator->minimum_caudal(), number);
        out.integer("regulator_installed", regulator->installed() ? 1 : 0, number);
    }
    const Drop drop = chart.getDrop();
    out.number("drop_length", drop.longitud);
    out.number("drop_diameter", drop.diametro);
    out.integer("drop_material", drop.p_pipe_material_id);
    out.integer("drop_rugosidade", drop.pipe_material.rugosidade);
    out.text("drop_material_name", drop.pipe_material.name);
    out.integer("drop_null", drop.p_is_null ? 1 : 0);
    out.integer("drop_installed", drop.p_installed ? 1 : 0);
    const indicadores figures = chart.getIndicadores();
    out.number("hours", figures.horasRevolucao);
    out.integer("closed", figures.numeroSaidasObturadas);
    out.integer("figures_id", figures.id);
    const PluviometryCheck check = chart.getPluviometriaCheck();
    out.number("first_distance", check.firstSample.distanceToCenter);
    out.number("first_diameter", check.firstSample.wetDiameter);
    out.text("first_code", check.firstSample.code);
    out.number("second_distance", check.secondSample.distanceToCenter);
    out.number("second_diameter", check.secondSample.wetDiameter);
    out.text("second_code", check.secondSample.code);
    out.number("k", check.kostiakov.k);
    out.number("a", check.kostiakov.a);
}

/// Saves a drawn chart as new, saves it again, reads it back and records what came back, half
/// of the charts with a comma as the decimal separator.
void recordChartRoundTrips(OutputRecord& out) {
    TemporaryFolder folder;
    const std::string project = folder.file("project.db");
    const std::string catalogueFile = folder.file("catalogue folder/catalogue.db");
    std::filesystem::create_directories(folder.path() / "catalogue folder");
    createProjectDatabase(project);
    createCatalogueDatabase(catalogueFile, false);
    const std::string projectConnection = "Provider=SQLite;Data Source=" + project;
    const std::string catalogueConnection = "Provider=SQLite;Data Source=" + catalogueFile;
    SeededDraws draw(0x5eed0fc4a27ULL);
    fillCatalogue(catalogueConnection, draw);
    const auto catalogue = AspersoresStatic().find(catalogueConnection);
    long number = 0;
    for (const Variant& item : *catalogue) {
        recordNozzle(out, *item.toObject<Aspersor>(), ++number);
    }
    const CartaAspersoresStatic charts;
    for (long chartNumber = 1; chartNumber <= chartCount; ++chartNumber) {
        const std::optional<DecimalSeparatorGuard> comma =
            chartNumber % 2 == 0 ? std::optional<DecimalSeparatorGuard>(std::in_place, ',') : std::nullopt;
        auto chart = drawChart(draw, catalogue, chartNumber);
        const Long system = draw.integer(1, 3);
        attempt(out, "save", [&] {
            charts.saveAsNew(projectConnection, system, *chart);
            charts.save(projectConnection, system, *chart);
        });
        attempt(out, "find", [&] {
            const auto found =
                charts.find(projectConnection, catalogueFile, static_cast<Integer>(chart->id()));
            recordChart(out, *found);
        });
        out.integer("any", charts.AnyFor(projectConnection, system) ? 1 : 0);
        out.integer("listed", charts.enumerateAll(projectConnection, system)->Count());
    }
}

double drawnNumber(SeededDraws& draw) {
    switch (draw.integer(0, 5)) {
        case 0:
            return static_cast<double>(draw.integer(-100000, 100000));
        case 1:
            return draw.uniform(-1, 1);
        case 2:
            return std::ldexp(draw.uniform(1, 2), static_cast<int>(draw.integer(-1074, 1023)));
        case 3:
            return -std::ldexp(draw.uniform(1, 2), static_cast<int>(draw.integer(-80, 80)));
        case 4:
            return static_cast<double>(draw.integer(0, 99999)) / 100.0;
        default:
            return std::exp(draw.uniform(-30, 30));
    }
}

/// Numbers to text and back, in both decimal separators, as the coefficients and statements
/// use them.
void recordNumberTexts(OutputRecord& out) {
    SeededDraws draw(0x7e47ULL);
    for (const char separator : {'.', ','}) {
        const DecimalSeparatorGuard guard(separator);
        for (long i = 1; i <= 20000; ++i) {
            const double value = drawnNumber(draw);
            const std::string text = formatNumber(value);
            out.text("format", text, i);
            const auto parsed = parseLocaleNumber(text);
            out.number("parse", parsed ? *parsed : -0.0, i, parsed ? 1 : 0);
            out.text("sql", sqlDouble(value), i);
            out.number("leading", readLeadingNumber(sqlDouble(value)), i);
        }
    }
}

TEST(PersistenceReference, ChartsReadBackAndNumberTextsGiveTheStoredOutputs) {
    const std::string folder = ReferenceFile::writeFolder();
    OutputRecord charts(true);
    recordChartRoundTrips(charts);
    OutputRecord numbers(false);
    recordNumberTexts(numbers);
    if (!folder.empty()) {
        ReferenceWriter writer(folder, "persistence.txt");
        writer.add("charts", 0, charts, true);
        writer.add("numbers", 0, numbers, false);
        return;
    }
    const ReferenceFile stored("persistence.txt");
    EXPECT_EQ(compareWithReference(stored, "charts", 0, charts), "");
    EXPECT_EQ(compareWithReference(stored, "numbers", 0, numbers), "");
}

}  // namespace
}  // namespace caudalis::testing
