#pragma once

#include <optional>
#include <string>
#include <vector>

#include "caudalis/fieldtests/CatchCanStatistics.hpp"
#include "caudalis/fieldtests/FieldReadings.hpp"

namespace caudalis::design {

/// What a field evaluation leaves out of its figures, and what it reports apart.
struct FieldEvaluationSettings {
    /// Collectors nearer the centre than this (m) are left out: the first part of the radius,
    /// where few collectors stand for little area and the first outlets are plugged.
    double innerRadiusM = 0;
    /// The radius (m) where the last span (the overhang included) ends; collectors beyond it
    /// stand in the end-gun zone, whose figures are reported apart.
    std::optional<double> lastSpanEndM;
    /// A collector more than this many % off the mean depth is listed.
    double outlierPercent = 20;
    /// The depth (mm) the machine should apply at the timer setting of the test.
    std::optional<double> expectedDepthMm;
};

/// Why a reading counts in no figure.
enum class ExclusionReason { Invalid, CrewFlag, InsideRadius };

struct ExcludedReading {
    FieldReading reading;
    ExclusionReason reason = ExclusionReason::Invalid;
};

/// One radial line's figures.
struct LineFigures {
    int line = 1;
    std::string name;
    CatchCanFigures figures;
};

/// A collector whose depth lies more than `FieldEvaluationSettings::outlierPercent` off the
/// mean of the collectors that count.
struct OutlierReading {
    FieldReading reading;
    double deviationPercent = 0;
};

/// Everything a field evaluation finds.
struct FieldEvaluationResult {
    FieldEvaluationSettings settings;
    long readings = 0;
    /// Each line's figures, in line order, over the collectors that count.
    std::vector<LineFigures> lines;
    /// The mean of the lines' figures (the one line's figures for a single line).
    CatchCanFigures lineAverage;
    /// The figures of the collectors of both lines taken together.
    CatchCanFigures together;
    /// The figures of the collectors beyond the last span, when there are any.
    std::optional<CatchCanFigures> endGunZone;
    std::vector<ExcludedReading> excluded;
    std::vector<OutlierReading> outliers;
    /// The mean depth of the collectors that count in % of the expected depth.
    std::optional<double> appliedPercentOfExpected;
    /// The readings that count, per line and ordered by distance, as depths.
    std::vector<std::vector<FieldReading>> counted;
    /// The crew's names of the lines, in the order of their numbers.
    std::vector<std::string> lineNames;

    /// The crew's name of line `line` (its number when the readings name none).
    std::string lineName(int line) const { return lineNameOf(lineNames, line); }
};

}  // namespace caudalis::design
