#pragma once

#include <string>

#include "CatalogueDatabase.hpp"
#include "caudalis/design/NozzleSource.hpp"

namespace caudalis::cli {

/// Nozzles read from a catalogue database (tables `Boquillas`, `Modelos`, `marca`) through
/// `AspersoresStatic::find`, `find_by_marca` and `find_by_modelo`.
class CatalogueDatabaseNozzleSource : public design::NozzleSource {
public:
    explicit CatalogueDatabaseNozzleSource(std::string databasePath) : catalogue_(std::move(databasePath)) {}
    CollectionRef nozzles(const design::NozzleSelection& selection) override {
        return catalogue_.nozzles(selection);
    }
    const std::string& databasePath() const noexcept { return catalogue_.file().path(); }

private:
    CatalogueDatabase catalogue_;
};

}  // namespace caudalis::cli
