#include "caudalis/project/CatalogueService.hpp"

#include "caudalis/project/CatalogueCsv.hpp"
#include "caudalis/project/CatalogueDatabase.hpp"

namespace caudalis::project {

CatalogueService::CatalogueService(std::string cataloguePath) : cataloguePath_(std::move(cataloguePath)) {}

std::vector<marca> CatalogueService::brands() const {
    return CatalogueDatabase(cataloguePath_).brands();
}

ModelListing CatalogueService::models(const std::optional<std::string>& brand) const {
    const CatalogueDatabase catalogue(cataloguePath_);
    if (brand) {
        catalogue.requireBrand(catalogue.brands(), *brand);
    }
    ModelListing listing;
    for (const auto& model : catalogue.models()) {
        if (!brand || model.marca.nome == *brand) {
            listing.models.push_back(model);
        }
    }
    return listing;
}

CatalogueRow CatalogueService::inSI(CatalogueRow row, const design::Units& units) {
    using design::Quantity;
    row.a = units.flowCoefficientToSI(row.a, row.b);
    row.pmin = units.toSI(Quantity::Pressure, row.pmin);
    row.pmax = units.toSI(Quantity::Pressure, row.pmax);
    row.qmin = units.toSI(Quantity::Flow, row.qmin);
    row.qmax = units.toSI(Quantity::Flow, row.qmax);
    return row;
}

ImportSummary CatalogueService::importCsv(const std::string& csvPath, design::UnitSystem units,
                                          std::ostream& progress, bool showProgress) const {
    auto rows = CatalogueCsv::load(csvPath);
    const design::Units written(units);
    for (auto& row : rows) {
        row = inSI(row, written);
    }
    return CatalogueImport(cataloguePath_, progress, showProgress).run(rows);
}

}  // namespace caudalis::project
