#include "SampleNozzles.hpp"

#include <cmath>

#include <string>

#include "ShippedDatabases.hpp"
#include "TemporaryFolder.hpp"
#include "caudalis/catalogue/AspersoresStatic.hpp"
#include "caudalis/core/Statics.hpp"
#include "caudalis/db/Connection.hpp"
#include "caudalis/design/WettedDiameters.hpp"

namespace caudalis::testing {

namespace {

struct Family {
    const char* brand;
    const char* model;
    double firstA;
    double ratio;
    double lastA;
    double pmin, pmax, qmin, qmax;
};

void addFamily(Collection& nozzles, const Family& family, Long brandId, Long modelId) {
    const auto catalogue = Statics::application()->Aspersores();
    const modelo model{modelId, family.model, marca{brandId, family.brand}, brandId};
    int number = 1;
    for (double a = family.firstA; a <= family.lastA; a *= family.ratio, ++number) {
        const double rounded = std::round(a * 1e6) / 1e6;
        nozzles.Add(
            Variant(catalogue->newAspersor((number < 10 ? "#0" : "#") + std::to_string(number), rounded, 0.5,
                                           family.pmin, family.pmax, family.qmin, family.qmax, model)));
    }
}

}  // namespace

CollectionRef sampleNozzles() {
    auto nozzles = Collection::create();
    const Family families[] = {{"Aquarion", "AQ Spray", 0.0029, 1.06, 0.22, 50, 300, 0.05, 1.5},
                               {"Rotaflux", "RF Rotator", 0.0031, 1.05, 0.22, 50, 300, 0.05, 1.5},
                               {"Nimbra", "NB Wobbler", 0.0030, 1.08, 0.22, 50, 300, 0.05, 1.5},
                               {"Vellora", "VL Gun", 0.089, 1.04, 0.57, 200, 500, 2, 8}};
    Long id = 1;
    for (const auto& family : families) {
        addFamily(*nozzles, family, id, id);
        ++id;
    }
    return nozzles;
}

namespace {

/// The path of the sample catalogue database made once for the test program.
const std::string& sampleCataloguePath() {
    static const TemporaryFolder folder;
    static const std::string path = [] {
        const auto made = folder.file("sample-catalogue.db");
        createCatalogueDatabase(made);
        return made;
    }();
    return path;
}

}  // namespace

CollectionRef sampleCatalogue() {
    static const CollectionRef nozzles = Statics::application()->Aspersores()->find(sampleCataloguePath());
    return nozzles;
}

std::map<Long, double> sampleWettedDiameters() {
    Connection catalogue(sampleCataloguePath());
    catalogue.Open();
    return design::WettedDiameters::load(catalogue);
}

std::string sourcePath(const std::string& relative) {
    return std::string(CAUDALIS_SOURCE_DIR) + "/" + relative;
}

}  // namespace caudalis::testing
