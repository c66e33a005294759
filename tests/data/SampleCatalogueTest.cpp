#include <gtest/gtest.h>

#include <cmath>
#include <regex>
#include <string>
#include <vector>

#include "ScratchDatabase.hpp"

using caudalis::testing::ScratchDatabase;

namespace {

const char* const kCatalogueSchema = "data/schema/catalogue.sql";
const char* const kCatalogueData = "data/sample/catalogue-data.sql";

// The statement with which the library reads the whole catalogue.
const char* const kNozzleSelect =
    "SELECT b.ID_Boquillas, b.denominacion, b.a, b.b,b.pmin, b.pmax,b.qmin, b.qmax,"
    "modelos.id_modelo as modelos_id_modelo,modelos.id_marca as modelos_id_marca,"
    "modelos.modelo as modelos_modelo,marca.id_marca as marca_id_marca, marca.nome as marca_nome"
    " FROM ((Boquillas AS b INNER JOIN Modelos ON b.id_modelo=modelos.id_modelo) INNER JOIN Marca ON "
    "modelos.id_marca=marca.id_marca)";

struct Nozzle {
    double a;
    double b;
};

/// Flow of a nozzle at a pressure lies within the tolerance of the wanted flow.
bool delivers(const Nozzle& nozzle, double pressure, double flow, double tolerance) {
    const double q = nozzle.a * std::pow(pressure, nozzle.b);
    return q >= flow * (1 - tolerance) && q <= flow * (1 + tolerance);
}

class SampleCatalogue : public ::testing::Test {
protected:
    void SetUp() override {
        db.load(kCatalogueSchema);
        db.load(kCatalogueData);
    }

    std::vector<Nozzle> nozzlesWhere(const std::string& condition) {
        const auto values = db.doubles(
            "SELECT b.a, b.b FROM Boquillas AS b INNER JOIN Modelos ON b.id_modelo=modelos.id_modelo "
            "WHERE " +
            condition);
        std::vector<Nozzle> nozzles;
        for (std::size_t i = 0; i + 1 < values.size(); i += 2) {
            nozzles.push_back({values[i], values[i + 1]});
        }
        return nozzles;
    }

    static bool anyDelivers(const std::vector<Nozzle>& nozzles, double pressure, double flow) {
        for (const auto& nozzle : nozzles) {
            if (delivers(nozzle, pressure, flow, 0.1)) {
                return true;
            }
        }
        return false;
    }

    /// Pressure-flow pairs on a grid of the two ranges that no nozzle delivers within 10 %.
    static std::vector<std::string> uncovered(const std::vector<Nozzle>& nozzles, double lowPressure,
                                              double highPressure, double lowFlow, double highFlow) {
        std::vector<std::string> misses;
        for (double p = lowPressure; p <= highPressure; p += 10) {
            for (double q = lowFlow; q <= highFlow; q *= 1.02) {
                if (!anyDelivers(nozzles, p, q)) {
                    misses.push_back(std::to_string(p) + " kPa / " + std::to_string(q) + " l/s");
                }
            }
        }
        return misses;
    }

    ScratchDatabase db{"catalogue.db"};
};

}  // namespace

TEST_F(SampleCatalogue, HasTheExpectedBrandsModelsAndNozzles) {
    EXPECT_EQ(db.integer("SELECT count(*) FROM marca"), 4);
    EXPECT_EQ(db.integer("SELECT count(*) FROM Modelos"), 12);
    EXPECT_EQ(db.integer("SELECT count(*) FROM Boquillas"), 398);
    EXPECT_EQ(db.integer("SELECT count(DISTINCT id_marca) FROM Modelos"), 4);
    EXPECT_EQ(db.integer("SELECT count(DISTINCT id_modelo) FROM Boquillas"), 12);
    // Every model has a wetted diameter, from 8 m (small sprays) to 80 m (end guns).
    EXPECT_EQ(db.integer("SELECT count(*) FROM model_wetted_diameters INNER JOIN Modelos ON "
                         "model_wetted_diameters.id_modelo = Modelos.id_modelo "
                         "WHERE wetted_diameter_m BETWEEN 8 AND 80"),
              12);
}

TEST_F(SampleCatalogue, EveryNozzleHasPositiveCoefficientsAndRanges) {
    EXPECT_EQ(db.integer("SELECT count(*) FROM Boquillas WHERE NOT (a > 0 AND b > 0 AND pmin > 0 AND "
                         "pmax > 0 AND qmin > 0 AND qmax > 0)"),
              0);
    EXPECT_EQ(db.integer("SELECT count(*) FROM Boquillas WHERE pmin >= pmax OR qmin >= qmax"), 0);
    EXPECT_EQ(db.integer("SELECT count(*) FROM Boquillas WHERE trim(coalesce(denominacion, '')) = ''"), 0);
}

TEST_F(SampleCatalogue, RangeFlowsFollowTheFlowLaw) {
    const auto values = db.doubles("SELECT a, b, pmin, pmax, qmin, qmax FROM Boquillas");
    ASSERT_EQ(values.size(), 6u * 398u);
    for (std::size_t i = 0; i < values.size(); i += 6) {
        const double a = values[i], b = values[i + 1];
        EXPECT_EQ(b, 0.5);
        EXPECT_NEAR(values[i + 4], a * std::pow(values[i + 2], b), 1e-9 * values[i + 4]);
        EXPECT_NEAR(values[i + 5], a * std::pow(values[i + 3], b), 1e-9 * values[i + 5]);
    }
}

