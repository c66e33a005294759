#include "caudalis/hydraulics/PivotApplier.hpp"

namespace caudalis {

void PivotApplier::apply(pivot& /*apivot*/) {}

}  // namespace caudalis
