#include <gtest/gtest.h>

#include <cstdlib>
#include <sstream>

#include "ShippedDatabases.hpp"
#include "TemporaryFolder.hpp"
#include "caudalis/project/CatalogueCsv.hpp"
#include "caudalis/project/CatalogueDatabase.hpp"
#include "caudalis/project/CatalogueImport.hpp"
#include "caudalis/project/DataFolder.hpp"
#include "caudalis/project/DatabaseFile.hpp"
#include "caudalis/project/ProgressBar.hpp"
#include "caudalis/project/ServiceError.hpp"

using namespace caudalis;
using namespace caudalis::project;

namespace {

std::string csvMessage(const std::string& text) {
    try {
        CatalogueCsv::parse(text, "n.csv");
    } catch (const InputError& error) {
        return error.what();
    }
    return "";
}

}  // namespace

TEST(CatalogueCsv, ReadsQuotedFieldsAndSkipsTheHeader) {
    EXPECT_EQ(CatalogueCsv::fields("a,\"b,c\",\"d \"\"e\"\"\","),
              (std::vector<std::string>{"a", "b,c", "d \"e\"", ""}));
    const auto rows = CatalogueCsv::parse(
        "brand,model,nozzle,a,b,pmin,pmax,qmin,qmax\r\n\n X , \"Y 1\" ,#1,0.01,0.5,50,300,0.1,0.2\r\n",
        "n.csv");
    ASSERT_EQ(rows.size(), 1u);
    EXPECT_EQ(rows[0].line, 3);
    EXPECT_EQ(rows[0].brand, "X");
    EXPECT_EQ(rows[0].model, "Y 1");
    EXPECT_DOUBLE_EQ(rows[0].qmax, 0.2);
}

TEST(CatalogueCsv, EveryBadFieldIsNamed) {
    EXPECT_EQ(
        csvMessage("X,Y,#1,0.01,0.5,50,300,0.1,0.2,9,1\n"),
        "n.csv line 1: 11 fields, expected 9 (brand, model, nozzle, a, b, pmin, pmax, qmin, qmax) or 10 "
        "(and wetted_diameter_m)");
    EXPECT_EQ(csvMessage("X,Y,#1,0.01,0,50,300,0.1,0.2\n"), "n.csv line 1: b must be > 0");
    EXPECT_EQ(csvMessage("X,Y,#1,0.01,0.5,50,300,0.1,\n"), "n.csv line 1: qmax must be a number (\"\")");
    EXPECT_EQ(csvMessage("X,Y,#1,0.01,0.5,50,300,0.3,0.2\n"), "n.csv line 1: qmax must be >= qmin");
    EXPECT_EQ(csvMessage("X,Y,,0.01,0.5,50,300,0.1,0.2\n"), "n.csv line 1: nozzle must not be blank");
    EXPECT_EQ(csvMessage("\n"), "catalogue CSV file n.csv holds no nozzles");
    EXPECT_EQ(csvMessage("X,Y,#1,0.01,0.5,50,300,0.1,0.2,-3\n"),
              "n.csv line 1: wetted_diameter_m must be > 0");
}

TEST(CatalogueCsv, ReadsTheOptionalWettedDiameter) {
    const auto rows = CatalogueCsv::parse(
        "X,Y,#1,0.01,0.5,50,300,0.1,0.2,14.5\nX,Y,#2,0.01,0.5,50,300,0.1,0.2,\n"
        "X,Y,#3,0.01,0.5,50,300,0.1,0.2\n",
        "n.csv");
    ASSERT_EQ(rows.size(), 3u);
    EXPECT_EQ(rows[0].wettedDiameterM, 14.5);
    EXPECT_FALSE(rows[1].wettedDiameterM.has_value());
    EXPECT_FALSE(rows[2].wettedDiameterM.has_value());
}

TEST(ProgressBar, DrawsOnlyWhenShownAndLong) {
    std::ostringstream quiet;
    {
        ProgressBar bar(quiet, 200, false, "importing");
        bar.advance();
    }
    {
        ProgressBar bar(quiet, ProgressBar::minimumSteps, true, "importing");
        bar.advance();
    }
    EXPECT_EQ(quiet.str(), "");
    std::ostringstream drawn;
    {
        ProgressBar bar(drawn, 80, true, "importing");
        for (int i = 0; i < 40; ++i) {
            bar.advance();
        }
    }
    const auto text = drawn.str();
    EXPECT_EQ(text.rfind("\rimporting [" + std::string(40, ' ') + "] 0/80", 0), 0u);
    EXPECT_NE(text.find("\rimporting [" + std::string(20, '#') + std::string(20, ' ') + "] 40/80\n"),
              std::string::npos);
}

TEST(DataFolder, GivenFolderMustHoldTheFiles) {
    EXPECT_TRUE(DataFolder::holdsData(caudalis::testing::shippedDataFile("")));
    EXPECT_EQ(DataFolder::locate(caudalis::testing::shippedDataFile("").string()),
              caudalis::testing::shippedDataFile(""));
    caudalis::testing::TemporaryFolder empty;
    EXPECT_THROW(DataFolder::locate(empty.path().string()), InputError);
    // Without a folder given, the source tree's data serves the build tree.
    EXPECT_TRUE(DataFolder::holdsData(DataFolder::locate(std::nullopt)));
}

TEST(DatabaseFile, KnowsItsKind) {
    caudalis::testing::TemporaryFolder folder;
    caudalis::testing::createProjectDatabase(folder.file("p.db"));
    caudalis::testing::createCatalogueDatabase(folder.file("c.db"), false);
    EXPECT_NO_THROW(DatabaseFile(folder.file("p.db"), DatabaseKind::Project).requireUsable());
    EXPECT_NO_THROW(DatabaseFile(folder.file("c.db"), DatabaseKind::Catalogue).requireUsable());
    EXPECT_THROW(DatabaseFile(folder.file("p.db"), DatabaseKind::Catalogue).requireUsable(), InputError);
    EXPECT_THROW(DatabaseFile(folder.path().string(), DatabaseKind::Project).requireUsable(), InputError);
    EXPECT_THROW(CatalogueDatabase(folder.file("c.db")).nozzles(design::NozzleSelection{}), InputError);
}

TEST(CatalogueImport, SecondImportReusesWhatTheFirstAdded) {
    caudalis::testing::TemporaryFolder folder;
    caudalis::testing::createCatalogueDatabase(folder.file("c.db"), false);
    std::ostringstream progress;
    const auto rows =
        CatalogueCsv::parse("A,M,#1,0.01,0.5,50,300,0.1,0.2\nA,N,#2,0.01,0.5,50,300,0.1,0.2\n", "n.csv");
    const auto first = CatalogueImport(folder.file("c.db"), progress, true).run(rows);
    EXPECT_EQ(first.nozzles, 2);
    EXPECT_EQ(first.newBrands, 1);
    EXPECT_EQ(first.newModels, 2);
    const auto second = CatalogueImport(folder.file("c.db"), progress, true).run(rows);
    EXPECT_EQ(second.newBrands, 0);
    EXPECT_EQ(second.newModels, 0);
    const CatalogueDatabase catalogue(folder.file("c.db"));
    EXPECT_EQ(catalogue.brands().size(), 1u);
    EXPECT_EQ(catalogue.models().size(), 2u);
    EXPECT_EQ(catalogue.nozzles(design::NozzleSelection{})->Count(), 4);
    EXPECT_EQ(progress.str(), "");
}
