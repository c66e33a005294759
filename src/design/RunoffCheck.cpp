#include "caudalis/design/RunoffCheck.hpp"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <stdexcept>
#include <string>

namespace caudalis::design {

namespace {

constexpr int integrationSteps = 20000;

/// Steps looked at together when deciding that none of them can run off.
constexpr int blockSteps = 100;

/// A little more than the relative error of the intake rate as computed (one rounding of the
/// product and the power's), so that a bound that leaves this margin holds for the computed value.
constexpr double intakeMargin = 1e-12;

std::string text(double value) {
    std::string result = std::to_string(value);
    result.erase(result.find_last_not_of('0') + 1);
    if (!result.empty() && result.back() == '.') {
        result.pop_back();
    }
    return result;
}

void require(bool condition, const std::string& what, double value) {
    if (!condition) {
        throw std::invalid_argument(what + ", got " + text(value));
    }
}

}  // namespace

RunoffCheck::RunoffCheck(const KostiakovParameters& soil, double revolutionTimeH)
    : soil_(soil), revolutionTimeH_(revolutionTimeH) {
    require(soil.k > 0, "the Kostiakov coefficient k must be greater than 0", soil.k);
    require(soil.a > 0 && soil.a <= 1, "the Kostiakov exponent a must be greater than 0 and at most 1",
            soil.a);
    require(revolutionTimeH > 0, "the revolution time must be greater than 0 h", revolutionTimeH);
}

double RunoffCheck::infiltrationMm(double hours) const {
    return soil_.k * std::pow(hours, soil_.a);
}

double RunoffCheck::intakeRateMmH(double hours) const {
    return soil_.a * soil_.k * std::pow(hours, soil_.a - 1);
}

double RunoffCheck::applicationTimeH(double distanceM, double wettedDiameterM) const {
    return wettedDiameterM * revolutionTimeH_ / (2 * std::numbers::pi * distanceM);
}

double RunoffCheck::applicationRateMmH(double peakRateMmH, double durationH, double hours) {
    const double u = 2 * hours / durationH - 1;
    return u <= -1 || u >= 1 ? 0.0 : peakRateMmH * std::sqrt(1 - u * u);
}

RunoffEstimate RunoffCheck::at(double distanceM, double wettedDiameterM, double peakRateMmH) const {
    require(distanceM > 0, "the distance from the centre must be greater than 0 m", distanceM);
    require(wettedDiameterM > 0, "the wetted diameter must be greater than 0 m", wettedDiameterM);
    require(peakRateMmH >= 0, "the peak application rate must not be negative", peakRateMmH);
    RunoffEstimate estimate;
    estimate.distanceM = distanceM;
    estimate.wettedDiameterM = wettedDiameterM;
    estimate.peakRateMmH = peakRateMmH;
    const double duration = applicationTimeH(distanceM, wettedDiameterM);
    estimate.applicationTimeH = duration;
    estimate.appliedMm = std::numbers::pi / 4 * peakRateMmH * duration;
    estimate.infiltrationCapacityMm = infiltrationMm(duration);
    integrate(estimate, duration);
    estimate.verdict =
        estimate.runoffMm >= runoffThresholdMm ? RunoffVerdict::Runoff : RunoffVerdict::NoRunoff;
    return estimate;
}

double RunoffCheck::excessAt(const RunoffEstimate& estimate, double duration, double hours) const {
    return applicationRateMmH(estimate.peakRateMmH, duration, hours) - intakeRateMmH(hours);
}

bool RunoffCheck::blockStaysBelowIntake(const RunoffEstimate& estimate, double duration, double step,
                                        int first, int last) const {
    // The intake rate falls with time (a <= 1), so the block's last step has the lowest; the
    // elliptical rate is highest at the step whose u = 2 t / t_a - 1 is nearest zero, which is an
    // end of the block unless u changes sign inside it. Every rounding along both formulas is
    // monotonic, so these bounds hold for the values as computed too.
    const double lowestIntake = intakeRateMmH((last + 0.5) * step) * (1 - intakeMargin);
    const double firstU = 2 * ((first + 0.5) * step) / duration - 1;
    const double lastU = 2 * ((last + 0.5) * step) / duration - 1;
    double highestRate = estimate.peakRateMmH;
    if (firstU >= 0) {
        highestRate = applicationRateMmH(estimate.peakRateMmH, duration, (first + 0.5) * step);
    } else if (lastU <= 0) {
        highestRate = applicationRateMmH(estimate.peakRateMmH, duration, (last + 0.5) * step);
    }
    return highestRate < lowestIntake;
}

void RunoffCheck::integrate(RunoffEstimate& estimate, double duration) const {
    // Midpoint rule over the application. A step adds only where the rate applied exceeds the
    // intake rate; blocks of steps where it cannot are passed over, which leaves the sum, added
    // in the same order, and the start of runoff exactly as stepping through every one gives.
    const double step = duration / integrationSteps;
    for (int first = 0; first < integrationSteps; first += blockSteps) {
        const int last = std::min(first + blockSteps, integrationSteps) - 1;
        if (blockStaysBelowIntake(estimate, duration, step, first, last)) {
            continue;
        }
        for (int i = first; i <= last; ++i) {
            const double excess = excessAt(estimate, duration, (i + 0.5) * step);
            if (excess > 0) {
                estimate.runoffMm += excess * step;
                if (!estimate.runoffStartsH) {
                    estimate.runoffStartsH = i * step;
                }
            }
        }
    }
}

}  // namespace caudalis::design
