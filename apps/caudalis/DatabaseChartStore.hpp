#pragma once

#include <string>

#include "ChartStore.hpp"

namespace caudalis::cli {

/// Charts in the project database, with nozzle models joined from the catalogue database.
///
/// NOT BUILT YET: the library's chart persistence is not part of this build, so every
/// operation raises "chart database support is not built yet".
class DatabaseChartStore : public ChartStore {
public:
    DatabaseChartStore(std::string projectPath, std::string cataloguePath);
    Long saveAsNew(const std::shared_ptr<CartaAspersores>& chart, const std::string& name) override;
    std::vector<CartaInfo> list() override;
    std::shared_ptr<CartaAspersores> find(Long id) override;
    void destroy(Long id) override;

private:
    std::string projectPath_;
    std::string cataloguePath_;
};

}  // namespace caudalis::cli
