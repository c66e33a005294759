#pragma once

#include <string>

#include "NozzleSource.hpp"

namespace caudalis::cli {

/// Nozzles read from a catalogue database (tables `Boquillas`, `Modelos`, `marca`) through
/// `AspersoresStatic::find`, `find_by_marca` and `find_by_modelo`.
///
/// NOT BUILT YET: the library's database layer is not part of this build, so `nozzles`
/// raises "catalogue database support is not built yet". This class is the only place that
/// has to change once it is.
class CatalogueDatabaseNozzleSource : public NozzleSource {
public:
    explicit CatalogueDatabaseNozzleSource(std::string databasePath);
    CollectionRef nozzles(const NozzleSelection& selection) override;
    const std::string& databasePath() const noexcept { return databasePath_; }

private:
    std::string databasePath_;
};

}  // namespace caudalis::cli
