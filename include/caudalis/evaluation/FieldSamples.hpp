#pragma once

#include <memory>
#include <string>

#include "caudalis/core/BoundedArray.hpp"
#include "caudalis/core/Records.hpp"

namespace caudalis {

/// Catch-can readings: validity, a one-line text form ("amount distance", numbers with "." as
/// decimal point) and conversion to water depths through a rain gauge's opening area. Arrays of
/// readings are 1-based.
class FieldSamples {
public:
    /// The library-wide instance.
    static std::shared_ptr<FieldSamples> shared();

    /// `collectedAmount` = `depth`, `distanceFromCenter` = `distance`; no checks.
    FieldSample newFieldSample(Double depth, Double distance) const;
    /// amount >= 0 and distance > 0 (NaN in either field is invalid).
    bool Valid(const FieldSample& self) const;
    /// Reads the text form. Spaces around it are ignored and the two numbers are separated by
    /// exactly one space; each number is read from the start of its piece ("." as decimal
    /// point), a piece that does not start with a number reads as 0, and a text with fewer than
    /// two pieces gives the all-zero reading. Never fails.
    FieldSample Parse(const String& stringRepresentation) const;
    /// The amount, one space and the distance, each with "." as decimal point.
    String serialize(const FieldSample& self) const;
    /// The valid readings, in their order.
    BoundedArray<FieldSample> FilterValid(const BoundedArray<FieldSample>& collection) const;
    /// `ToWaterDepth` of every reading, position by position. The gauge's area is cached in
    /// `usedPluviometro` once a valid reading needs it.
    BoundedArray<WaterDepthSample> CollectionToWaterDepth(const BoundedArray<FieldSample>& collection,
                                                          Pluviometro& usedPluviometro) const;
    /// The depth caught in the gauge (amount / (area x 1000)) at the reading's distance, or the
    /// null sample for an invalid reading, in which case the gauge is not looked at.
    WaterDepthSample ToWaterDepth(const FieldSample& self, Pluviometro& usedPluviometro) const;
};

}  // namespace caudalis
