#pragma once

#include <string>

#include "caudalis/project/ChartStore.hpp"
#include "caudalis/project/DatabaseFile.hpp"

namespace caudalis {
class Connection;
}

namespace caudalis::project {

/// Charts in the project database, with nozzle models joined from the catalogue database.
/// Both files are checked before they are used. A chart is stored with its figures and design
/// file in one transaction, and deleted with them in another, so a failure (or the end of the
/// process) at any point leaves the project database as it was.
class DatabaseChartStore : public ChartStore {
public:
    DatabaseChartStore(std::string projectPath, std::string cataloguePath);
    void requireNameIsFree(const std::string& name, Long system) override;
    Long saveAsNew(const std::shared_ptr<CartaAspersores>& chart, const std::string& name, Long system,
                   const design::ChartFigures& figures) override;
    std::vector<StoredChart> list(std::optional<Long> system) override;
    LoadedChart find(Long id) override;
    void destroy(Long id) override;
    design::RebuiltChart rebuild(Long id, const std::map<Long, double>& wettedDiameters) override;

private:
    /// Runs a library call on the project database, turning its errors into `InputError`.
    template <class Work>
    auto onProject(const std::string& what, Work work);
    std::vector<StoredChart> listOf(Long system);
    /// The system of chart `id`; raises `InputError` when there is no such chart.
    Long systemOf(Long id);
    /// The catalogue as the library's chart operations join it.
    std::string catalogueName();
    /// Stores the chart and its figures in one transaction on a connection of its own; the
    /// caller turns errors into messages.
    void storeTogether(CartaAspersores& chart, Long system, const design::ChartFigures& figures);

    DatabaseFile project_;
    DatabaseFile catalogue_;
};

}  // namespace caudalis::project
