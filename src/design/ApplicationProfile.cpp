#include "caudalis/design/ApplicationProfile.hpp"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <stdexcept>

#include "caudalis/evaluation/WaterDepths.hpp"

namespace caudalis::design {

ApplicationProfile::ApplicationProfile(std::vector<SprinklerSource> sprinklers, double revolutionTimeH)
    : sprinklers_(std::move(sprinklers)), revolutionTimeH_(revolutionTimeH) {
    if (revolutionTimeH <= 0) {
        throw std::invalid_argument("the revolution time must be greater than 0 h");
    }
    for (const auto& sprinkler : sprinklers_) {
        if (sprinkler.distanceM <= 0 || sprinkler.wettedRadiusM <= 0) {
            throw std::invalid_argument(
                "every sprinkler needs a distance and a wetted radius greater than 0 m");
        }
    }
}

double ApplicationProfile::patternShape(double offsetM, double wettedRadiusM) {
    const double x = offsetM / wettedRadiusM;
    return std::abs(x) >= 1 ? 0.0 : std::sqrt(1 - x * x);
}

double ApplicationProfile::depthAt(double distanceM) const {
    double depth = 0;
    for (const auto& s : sprinklers_) {
        const double shape = patternShape(distanceM - s.distanceM, s.wettedRadiusM);
        if (shape > 0) {
            const double litres = s.flowLps * 3600 * revolutionTimeH_;
            const double bandArea =
                2 * std::numbers::pi * s.distanceM * (std::numbers::pi * s.wettedRadiusM / 2);
            depth += litres / bandArea * shape;
        }
    }
    return depth;
}

std::vector<std::pair<double, double>> ApplicationProfile::along(double fromM, double toM,
                                                                 double stepM) const {
    if (stepM <= 0) {
        throw std::invalid_argument("the step of the profile must be greater than 0 m");
    }
    std::vector<std::pair<double, double>> points;
    for (long i = 0;; ++i) {
        const double distance = fromM + static_cast<double>(i) * stepM;
        if (distance > toM + 1e-9) {
            break;
        }
        points.emplace_back(distance, depthAt(distance));
    }
    return points;
}

BoundedArray<WaterDepthSample> ApplicationProfile::samples(double fromM, double toM, double stepM) const {
    // One point short of the most, so that rounding in the walk cannot add one past it.
    const double widest = (toM - fromM) / static_cast<double>(maxSamples - 2);
    const auto points = along(fromM, toM, std::max(stepM, widest));
    BoundedArray<WaterDepthSample> list;
    if (points.empty()) {
        return list;
    }
    list.redim(1, static_cast<Long>(points.size()));
    const auto depths = WaterDepths::shared();
    for (std::size_t i = 0; i < points.size(); ++i) {
        list(static_cast<Long>(i + 1)) = depths->newWaterDepthSample(points[i].second, points[i].first);
    }
    return list;
}

}  // namespace caudalis::design
