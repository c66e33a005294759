#pragma once

#include <string>

#include "caudalis/db/Connection.hpp"
#include "caudalis/design/NozzleSource.hpp"
#include "caudalis/design/WettedDiameters.hpp"
#include "caudalis/project/CatalogueDatabase.hpp"

namespace caudalis::project {

/// Nozzles read from a catalogue database (tables `Boquillas`, `Modelos`, `marca`) through
/// `AspersoresStatic::find`, `find_by_marca` and `find_by_modelo`.
class CatalogueDatabaseNozzleSource : public design::NozzleSource {
public:
    explicit CatalogueDatabaseNozzleSource(std::string databasePath) : catalogue_(std::move(databasePath)) {}
    CollectionRef nozzles(const design::NozzleSelection& selection) override {
        return catalogue_.nozzles(selection);
    }
    /// The catalogue's `model_wetted_diameters`; none for a catalogue made without that table.
    std::map<Long, double> wettedDiameters() override {
        Connection connection(catalogue_.file().connectionString());
        connection.Open();
        return design::WettedDiameters::load(connection);
    }
    const std::string& databasePath() const noexcept { return catalogue_.file().path(); }

private:
    CatalogueDatabase catalogue_;
};

}  // namespace caudalis::project
