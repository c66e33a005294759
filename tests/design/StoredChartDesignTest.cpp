#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "ShippedDatabases.hpp"
#include "TemporaryFolder.hpp"
#include "caudalis/catalogue/AspersoresStatic.hpp"
#include "caudalis/charts/CartaAspersores.hpp"
#include "caudalis/charts/CartaAspersoresStatic.hpp"
#include "caudalis/core/Statics.hpp"
#include "caudalis/db/Connection.hpp"
#include "caudalis/design/ChartFigures.hpp"
#include "caudalis/design/DesignError.hpp"
#include "caudalis/design/DesignFile.hpp"
#include "caudalis/design/DesignRunner.hpp"
#include "caudalis/design/InMemoryNozzleSource.hpp"
#include "caudalis/design/StoredChartDesign.hpp"
#include "caudalis/design/TextFile.hpp"
#include "caudalis/design/WettedDiameters.hpp"

using namespace caudalis;
using namespace caudalis::design;

namespace {

/// The small example designed with the sample catalogue and stored as `design --save` stores it.
class StoredChartDesignTest : public ::testing::Test {
protected:
    void SetUp() override {
        caudalis::testing::createProjectDatabase(folder.file("project.db"));
        caudalis::testing::createCatalogueDatabase(folder.file("catalogue.db"));
        Connection catalogue(catalogueConnection());
        catalogue.Open();
        wetted = WettedDiameters::load(catalogue);
        catalogue.Close();
        InMemoryNozzleSource source(AspersoresStatic().find(catalogueConnection()), wetted);
        designText =
            readTextFile(std::string(CAUDALIS_SOURCE_DIR) + "/examples/designs/small.json", "design file");
        original = DesignRunner().run(DesignFile::parse(designText, "small.json"), source);
    }

    std::string projectConnection() const {
        return "Provider=SQLite;Data Source=" + folder.file("project.db");
    }
    std::string catalogueConnection() const {
        return "Provider=SQLite;Data Source=" + folder.file("catalogue.db");
    }

    /// Stores the original chart with its figures; `withDesign` false leaves the design file out.
    Long store(bool withDesign = true) {
        Statics::application()->CartaAspersor()->saveAsNew(projectConnection(), 1, *original.chart);
        auto figures = ChartFigures::of(original);
        if (withDesign) {
            figures.design = designText;
        }
        execute([&](Connection& project) { ChartFigures::save(project, original.chart->id(), figures); });
        return original.chart->id();
    }

    template <class Work>
    void execute(Work work) {
        Connection project(projectConnection());
        project.Open();
        work(project);
        project.Close();
    }

    RebuiltChart rebuild(Long id) {
        return StoredChartDesign::rebuild(projectConnection(), folder.file("catalogue.db"), id, wetted);
    }

    caudalis::testing::TemporaryFolder folder;
    std::map<Long, double> wetted;
    std::string designText;
    DesignResult original;
};

}  // namespace

namespace {

/// Relative difference of two values.
double apart(double a, double b) {
    return std::fabs(a - b) / std::max(std::fabs(a), std::fabs(b));
}

}  // namespace

// What does not depend on the march (nozzles, required flows, ideal pressures, places) is the
// same to the last bit. The march itself starts from the stored nozzles instead of choosing
// them pass by pass, so it takes another path to the same settled state: it stops once the
// total discharge changes by at most 1e-5 l/s between passes, and pressures and flows agree to
// well within that (here about 1e-8 relative).
TEST_F(StoredChartDesignTest, GivesTheOriginalPressuresAndFlows) {
    const auto rebuilt = rebuild(store());
    const auto& result = rebuilt.result;
    ASSERT_EQ(result.outlets.size(), original.outlets.size());
    ASSERT_GT(result.outlets.size(), 30u);
    EXPECT_EQ(rebuilt.missingNozzles, 0);
    for (std::size_t i = 0; i < result.outlets.size(); ++i) {
        const auto& again = result.outlets[i].outlet;
        const auto& first = original.outlets[i].outlet;
        SCOPED_TRACE("outlet " + std::to_string(i + 1));
        ASSERT_TRUE(again.obj_aspersor);
        EXPECT_EQ(again.obj_aspersor->id(), first.obj_aspersor->id());
        EXPECT_EQ(again.caudal, first.caudal);
        EXPECT_EQ(again.pressao_ideal, first.pressao_ideal);
        EXPECT_EQ(again.distanciaAoPivot, first.distanciaAoPivot);
        EXPECT_EQ(again.cota, first.cota);
        EXPECT_LT(apart(again.pressao_real, first.pressao_real), 1e-6);
        EXPECT_LT(apart(again.pressao_actuante, first.pressao_actuante), 1e-6);
        EXPECT_LT(apart(again.caudal_do_aspersor, first.caudal_do_aspersor), 1e-6);
        EXPECT_LT(apart(result.analysis.pipePressuresKpa.at(i), original.analysis.pipePressuresKpa.at(i)),
                  1e-6);
        EXPECT_EQ(result.outlets[i].span, original.outlets[i].span);
        EXPECT_EQ(result.outlets[i].number, original.outlets[i].number);
    }
    EXPECT_NEAR(result.summary.computedFlowLps, original.summary.computedFlowLps, 1e-5);
    EXPECT_NEAR(*result.summary.uniformityCoefficient, *original.summary.uniformityCoefficient, 1e-6);
    EXPECT_EQ(result.design.name, original.design.name);
    EXPECT_EQ(result.spans.size(), original.spans.size());
    EXPECT_EQ(result.summary.passes, original.summary.passes);
    EXPECT_EQ(result.chart->id(), original.chart->id());
    // The depth samples are those of the recomputed chart, outlet by outlet.
    ASSERT_EQ(rebuilt.depths.count(), static_cast<Long>(result.outlets.size()));
    for (Long i = 1; i <= rebuilt.depths.count(); ++i) {
        const auto& outlet = result.outlets[static_cast<std::size_t>(i - 1)];
        EXPECT_EQ(rebuilt.depths(i).depth, outlet.depthMm);
        EXPECT_LT(apart(rebuilt.depths(i).depth, original.outlets[static_cast<std::size_t>(i - 1)].depthMm),
                  1e-6);
    }
}

