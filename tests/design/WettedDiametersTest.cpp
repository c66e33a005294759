#include <gtest/gtest.h>

#include <stdexcept>

#include "TemporaryFolder.hpp"
#include "caudalis/db/Connection.hpp"
#include "caudalis/design/WettedDiameters.hpp"

using namespace caudalis;
using namespace caudalis::design;

namespace {

class WettedDiametersTest : public ::testing::Test {
protected:
    void SetUp() override { catalogue.Open("Provider=SQLite;Data Source=" + folder.file("catalogue.db")); }
    void createSideTable() {
        catalogue.Execute(
            "CREATE TABLE model_wetted_diameters (id_modelo INTEGER NOT NULL UNIQUE, wetted_diameter_m "
            "REAL)");
    }

    caudalis::testing::TemporaryFolder folder;
    Connection catalogue;
};

}  // namespace

TEST_F(WettedDiametersTest, ACatalogueWithoutTheSideTableKnowsNoDiameter) {
    EXPECT_FALSE(WettedDiameters::available(catalogue));
    EXPECT_TRUE(WettedDiameters::load(catalogue).empty());
}

TEST_F(WettedDiametersTest, StoresAndReplacesOneDiameterPerModel) {
    createSideTable();
    EXPECT_TRUE(WettedDiameters::available(catalogue));
    WettedDiameters::store(catalogue, 3, 14.5);
    WettedDiameters::store(catalogue, 7, 60);
    WettedDiameters::store(catalogue, 3, 16.25);
    const auto diameters = WettedDiameters::load(catalogue);
    EXPECT_EQ(diameters, (std::map<Long, double>{{3, 16.25}, {7, 60}}));
}

TEST_F(WettedDiametersTest, RefusesADiameterThatIsNotPositive) {
    createSideTable();
    EXPECT_THROW(WettedDiameters::store(catalogue, 3, 0), std::invalid_argument);
    EXPECT_THROW(WettedDiameters::store(catalogue, 3, -2), std::invalid_argument);
    EXPECT_TRUE(WettedDiameters::load(catalogue).empty());
}
