#pragma once

#include <map>

#include "caudalis/core/Basic.hpp"

namespace caudalis {
class Connection;
}

namespace caudalis::design {

/// The wetted diameter of each sprinkler model (metres), kept in the catalogue database's side
/// table `model_wetted_diameters` (`id_modelo`, `wetted_diameter_m`), one row per model.
class WettedDiameters {
public:
    /// Every stored diameter by model id. A catalogue without the side table (made before it
    /// existed) gives an empty map: no model's diameter is known.
    static std::map<Long, double> load(Connection& catalogue);
    /// Whether the catalogue has the side table.
    static bool available(Connection& catalogue);
    /// Stores or replaces the diameter of model `modelId`. Raises `std::invalid_argument` unless
    /// the diameter is greater than 0; database errors pass unchanged.
    static void store(Connection& catalogue, Long modelId, double wettedDiameterM);
};

}  // namespace caudalis::design