TEST_F(StoredChartDesignTest, ANozzleMissingFromTheCatalogueIsAWarning) {
    const auto id = store();
    execute([&](Connection& project) {
        project.Execute("UPDATE tb_aspersores SET id_aspersor = 999999 WHERE id_carta = " +
                        std::to_string(id) + " AND tramo = 2 AND saida = 3");
    });
    const auto rebuilt = rebuild(id);
    EXPECT_EQ(rebuilt.missingNozzles, 1);
    ASSERT_FALSE(rebuilt.result.findings.empty());
    bool warned = false;
    for (const auto& finding : rebuilt.result.findings) {
        if (finding.code == "stored-nozzles-not-in-catalogue") {
            warned = true;
            EXPECT_EQ(finding.severity, Severity::Warning);
            EXPECT_EQ(finding.message,
                      "1 of the stored chart's nozzles are not in the catalogue; their outlets are computed "
                      "without a nozzle");
        }
    }
    EXPECT_TRUE(warned);
    EXPECT_EQ(rebuilt.result.summary.unfittedOutlets, original.summary.unfittedOutlets + 1);
}

TEST_F(StoredChartDesignTest, AChartWithoutItsDesignOrNoChartAtAllIsRefused) {
    const auto id = store(false);
    try {
        rebuild(id);
        FAIL() << "rebuilt a chart without its design";
    } catch (const DesignError& error) {
        EXPECT_EQ(std::string(error.what()),
                  "chart " + std::to_string(id) +
                      " was stored without its design file, so its machine is unknown: store the design "
                      "again with caudalis design FILE --save NAME");
    }
    try {
        rebuild(id + 1);
        FAIL() << "rebuilt a chart that is not there";
    } catch (const DesignError& error) {
        EXPECT_EQ(std::string(error.what()), "the project database holds no chart " + std::to_string(id + 1));
    }
}

// The chart tables read a chart's id as a 16-bit number; a chart another program stored past
// that is refused by name instead of wrapping round to another chart.
TEST_F(StoredChartDesignTest, AChartIdBeyondTheChartTablesIsRefused) {
    const auto id = store();
    for (const char* table : {"tb_cartas", "tb_aspersores", "tb_indicadores", "tb_pluviometria",
                              "tb_reguladores", "chart_design"}) {
        execute([&](Connection& project) {
            project.Execute(std::string("UPDATE ") + table +
                            " SET id_carta = 40000 WHERE id_carta = " + std::to_string(id));
        });
    }
    try {
        rebuild(40000);
        FAIL() << "rebuilt chart 40000 through 16-bit chart ids";
    } catch (const DesignError& error) {
        EXPECT_EQ(std::string(error.what()),
                  "chart 40000 is beyond 32767, the largest chart id the chart tables can read");
    }
}

TEST_F(StoredChartDesignTest, TheDesignFileKeepsItsApostrophesAndGoesWithTheChart) {
    const auto id = store();
    auto figures = ChartFigures::of(original);
    figures.design = "{\"name\": \"O'Brien's north field\"}";
    execute([&](Connection& project) {
        ChartFigures::save(project, id, figures);
        EXPECT_EQ(ChartFigures::load(project, id)->design, figures.design);
        ChartFigures::erase(project, id);
        EXPECT_FALSE(ChartFigures::load(project, id).has_value());
    });
}
