#include "caudalis/design/CatchCanStatistics.hpp"

#include "caudalis/core/Checked.hpp"
#include "caudalis/design/ReadingsText.hpp"
#include "caudalis/design/Uniformity.hpp"

namespace caudalis::design {

namespace {

std::vector<WaterDepthSample> joined(const std::vector<std::vector<WaterDepthSample>>& lines) {
    std::vector<WaterDepthSample> all;
    for (const auto& line : lines) {
        all.insert(all.end(), line.begin(), line.end());
    }
    return all;
}

std::optional<double> mean(const std::vector<std::optional<double>>& values) {
    if (values.empty()) {
        return std::nullopt;
    }
    double sum = 0;
    for (const auto& value : values) {
        if (!value) {
            return std::nullopt;
        }
        sum += *value;
    }
    return sum / static_cast<double>(values.size());
}

template <typename Field>
std::optional<double> meanOf(const std::vector<CatchCanFigures>& sets, Field field) {
    std::vector<std::optional<double>> values;
    for (const auto& set : sets) {
        values.push_back(set.*field);
    }
    return mean(values);
}

}  // namespace

std::optional<double> CatchCanStatistics::schedulingCoefficient(
    const BoundedArray<WaterDepthSample>& samples) {
    const auto average = Uniformity::meanDepth(samples);
    const auto quarter = Uniformity::lowQuarterMean(samples);
    if (!average || !quarter || *quarter <= 0) {
        return std::nullopt;
    }
    return checked::div(*average, *quarter);
}

std::vector<WaterDepthSample> CatchCanStatistics::movingAverage(const std::vector<WaterDepthSample>& line) {
    std::vector<WaterDepthSample> smoothed = line;
    for (std::size_t i = 0; i < line.size(); ++i) {
        const std::size_t first = i == 0 ? 0 : i - 1;
        const std::size_t last = i + 1 < line.size() ? i + 1 : i;
        double sum = 0;
        for (std::size_t j = first; j <= last; ++j) {
            sum += line[j].depth;
        }
        smoothed[i].depth = sum / static_cast<double>(last - first + 1);
    }
    return smoothed;
}

CatchCanFigures CatchCanStatistics::of(const std::vector<std::vector<WaterDepthSample>>& lines) {
    std::vector<std::vector<WaterDepthSample>> smoothed;
    for (const auto& line : lines) {
        smoothed.push_back(movingAverage(line));
    }
    const auto all = ReadingsTextTools::oneBased(joined(lines));
    CatchCanFigures figures;
    figures.collectors = all.count();
    figures.meanDepthMm = Uniformity::meanDepth(all);
    figures.lowQuarterMeanMm = Uniformity::lowQuarterMean(all);
    figures.cuHeermannHein = Uniformity::heermannHein(all);
    figures.duLowQuarter = Uniformity::lowQuarter(all);
    figures.schedulingCoefficient = schedulingCoefficient(all);
    figures.cuMovingAverage = Uniformity::heermannHein(ReadingsTextTools::oneBased(joined(smoothed)));
    return figures;
}

std::vector<std::pair<std::string, std::optional<double>>> CatchCanStatistics::named(
    const CatchCanFigures& figures) {
    return {
        {"collectors", static_cast<double>(figures.collectors)},
        {"mean_depth_mm", figures.meanDepthMm},
        {"low_quarter_mean_mm", figures.lowQuarterMeanMm},
        {"cu_hh_percent", figures.cuHeermannHein},
        {"du_lq_percent", figures.duLowQuarter},
        {"scheduling_coefficient", figures.schedulingCoefficient},
        {"cu_moving_average_percent", figures.cuMovingAverage},
    };
}

CatchCanFigures CatchCanStatistics::averageOf(const std::vector<CatchCanFigures>& sets) {
    CatchCanFigures average;
    for (const auto& set : sets) {
        average.collectors += set.collectors;
    }
    average.meanDepthMm = meanOf(sets, &CatchCanFigures::meanDepthMm);
    average.lowQuarterMeanMm = meanOf(sets, &CatchCanFigures::lowQuarterMeanMm);
    average.cuHeermannHein = meanOf(sets, &CatchCanFigures::cuHeermannHein);
    average.duLowQuarter = meanOf(sets, &CatchCanFigures::duLowQuarter);
    average.schedulingCoefficient = meanOf(sets, &CatchCanFigures::schedulingCoefficient);
    average.cuMovingAverage = meanOf(sets, &CatchCanFigures::cuMovingAverage);
    return average;
}

}  // namespace caudalis::design
