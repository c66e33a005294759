#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "caudalis/design/DesignResult.hpp"
#include "caudalis/design/NozzleSource.hpp"
#include "caudalis/project/ChartStore.hpp"
#include "caudalis/project/StoredChartDocument.hpp"

namespace caudalis::project {

/// The sprinkler charts of a project as every host uses them: a computed design stored with its
/// figures and design file, the charts listed, one shown, deleted, or computed again with the
/// catalogue's nozzles. The store and the catalogue are opened when first used.
class ChartService {
public:
    using StoreOpener = std::function<std::unique_ptr<ChartStore>()>;
    using CatalogueOpener = std::function<std::unique_ptr<design::NozzleSource>()>;

    ChartService(StoreOpener store, CatalogueOpener catalogue);

    /// Raises `InputError` unless a chart named `name` can be stored in `system`.
    void requireNameIsFree(const std::string& name, Long system);
    /// Stores the design's chart under `name` in `system`, with its figures and the text of its
    /// design file; returns the chart's key.
    Long store(const design::DesignResult& result, const std::string& designText, const std::string& name,
               Long system);
    std::vector<StoredChart> list(std::optional<Long> system);
    /// The stored chart `id`, with its design computed again when `withDesign` (which raises
    /// `InputError` for a chart stored without its design file).
    StoredChartDocument show(Long id, bool withDesign);
    void remove(Long id);
    /// The chart `id` computed again from its design file with the catalogue's nozzles.
    design::RebuiltChart rebuild(Long id);

private:
    ChartStore& charts();

    StoreOpener openStore_;
    CatalogueOpener openCatalogue_;
    std::unique_ptr<ChartStore> store_;
};

}  // namespace caudalis::project
