#pragma once

#include <map>
#include <string>

#include "caudalis/core/Basic.hpp"
#include "caudalis/core/Collection.hpp"

namespace caudalis::testing {

/// Nozzles like those of the sample catalogue, made with `AspersoresStatic::newAspersor`:
/// flow = a * pressure^0.5 (kPa, l/s). Sprays of "Aquarion" (model "AQ Spray"), rotators of
/// "Rotaflux" ("RF Rotator") and "Nimbra" ("NB Wobbler") cover 0.05-1.5 l/s at 50-300 kPa;
/// end guns of "Vellora" ("VL Gun") cover 2-8 l/s at 200-500 kPa.
CollectionRef sampleNozzles();

/// Every nozzle of the shipped sample catalogue (data/sample), read once from a catalogue
/// database made for the test program.
CollectionRef sampleCatalogue();

/// The wetted diameter of every model of the shipped sample catalogue, by model id.
std::map<Long, double> sampleWettedDiameters();

/// The path of a file shipped with the sources.
std::string sourcePath(const std::string& relative);

}  // namespace caudalis::testing
