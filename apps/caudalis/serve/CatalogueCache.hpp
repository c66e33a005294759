#pragma once

#include <memory>
#include <string>

#include "caudalis/design/NozzleSource.hpp"

namespace caudalis::web {

/// The server's only state: the nozzles and wetted diameters catalogues gave lately, so that a
/// design does not read the catalogue again (on PostgreSQL, dozens of round trips). An answer is
/// kept for `keptSeconds`, so that a catalogue imported through another server is seen soon;
/// an import through this one forgets everything at once. Failures are never kept.
class CatalogueCache {
public:
    static constexpr int keptSeconds = 30;

    /// A nozzle source of the catalogue database at `path` that answers from the cache.
    static std::unique_ptr<design::NozzleSource> source(const std::string& path);
    static void forget();
};

}  // namespace caudalis::web
