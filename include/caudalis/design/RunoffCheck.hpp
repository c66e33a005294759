#pragma once

#include <optional>

#include "caudalis/core/Records.hpp"

namespace caudalis::design {

/// Whether water is expected to run off at a point under the machine.
enum class RunoffVerdict { NoRunoff, Runoff };

/// What the runoff check finds at one point of the radius.
struct RunoffEstimate {
    double distanceM = 0;
    double wettedDiameterM = 0;
    /// Peak application rate under the sprinklers there (mm/h).
    double peakRateMmH = 0;
    /// How long the wetted strip takes to pass over the point (h).
    double applicationTimeH = 0;
    /// Depth applied while it passes: (pi / 4) x peak rate x application time (mm).
    double appliedMm = 0;
    /// Depth the soil can take in over the application time, k x t^a (mm).
    double infiltrationCapacityMm = 0;
    /// Depth applied faster than the soil takes it in (mm per revolution).
    double runoffMm = 0;
    /// When, after the strip's front arrives, the application rate first exceeds the intake
    /// rate (h); empty when it never does.
    std::optional<double> runoffStartsH;
    RunoffVerdict verdict = RunoffVerdict::NoRunoff;
};

/// Potential runoff under a moving centre pivot: the application rate at a point, as the
/// wetted strip passes over it, against the intake rate of the soil.
///
/// Application. A point at distance r from the centre is under the sprinklers' wetted strip of
/// width w while the machine turns through it: for t_a = w x T / (2 pi r) hours, T being the
/// revolution time. The rate over that time follows an ellipse,
///   i(t) = Ip x sqrt(1 - (2 t / t_a - 1)^2),  0 <= t <= t_a,
/// whose peak Ip is the machine's peak application rate there (`Pivots::pluviosidadeMaxima`:
/// Q / L^2 x 4 / pi x 3600 x r / (w / 2), the same elliptical pattern). The depth applied is
/// then (pi / 4) x Ip x t_a, the machine's gross depth per revolution.
///
/// Infiltration. Kostiakov's law gives the cumulative intake I(t) = k x t^a (I in mm, t in
/// hours since the water arrived, 0 < a <= 1); the intake rate is its derivative
/// f(t) = a x k x t^(a - 1) (mm/h).
///
/// Runoff. Water that arrives faster than the soil takes it in is counted as potential runoff,
///   R = integral over 0..t_a of max(0, i(t) - f(t)) dt   (mm per revolution),
/// with no credit for surface storage, as in Dillon, Hiler and Vittetoe's comparison of the
/// elliptical application pattern with intake curves. The integral is taken numerically
/// (midpoint rule, 20 000 steps). The verdict is `Runoff` when R is 0.05 mm or more.
///
/// References: R. C. Dillon, E. A. Hiler, G. Vittetoe, "Center-pivot sprinkler design based on
/// intake characteristics", Transactions of the ASAE 15(5), 996-1001, 1972; J. R. Gilley,
/// "Suitability of reduced pressure center-pivots", Journal of Irrigation and Drainage
/// Engineering 110(1), 22-34, 1984; University of Tennessee Extension publication W809F,
/// "Understanding Center Pivot Application Rate", 2019.
class RunoffCheck {
public:
    /// Raises `std::invalid_argument` naming the value unless k > 0, 0 < a <= 1 and the revolution
    /// time is > 0.
    RunoffCheck(const KostiakovParameters& soil, double revolutionTimeH);

    /// The check at distance r with the sprinklers' wetted diameter w there and the peak rate
    /// Ip. Raises `std::invalid_argument` unless r > 0, w > 0 and Ip >= 0.
    RunoffEstimate at(double distanceM, double wettedDiameterM, double peakRateMmH) const;

    /// Cumulative intake k x t^a (mm) after t hours.
    double infiltrationMm(double hours) const;
    /// Intake rate a x k x t^(a - 1) (mm/h) after t hours (> 0).
    double intakeRateMmH(double hours) const;
    /// t_a = w x T / (2 pi r), hours.
    double applicationTimeH(double distanceM, double wettedDiameterM) const;
    /// The elliptical application rate at time t of an application of `durationH` hours.
    static double applicationRateMmH(double peakRateMmH, double durationH, double hours);

    static constexpr double runoffThresholdMm = 0.05;

private:
    /// Adds up the runoff of an application of `duration` hours into `estimate`.
    void integrate(RunoffEstimate& estimate, double duration) const;
    /// The applied rate less the intake rate at `hours`.
    double excessAt(const RunoffEstimate& estimate, double duration, double hours) const;
    /// True when at no step `first`..`last` can the applied rate exceed the intake rate.
    bool blockStaysBelowIntake(const RunoffEstimate& estimate, double duration, double step, int first,
                               int last) const;

    KostiakovParameters soil_;
    double revolutionTimeH_;
};

}  // namespace caudalis::design
