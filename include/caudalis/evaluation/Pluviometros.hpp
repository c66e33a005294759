#pragma once

#include <memory>

#include "caudalis/core/Records.hpp"

namespace caudalis {

/// Rain gauges and the area of their opening.
class Pluviometros {
public:
    /// The library-wide instance.
    static std::shared_ptr<Pluviometros> shared();

    /// A gauge of the given diameter whose area is not computed yet (NaN).
    Pluviometro newPluviometro(Double diameter) const;
    /// The opening area, (diameter / 2)^2 x 3.14159265358979. Computed when `self.p_area` is
    /// NaN and then kept in `self.p_area`; a cached area is returned as it stands. Raises
    /// PluviometroIncompleteException for a gauge that is not valid.
    Double Area(Pluviometro& self) const;
    /// diameter > 0.
    bool Valid(const Pluviometro& self) const;
};

}  // namespace caudalis
