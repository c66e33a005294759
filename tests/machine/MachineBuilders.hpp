#pragma once

#include <initializer_list>

#include "caudalis/core/BoundedArray.hpp"
#include "caudalis/core/Records.hpp"
#include "caudalis/machine/Tramos.hpp"

namespace caudalis::testing {

/// Outlet spacing of the spans built below, centimetres.
inline constexpr Double spacingCm = 250;

/// A span of `length` metres with outlets every 2.5 m, not yet placed.
inline tramo spanOfLength(Long id, Double length) {
    return Tramos::shared()->newTramo(id, "span", length, 168, spacingCm);
}

/// A span carrying exactly `outlets` outlets.
inline tramo spanWithOutlets(Long id, Integer outlets) {
    return spanOfLength(id, outlets * spacingCm / 100);
}

/// A 1-based list of spans.
inline BoundedArray<tramo> spanList(std::initializer_list<tramo> spans) {
    return BoundedArray<tramo>::of(spans);
}

/// A 1-based list of elevations.
inline BoundedArray<Double> heights(std::initializer_list<Double> values) {
    return BoundedArray<Double>::of(values);
}

}  // namespace caudalis::testing
