#include "OutletCount.hpp"

#include "caudalis/core/Variant.hpp"
#include "caudalis/machine/Tramos.hpp"

namespace caudalis {

Integer outletLoopCount(tramo& aTramo) {
    return Variant(Tramos::shared()->OutletCount(aTramo)).toInteger();
}

}  // namespace caudalis
