#pragma once

#include "caudalis/core/Records.hpp"

namespace caudalis::design {

/// The units field crews write readings in, turned into the units of the library (m, mm, m²)
/// in this one place. Factors are the exact definitions of the inch and the foot.
class FieldUnits {
public:
    static constexpr double metresPerFoot = 0.3048;
    static constexpr double millimetresPerInch = 25.4;
    static constexpr double squareMetresPerSquareCentimetre = 1e-4;
    static constexpr double squareMetresPerSquareInch = 0.0254 * 0.0254;

    static constexpr double feetToMetres(double feet) { return feet * metresPerFoot; }
    static constexpr double inchesToMillimetres(double inches) { return inches * millimetresPerInch; }
    static constexpr double metresToFeet(double metres) { return metres / metresPerFoot; }
    static constexpr double millimetresToInches(double millimetres) {
        return millimetres / millimetresPerInch;
    }

    /// A gauge record (diameter in m) whose opening area is `areaM2`, so that the library's
    /// conversion of a volume into a depth (`FieldSamples::ToWaterDepth`) uses that very area.
    static Pluviometro gaugeOfArea(double areaM2);
};

}  // namespace caudalis::design
