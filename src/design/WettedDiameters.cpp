#include "caudalis/design/WettedDiameters.hpp"

#include <stdexcept>
#include <string>

#include "caudalis/core/Error.hpp"
#include "caudalis/db/Connection.hpp"
#include "caudalis/db/SqlText.hpp"

namespace caudalis::design {

bool WettedDiameters::available(Connection& catalogue) {
    try {
        catalogue.Execute("SELECT id_modelo FROM model_wetted_diameters WHERE 1 = 0");
        return true;
    } catch (const Error&) {
        return false;
    }
}

std::map<Long, double> WettedDiameters::load(Connection& catalogue) {
    std::map<Long, double> diameters;
    if (!available(catalogue)) {
        return diameters;
    }
    const auto rows = catalogue.Execute("SELECT id_modelo, wetted_diameter_m FROM model_wetted_diameters");
    for (; !rows->EOF_(); rows->MoveNext()) {
        diameters[rows->Fields("id_modelo").toLong()] = rows->Fields("wetted_diameter_m").toDouble();
    }
    return diameters;
}

void WettedDiameters::store(Connection& catalogue, Long modelId, double wettedDiameterM) {
    if (!(wettedDiameterM > 0)) {
        throw std::invalid_argument("a wetted diameter must be greater than 0 m");
    }
    const auto id = std::to_string(modelId);
    catalogue.Execute("DELETE FROM model_wetted_diameters WHERE id_modelo = " + id);
    catalogue.Execute("INSERT INTO model_wetted_diameters (id_modelo, wetted_diameter_m) VALUES (" + id +
                      ", " + sqlDouble(wettedDiameterM) + ")");
}

}  // namespace caudalis::design
