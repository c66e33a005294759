#pragma once

#include "caudalis/core/Records.hpp"

namespace caudalis {

/// An `indicadores` record with the two figures and `id` 0.
indicadores makeIndicadores(Double horas, Integer nsaidas);

/// A `PivotSample` with its distance, wetted diameter and a copy of the code.
PivotSample makePivotSample(Double centerDistance, Double wetDiameter, const String& code);

/// A `KostiakovParameters` record with the two values.
KostiakovParameters makeKostiakovParameters(Double k, Double a);

}  // namespace caudalis
