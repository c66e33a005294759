#include "caudalis/design/FieldUnits.hpp"

#include <cmath>

#include "caudalis/core/Constants.hpp"
#include "caudalis/core/Records.hpp"

namespace caudalis::design {

Pluviometro FieldUnits::gaugeOfArea(double areaM2) {
    // The diameter is only there to make the gauge valid; the cached area is what counts.
    return Pluviometro{2 * std::sqrt(areaM2 / pi), areaM2};
}

}  // namespace caudalis::design
