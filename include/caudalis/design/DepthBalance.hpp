#pragma once

#include <string>
#include <vector>

#include "caudalis/design/UnitText.hpp"

namespace caudalis::design {

/// One outlet's share of the irrigated circle: the ring of ground of width `ringWidthM` at its
/// distance (the outlet spacing of its span, or the end gun's ring width) and the flow it gives.
struct OutletRing {
    double distanceM = 0;
    double ringWidthM = 0;
    double flowLps = 0;
};

/// Three ways of stating the depth per revolution, which differ for a real machine.
struct DepthFigures {
    /// Total discharge x revolution time / area of the irrigated circle (mm).
    double volumeOverAreaMm = 0;
    /// Mean of the outlets' depths (each q x 3600 x T over its ring 2 pi r w), weighted by their
    /// distances only, as the uniformity statistics weight samples (mm).
    double distanceWeightedMeanMm = 0;
    /// The outlets' volume over the total area of their rings (mm).
    double ringAreaMeanMm = 0;
    double ringsAreaM2 = 0;
    double irrigatedAreaM2 = 0;
    /// The end gun's share (or the widest ring's) in the distance weights and in the ring area.
    double widestRingWeightShare = 0;
    double widestRingAreaShare = 0;
};

/// Explains why the depth per revolution printed from the outlets' depths differs from volume
/// over area. A distance-weighted mean counts every outlet as if its ring were as wide as any
/// other: the end gun, whose ring is several outlet spacings wide, weighs like one outlet,
/// although it waters far more ground. Weighting by ring area instead gives the outlets' volume
/// over the area of their rings, which differs from volume over area only where the rings do
/// not tile the circle exactly (near the centre, where the first outlet stands beyond half a
/// spacing, and at the boundaries between spans of different spacing).
class DepthBalance {
public:
    /// Raises `std::invalid_argument` when there are no rings, a ring has no width or distance,
    /// or the revolution time or irrigated area is not positive.
    static DepthFigures compute(const std::vector<OutletRing>& rings, double dischargeLps,
                                double revolutionTimeH, double irrigatedAreaM2);
    /// A paragraph for a report: the three figures, in the units of `text`, and where they part.
    static std::string explanation(const DepthFigures& figures, const UnitText& text);
};

}  // namespace caudalis::design