TEST_F(SampleCatalogue, CoefficientsAreThoseOfARoundOrificeOfTheDesignatedBore) {
    // The designation ends with the bore, "#24 (4.76 mm)" or "4.5 mm", rounded to 0.01 mm.
    const auto rows = db.rows("SELECT denominacion, a FROM Boquillas");
    const double pi = std::acos(-1.0);
    const std::regex boreAtTheEnd(R"(([0-9]+\.[0-9]+) mm\)?$)");
    for (const auto& row : rows) {
        std::smatch bore;
        ASSERT_TRUE(std::regex_search(row[0], bore, boreAtTheEnd)) << row[0];
        const double metres = std::stod(bore[1]) / 1000.0;
        const double dischargeCoefficient =
            std::stod(row[1]) / (1000.0 * pi / 4.0 * metres * metres * std::sqrt(2 * 9.81 / 10.0));
        EXPECT_GT(dischargeCoefficient, 0.945) << row[0];
        EXPECT_LT(dischargeCoefficient, 0.985) << row[0];
    }
}

TEST_F(SampleCatalogue, DesignationsAreUniqueWithinAModel) {
    EXPECT_EQ(db.integer("SELECT count(*) FROM (SELECT id_modelo, denominacion FROM Boquillas "
                         "GROUP BY id_modelo, denominacion HAVING count(*) > 1)"),
              0);
    EXPECT_EQ(db.integer("SELECT count(DISTINCT modelo) FROM Modelos"), 12);
}

TEST_F(SampleCatalogue, TheLibrarysThreeTableJoinReturnsEveryNozzle) {
    const auto rows = db.rows(kNozzleSelect);
    ASSERT_EQ(rows.size(), 398u);
    for (const auto& row : rows) {
        ASSERT_EQ(row.size(), 13u);
        EXPECT_EQ(row[9], row[11]);  // the model's brand is the brand read alongside
        EXPECT_NE(row[12], "NULL");
    }
}

TEST_F(SampleCatalogue, TheLibrarysBrandAndModelQueriesFindTheirRows) {
    EXPECT_EQ(db.rows(std::string(kNozzleSelect) + " WHERE marca.nome='Nimbra' ;").size(), 89u);
    EXPECT_TRUE(db.rows(std::string(kNozzleSelect) + " WHERE marca.nome='Nobody' ;").empty());
    EXPECT_EQ(db.rows(std::string(kNozzleSelect) + " WHERE modelos.modelo='RX Spinner' ;").size(), 51u);
    EXPECT_EQ(db.rows("SELECT marca.id_marca as marca_id_marca, marca.nome as marca_nome FROM marca").size(),
              4u);
    EXPECT_EQ(db.rows("SELECT modelos.id_modelo as modelos_id_modelo,modelos.id_marca as modelos_id_marca,"
                      "modelos.modelo as modelos_modelo,marca.id_marca as marca_id_marca, marca.nome as "
                      "marca_nome FROM (Modelos INNER JOIN Marca ON modelos.id_marca=marca.id_marca)")
                  .size(),
              12u);
}

TEST_F(SampleCatalogue, LoadingTheDataTwiceAddsNothing) {
    const auto before = db.rows("SELECT * FROM Boquillas ORDER BY ID_Boquillas");
    db.load(kCatalogueData);
    EXPECT_EQ(db.integer("SELECT count(*) FROM marca"), 4);
    EXPECT_EQ(db.integer("SELECT count(*) FROM Modelos"), 12);
    EXPECT_EQ(db.rows("SELECT * FROM Boquillas ORDER BY ID_Boquillas"), before);
}

TEST_F(SampleCatalogue, SpanSprinklersCoverLowToHighFlowsAtUsualPressures) {
    const auto sprays =
        nozzlesWhere("modelos.modelo NOT LIKE '%Gun%' AND modelos.modelo NOT LIKE '%Impact%'");
    EXPECT_TRUE(uncovered(sprays, 50, 300, 0.05, 1.5).empty());
}

TEST_F(SampleCatalogue, EndGunsCoverTheirFlowsAtUsualPressures) {
    const auto guns = nozzlesWhere("modelos.modelo LIKE '%Gun%'");
    EXPECT_EQ(guns.size(), 65u);
    EXPECT_TRUE(uncovered(guns, 200, 500, 2.0, 8.0).empty());
}

TEST_F(SampleCatalogue, NearlyEveryOutletOfATypicalMachineFindsASprinkler) {
    // 400 m machine, 2.75 m outlet spacing, 50 l/s: an outlet at radius r needs 2 Q r s / R^2.
    const double radius = 400, spacing = 2.75, design = 50;
    const auto sprays = nozzlesWhere("modelos.modelo NOT LIKE '%Gun%'");
    for (double pressure : {70.0, 100.0, 140.0, 200.0, 250.0}) {
        int matched = 0, outlets = 0;
        for (double r = spacing; r <= radius; r += spacing, ++outlets) {
            matched += anyDelivers(sprays, pressure, 2 * design * r * spacing / (radius * radius)) ? 1 : 0;
        }
        EXPECT_EQ(outlets, 145);
        EXPECT_GE(matched, outlets - 3) << pressure << " kPa";
    }
}
