#include "caudalis/project/ChartService.hpp"

#include "caudalis/charts/CartaAspersores.hpp"
#include "caudalis/design/ChartFigures.hpp"

namespace caudalis::project {

ChartService::ChartService(StoreOpener store, CatalogueOpener catalogue)
    : openStore_(std::move(store)), openCatalogue_(std::move(catalogue)) {}

ChartStore& ChartService::charts() {
    if (!store_) {
        store_ = openStore_();
    }
    return *store_;
}

void ChartService::requireNameIsFree(const std::string& name, Long system) {
    charts().requireNameIsFree(name, system);
}

Long ChartService::store(const design::DesignResult& result, const std::string& designText,
                         const std::string& name, Long system) {
    auto figures = design::ChartFigures::of(result);
    figures.design = designText;
    return charts().saveAsNew(result.chart, name, system, figures);
}

std::vector<StoredChart> ChartService::list(std::optional<Long> system) {
    return charts().list(system);
}

StoredChartDocument ChartService::show(Long id, bool withDesign) {
    StoredChartDocument document{charts().find(id), std::nullopt};
    if (withDesign) {
        document.design = rebuild(id);
    }
    return document;
}

void ChartService::remove(Long id) {
    charts().destroy(id);
}

design::RebuiltChart ChartService::rebuild(Long id) {
    const auto wetted = openCatalogue_()->wettedDiameters();
    return charts().rebuild(id, wetted);
}

}  // namespace caudalis::project
