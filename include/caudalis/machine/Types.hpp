#pragma once

#include <memory>

#include "caudalis/core/Records.hpp"

namespace caudalis {

/// Operations on the end gun, on span placements and on the water an outlet lays on the ground.
/// Stateless; the library keeps three distinct shared instances (behind `Statics::Gun`,
/// `Statics::Placements` and `Statics::Saidas`) besides the application object.
class Types {
public:
    /// The application object.
    static std::shared_ptr<Types> application();
    /// The shared instance behind `Statics::Gun`.
    static std::shared_ptr<Types> gunInstance();
    /// The shared instance behind `Statics::Placements`, used by the span operations.
    static std::shared_ptr<Types> placementsInstance();
    /// The shared instance behind `Statics::Saidas`.
    static std::shared_ptr<Types> saidasInstance();

    /// A gun with its ring width `rs` and an all-zero outlet.
    caudalis::Gun newGun(Double rs) const;
    /// True exactly when `rs` > 0.
    bool isComplete(const caudalis::Gun& self) const;

    /// A placement from its two elevations and length; both caches 0.
    caudalis::Placement newPlacement(Double start_cota, Double end_cota, Double Length) const;
    /// A placement given by its slope angle (radians): end = sin(angle) x Length + start_cota,
    /// NaN when the angle is the library's NaN. The angle itself is not cached.
    caudalis::Placement newVirtualPlacement(Double start_cota, Double angle, Double Length) const;
    /// The slope angle, cached in `p_angle` (written back). An invalid placement gets NaN, which
    /// then stays until the placement is rebuilt; a flat one keeps 0 and is recomputed.
    Double SlopeAngle(caudalis::Placement& self) const;
    /// The tangent of the slope angle, cached in `p_slope` (written back, as is `p_angle`).
    Double Slope(caudalis::Placement& self) const;
    /// The rise is not NaN and |rise| < Length (a NaN Length counts as valid).
    bool isValid(const caudalis::Placement& self) const;

    /// The depth the fitted sprinkler's flow (`caudal_do_aspersor`) lays in one revolution on
    /// the ring of width `coroaLength` at the outlet's distance from the centre.
    WaterDepthSample ActualWaterDepthSample(const caudalis::saida& self, Double coroaLength,
                                            Double revolutionTime) const;
    /// The same for the flow the outlet should deliver (`caudal`).
    WaterDepthSample IdealWaterDepthSample(const caudalis::saida& self, Double coroaLength,
                                           Double revolutionTime) const;

private:
    WaterDepthSample waterDepthSample(const caudalis::saida& self, Double q, Double coroaLength,
                                      Double revolutionTime) const;
    static Double waterDepthFromFlow(const caudalis::saida& self, Double q, Double coroaLength,
                                     Double revolutionTime);
};

}  // namespace caudalis
