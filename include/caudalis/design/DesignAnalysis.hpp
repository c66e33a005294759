#pragma once

#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "caudalis/core/Records.hpp"
#include "caudalis/design/DepthBalance.hpp"
#include "caudalis/design/Finding.hpp"
#include "caudalis/design/RunoffCheck.hpp"

namespace caudalis::design {

/// The machine's ground: the highest and lowest outlet, the centre, and where the top is.
struct ElevationRange {
    double highestM = 0;
    double lowestM = 0;
    double atPivotM = 0;
    /// Distance from the centre of the highest point (0 when it is the centre).
    double highestAtM = 0;
};

/// A runoff estimate with the place it was made for.
struct RunoffAtPoint {
    std::string code;
    RunoffEstimate estimate;
};

/// What the design report adds to a computed design: pipe pressures, the ground, the timer
/// table, the depth per revolution stated three ways, runoff, and the application profile of
/// the overlapping sprinkler patterns with the uniformity it gives.
struct DesignAnalysis {
    /// The pipe pressure at each outlet (kPa), in the order of `DesignResult::outlets`.
    std::vector<double> pipePressuresKpa;
    ElevationRange elevation;
    caixaVelocidades speeds;
    std::optional<DepthFigures> depths;
    /// The peak rate against the soil at the pluviometry check points and at every fitted span
    /// outlet whose model's wetted diameter is known; empty without a usable Kostiakov law.
    std::vector<RunoffAtPoint> runoffAtCheckPoints;
    std::vector<RunoffAtPoint> runoffAlongMachine;
    /// (distance m, depth mm) every half metre, from the application profile.
    std::vector<std::pair<double, double>> profile;
    std::optional<double> profileUniformityCoefficient;
    std::optional<double> profileLowQuarterUniformity;
    /// Models fitted on the machine whose wetted diameter the catalogue does not give.
    std::vector<std::string> modelsWithoutWettedDiameter;
    /// Runoff, depth and profile findings, to be listed with the design's own.
    std::vector<Finding> findings;
};

}  // namespace caudalis::design
