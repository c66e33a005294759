#pragma once

#include "caudalis/core/Records.hpp"

namespace caudalis {

/// The span's outlet count as the 16-bit loop bound the computations use (6 beyond 32767).
/// Fills the span's cached count on first use.
Integer outletLoopCount(tramo& aTramo);

}  // namespace caudalis
