#pragma once

#include "caudalis/core/Records.hpp"
#include "caudalis/design/DesignDescription.hpp"

namespace caudalis::design {

/// Turns a design description into the library's `pivot` record: spans made by
/// `Tramos::newTramo` and laid from the centre elevation over their end elevations, the
/// overhang continuing the last span's slope, the end gun, inlet pressure, design flow and
/// pipe roughness.
class MachineBuilder {
public:
    pivot build(const DesignDescription& design) const;

private:
    static tramo makeSpan(const SpanDescription& span);
};

}  // namespace caudalis::design
