#pragma once

#include <string>

#include "caudalis/design/DesignResult.hpp"

namespace caudalis::design {

/// The outlet's address as a chart prints it: "3-12", or "gun" for the end gun.
std::string outletLabel(const OutletResult& outlet);
/// The address of a mounted sprinkler's outlet in the same form: "3-12", or "gun".
std::string outletLabel(const CoordenadasSaida& place);
/// The regulator the design file lists for the outlet's span; none when the outlet is not
/// regulated or the regulator was chosen automatically.
const RegulatorDescription* regulatorOf(const DesignResult& result, const OutletResult& outlet);
/// "span", "overhang" or "end_gun".
std::string placeName(OutletPlace place);
/// Brand, model and nozzle designation of the outlet's nozzle; "-" when it has none.
std::string nozzleLabel(const saida& outlet);
/// A short sentence saying why an outlet got its nozzle or none ("closest flow within the
/// tolerance").
std::string reasonText(ChoiceReason reason);
/// The reason as a word for programs: "within_tolerance", "nearest_size",
/// "none_within_tolerance", "below_smallest_nozzle", "none_rated_for_pressure", "no_package".
std::string reasonCode(ChoiceReason reason);
/// The coefficient text of a nozzle (`Aspersor::a`, `b`) read back as a number.
double coefficientValue(const std::string& text);

}  // namespace caudalis::design
