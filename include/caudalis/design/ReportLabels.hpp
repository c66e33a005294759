#pragma once

#include <string>

#include "caudalis/design/DesignResult.hpp"

namespace caudalis::design {

/// The outlet's address as a chart prints it: "3-12", or "gun" for the end gun.
std::string outletLabel(const OutletResult& outlet);
/// "span", "overhang" or "end_gun".
std::string placeName(OutletPlace place);
/// Brand, model and nozzle designation of the outlet's nozzle; "-" when it has none.
std::string nozzleLabel(const saida& outlet);
/// The coefficient text of a nozzle (`Aspersor::a`, `b`) read back as a number.
double coefficientValue(const std::string& text);

}  // namespace caudalis::design
