#pragma once

#include <utility>
#include <vector>

#include "caudalis/core/BoundedArray.hpp"
#include "caudalis/core/Records.hpp"

namespace caudalis::design {

/// One sprinkler as the profile sees it: where it turns, what it gives, how far it throws.
struct SprinklerSource {
    double distanceM = 0;
    double flowLps = 0;
    /// Half the wetted diameter.
    double wettedRadiusM = 0;
};

/// The depth a centre pivot lays along its radius in one revolution, with the patterns of
/// neighbouring sprinklers overlapping, as a catch-can line under the machine would see it.
///
/// Pattern shape. A sprinkler is taken to wet a circle of radius R evenly. As the machine carries
/// it past a point at radial offset x from its path, the point stays under it for a time
/// proportional to the chord 2 sqrt(R^2 - x^2), so the depth it lays across its path is a half
/// ellipse, d(x) = d0 sqrt(1 - (x / R)^2) for |x| < R, and 0 beyond. The same elliptical shape,
/// taken along the travel, gives the 4 / pi peak-rate factor of the machine's peak application
/// rate.
///
/// Scale. A sprinkler at distance r giving q l/s over a revolution of T hours lays a volume
/// V = q x 3600 x T litres on the band it sweeps, whose area, weighted by the pattern, is
/// 2 pi r x (pi R / 2) m2, so d0 = V / (2 pi r x pi R / 2) mm. Near the centre, where r < R,
/// the band would reach past the centre; the formula is kept there (the first metres of a
/// machine carry few and small sprinklers).
///
/// The depth at a point is the sum of the patterns of every sprinkler that reaches it.
class ApplicationProfile {
public:
    /// Raises `std::invalid_argument` when the revolution time is not positive or a sprinkler
    /// has no distance or no wetted radius.
    ApplicationProfile(std::vector<SprinklerSource> sprinklers, double revolutionTimeH);

    /// Relative depth d(x) / d0 of the pattern at offset x from the sprinkler's path.
    static double patternShape(double offsetM, double wettedRadiusM);
    /// Depth per revolution (mm) at distance `distanceM` from the centre.
    double depthAt(double distanceM) const;
    /// (distance, depth) every `stepM` metres from `fromM` up to and including `toM` (when a
    /// step lands on it).
    std::vector<std::pair<double, double>> along(double fromM, double toM, double stepM) const;
    /// The same points as water-depth samples (1-based), ready for the uniformity figures. The
    /// step widens where `stepM` would give more than `maxSamples` points.
    BoundedArray<WaterDepthSample> samples(double fromM, double toM, double stepM) const;

    /// The most samples the water-depth statistics count (their counters are 16-bit).
    static constexpr long maxSamples = 32767;

private:
    std::vector<SprinklerSource> sprinklers_;
    double revolutionTimeH_;
};

}  // namespace caudalis::design
