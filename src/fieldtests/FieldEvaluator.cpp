#include "caudalis/fieldtests/FieldEvaluator.hpp"

#include <algorithm>
#include <cmath>

#include "caudalis/core/Checked.hpp"
#include "caudalis/evaluation/WaterDepths.hpp"
#include "caudalis/fieldtests/ReadingsError.hpp"

namespace caudalis::design {

namespace {

std::vector<WaterDepthSample> depthsOf(const std::vector<FieldReading>& line) {
    std::vector<WaterDepthSample> depths;
    for (const auto& reading : line) {
        depths.push_back(reading.depth);
    }
    return depths;
}

std::vector<std::vector<WaterDepthSample>> depthsOf(const std::vector<std::vector<FieldReading>>& lines) {
    std::vector<std::vector<WaterDepthSample>> depths;
    for (const auto& line : lines) {
        if (!line.empty()) {
            depths.push_back(depthsOf(line));
        }
    }
    return depths;
}

void sortByDistance(std::vector<FieldReading>& line) {
    std::stable_sort(line.begin(), line.end(), [](const FieldReading& a, const FieldReading& b) {
        return a.depth.distanceFromCenter < b.depth.distanceFromCenter;
    });
}

bool anyCollector(const std::vector<std::vector<FieldReading>>& lines) {
    return std::any_of(lines.begin(), lines.end(), [](const auto& line) { return !line.empty(); });
}

}  // namespace

void FieldEvaluator::sortOut(const FieldReadings& readings, FieldEvaluationResult& result,
                             std::vector<std::vector<FieldReading>>& endGun) {
    const auto& settings = result.settings;
    const auto depths = WaterDepths::shared();
    for (const auto& reading : readings.readings) {
        const double distance = reading.depth.distanceFromCenter;
        if (!depths->Valid(reading.depth)) {
            result.excluded.push_back({reading, ExclusionReason::Invalid});
        } else if (!reading.crewExclusion.empty()) {
            result.excluded.push_back({reading, ExclusionReason::CrewFlag});
        } else if (distance < settings.innerRadiusM) {
            result.excluded.push_back({reading, ExclusionReason::InsideRadius});
        } else if (settings.lastSpanEndM && distance > *settings.lastSpanEndM) {
            endGun[static_cast<std::size_t>(reading.line - 1)].push_back(reading);
        } else {
            result.counted[static_cast<std::size_t>(reading.line - 1)].push_back(reading);
        }
    }
    for (auto* lines : {&result.counted, &endGun}) {
        for (auto& line : *lines) {
            sortByDistance(line);
        }
    }
}

void FieldEvaluator::findOutliers(FieldEvaluationResult& result) {
    const auto mean = result.together.meanDepthMm;
    if (!mean || *mean <= 0) {
        return;
    }
    for (const auto& line : result.counted) {
        for (const auto& reading : line) {
            const double deviation = checked::mul(checked::div(reading.depth.depth - *mean, *mean), 100.0);
            if (std::fabs(deviation) > result.settings.outlierPercent) {
                result.outliers.push_back({reading, deviation});
            }
        }
    }
}

FieldEvaluationResult FieldEvaluator::evaluate(const FieldReadings& readings,
                                               const FieldEvaluationSettings& settings) {
    FieldEvaluationResult result;
    result.settings = settings;
    result.readings = static_cast<long>(readings.readings.size());
    result.lineNames = readings.lineNames;
    if (result.readings > maxReadings) {
        throw ReadingsError(readings.readings.front().source,
                            std::to_string(result.readings) + " readings, more than the " +
                                std::to_string(maxReadings) + " an evaluation can hold");
    }
    const auto lineCount = std::max<std::size_t>(readings.lineNames.size(), 1);
    result.counted.resize(lineCount);
    std::vector<std::vector<FieldReading>> endGun(lineCount);
    sortOut(readings, result, endGun);
    if (!anyCollector(result.counted)) {
        throw ReadingsError(
            readings.readings.empty() ? std::string("readings") : readings.readings.front().source,
            "no reading counts (an amount >= 0 at a distance > 0, not struck out, beyond the "
            "inner radius and inside the last span)");
    }
    std::vector<CatchCanFigures> perLine;
    for (std::size_t i = 0; i < lineCount; ++i) {
        if (!result.counted[i].empty()) {
            const auto name = readings.lineName(static_cast<int>(i + 1));
            result.lines.push_back(
                {static_cast<int>(i + 1), name, CatchCanStatistics::of({depthsOf(result.counted[i])})});
            perLine.push_back(result.lines.back().figures);
        }
    }
    result.lineAverage = CatchCanStatistics::averageOf(perLine);
    result.together = CatchCanStatistics::of(depthsOf(result.counted));
    if (anyCollector(endGun)) {
        result.endGunZone = CatchCanStatistics::of(depthsOf(endGun));
    }
    if (settings.expectedDepthMm && *settings.expectedDepthMm > 0 && result.together.meanDepthMm) {
        result.appliedPercentOfExpected = 100 * *result.together.meanDepthMm / *settings.expectedDepthMm;
    }
    findOutliers(result);
    return result;
}

}  // namespace caudalis::design
