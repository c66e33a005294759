#include "caudalis/design/RunoffCheck.hpp"

#include <cmath>
#include <numbers>
#include <stdexcept>
#include <string>

namespace caudalis::design {

namespace {

constexpr int integrationSteps = 20000;

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
    const double step = duration / integrationSteps;
    for (int i = 0; i < integrationSteps; ++i) {
        const double t = (i + 0.5) * step;
        const double excess = applicationRateMmH(peakRateMmH, duration, t) - intakeRateMmH(t);
        if (excess > 0) {
            estimate.runoffMm += excess * step;
            if (!estimate.runoffStartsH) {
                estimate.runoffStartsH = i * step;
            }
        }
    }
    estimate.verdict =
        estimate.runoffMm >= runoffThresholdMm ? RunoffVerdict::Runoff : RunoffVerdict::NoRunoff;
    return estimate;
}

}  // namespace caudalis::design
