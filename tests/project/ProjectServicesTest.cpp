#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <variant>

#include "ErrorMatchers.hpp"
#include "SampleNozzles.hpp"
#include "ServiceDatabases.hpp"
#include "TestEngine.hpp"
#include "caudalis/catalogue/Aspersor.hpp"
#include "caudalis/charts/CartaAspersores.hpp"
#include "caudalis/design/DesignFile.hpp"
#include "caudalis/design/DesignRunner.hpp"
#include "caudalis/design/TextFile.hpp"
#include "caudalis/project/CatalogueService.hpp"
#include "caudalis/project/ChartReport.hpp"
#include "caudalis/project/ChartService.hpp"
#include "caudalis/project/ServiceError.hpp"
#include "caudalis/report/DesignPrintout.hpp"

// The project services on real databases of each engine: set-up, the catalogue, the charts.
using namespace caudalis;
using namespace caudalis::project;
using namespace caudalis::testing;

namespace {

class ProjectServices : public ServiceTest {
protected:
    ChartService charts() const { return databases.chartService(); }

    /// The small example designed with the catalogue, as `design` computes it.
    design::DesignResult smallDesign() const {
        const auto description = design::DesignFile::load(sourcePath("examples/designs/small.json"));
        return design::DesignRunner(design::DesignOptions{}).run(description, *databases.nozzles());
    }
};

TEST_P(ProjectServices, SetUpCreatesBothDatabasesThenLeavesThemAsTheyAre) {
    ServiceDatabases fresh(GetParam());
    const auto created = fresh.setUp();
    ASSERT_EQ(created.databases.size(), 2u);
    const auto& project = created.databases[0];
    const auto& catalogue = created.databases[1];
    EXPECT_EQ(project.kind, "project");
    EXPECT_EQ(project.path, fresh.project());
    EXPECT_EQ(project.state, "created");
    EXPECT_EQ(project.count, 0);
    EXPECT_EQ(project.counted, "charts");
    EXPECT_EQ(catalogue.kind, "catalogue");
    EXPECT_EQ(catalogue.state, "created");
    EXPECT_GT(catalogue.count, 0);
    EXPECT_EQ(catalogue.counted, "nozzles");

    const auto again = fresh.setUp();
    EXPECT_EQ(again.databases[0].state, "already there, left as it was");
    EXPECT_EQ(again.databases[1].state, "already there, left as it was");
    EXPECT_EQ(again.databases[1].count, catalogue.count);
}

TEST_P(ProjectServices, TheCatalogueListsModelsOfABrandAndImportsNozzlesWrittenInUsUnits) {
    const CatalogueService catalogue(databases.catalogue());
    const auto brands = catalogue.brands();
    ASSERT_FALSE(brands.empty());
    const auto models = catalogue.models(brands.front().nome).models;
    ASSERT_FALSE(models.empty());
    for (const auto& model : models) {
        EXPECT_EQ(model.marca.nome, brands.front().nome);
    }
    EXPECT_GE(catalogue.models(std::nullopt).models.size(), models.size());
    EXPECT_NE(raisedMessage<InputError>([&] { catalogue.models(std::string("Nobody")); }).find("Nobody"),
              std::string::npos);

    const auto csv = databases.folder().file("us.csv");
    std::ofstream(csv) << "brand,model,nozzle,a,b,pmin,pmax,qmin,qmax\n"
                          "Acme,Rain 12,#12,1.264911,0.5,10,30,4,6.928203\n";
    std::ostringstream progress;
    const auto summary = catalogue.importCsv(csv, design::UnitSystem::US, progress, false);
    EXPECT_EQ(summary.nozzles, 1);
    EXPECT_EQ(summary.newBrands, 1);
    EXPECT_EQ(summary.newModels, 1);
    EXPECT_TRUE(progress.str().empty());
    EXPECT_EQ(catalogue.models(std::string("Acme")).models.size(), 1u);

    design::NozzleSelection acme;
    acme.brand = "Acme";
    const auto nozzles = databases.nozzles()->nozzles(acme);
    ASSERT_EQ(nozzles->Count(), 1);
    const auto nozzle = nozzles->objectAt<Aspersor>(1);
    EXPECT_NEAR(nozzle->pmin(), 10 * design::Units::kilopascalsPerPsi, 1e-6);
    EXPECT_NEAR(nozzle->qmax(), 6.928203 * design::Units::litresPerSecondPerGpm, 1e-6);
}

TEST_P(ProjectServices, AStoredChartIsListedShownFromOneDocumentRebuiltAndDeleted) {
    auto service = charts();
    const auto result = smallDesign();
    const auto designText = design::readTextFile(sourcePath("examples/designs/small.json"), "design file");
    const auto id = service.store(result, designText, "North field", 7);
    EXPECT_NE(raisedMessage<InputError>([&] {
                  service.requireNameIsFree("North field", 7);
              }).find("already exists in system 7"),
              std::string::npos);
    service.requireNameIsFree("North field", 8);

    const auto listed = service.list(std::optional<Long>(7));
    ASSERT_EQ(listed.size(), 1u);
    EXPECT_EQ(listed[0].info.id, id);
    EXPECT_EQ(listed[0].info.nome, "North field");
    EXPECT_TRUE(service.list(std::optional<Long>(8)).empty());

    const auto stored = service.show(id, false);
    EXPECT_EQ(stored.stored.system, 7);
    EXPECT_EQ(stored.stored.missingNozzles, 0);
    ASSERT_TRUE(stored.stored.figures.has_value());
    EXPECT_FALSE(stored.design.has_value());
    std::ostringstream text;
    ChartReport::write(text, stored, design::UnitText(design::Units()));
    EXPECT_EQ(text.str().rfind("Chart " + std::to_string(id) + ": North field (system 7)\n", 0), 0u)
        << text.str();
    EXPECT_NE(
        text.str().find("Mounted nozzles: " + std::to_string(result.chart->mountedAspersores()->Count())),
        std::string::npos);
    EXPECT_NE(raisedMessage<InputError>([&] {
                  ChartReport::document(stored, design::Units());
              }).find("was read without its design"),
              std::string::npos);

    const auto whole = service.show(id, true);
    ASSERT_TRUE(whole.design.has_value());
    const auto report = ChartReport::document(whole, design::Units(result.design.units));
    ASSERT_FALSE(report.subtitle.empty());
    EXPECT_EQ(report.subtitle.front(), "Chart " + std::to_string(id) + ": North field (system 7)");
    const auto designed = design::DesignPrintout::document(result, design::Units(result.design.units), true);
    ASSERT_EQ(report.sections.size(), designed.sections.size() + 1);
    // The whole printout is headed by the stored chart's lines, the same as its text printout.
    const auto& storedSection = report.sections.front();
    EXPECT_EQ(storedSection.heading, "Stored chart");
    ASSERT_EQ(storedSection.blocks.size(),
              5u + static_cast<std::size_t>(result.chart->getReguladores()->Count()));
    for (const auto& block : storedSection.blocks) {
        const auto& paragraph = std::get<design::ReportParagraph>(block).text;
        const auto colon = paragraph.find(": ");
        ASSERT_NE(colon, std::string::npos) << paragraph;
        EXPECT_NE(text.str().find(paragraph.substr(colon + 2)), std::string::npos) << paragraph;
    }
    EXPECT_EQ(report.sections[1].heading, designed.sections.front().heading);
    EXPECT_EQ(service.rebuild(id).result.outlets.size(), result.outlets.size());

    service.remove(id);
    EXPECT_TRUE(service.list(std::nullopt).empty());
    EXPECT_NE(raisedMessage<InputError>([&] { service.show(id, false); }).find("no chart with id"),
              std::string::npos);
}

TEST_P(ProjectServices, AChartStoredWithoutItsDesignFileHasNoWholePrintout) {
    auto service = charts();
    const auto id = service.store(smallDesign(), "", "No design", 1);
    EXPECT_TRUE(service.show(id, false).stored.figures.has_value());
    EXPECT_NE(raisedMessage([&] { service.show(id, true); }).find("stored without its design file"),
              std::string::npos);
}

INSTANTIATE_TEST_SUITE_P(Engines, ProjectServices, caudalis::testing::allEngines(),
                         caudalis::testing::EngineNamer());

}  // namespace
