#include "caudalis/fieldtests/CatchCanStatistics.hpp"

#include <algorithm>

#include "caudalis/core/Checked.hpp"
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

std::optional<double> CatchCanStatistics::driestRunMean(const std::vector<WaterDepthSample>& line,
                                                        double share) {
    double total = 0;
    for (const auto& sample : line) {
        total += sample.distanceFromCenter;
    }
    if (!(total > 0)) {
        return std::nullopt;
    }
    const double wanted = share * total;
    std::optional<double> driest;
    std::size_t last = 0;
    double weight = 0;
    double weighted = 0;
    for (std::size_t first = 0; first < line.size(); ++first) {
        while (weight < wanted && last < line.size()) {
            weight += line[last].distanceFromCenter;
            weighted += line[last].distanceFromCenter * line[last].depth;
            ++last;
        }
        if (weight < wanted) {
            break;
        }
        const double runMean = weighted / weight;
        driest = driest ? std::min(*driest, runMean) : runMean;
        weight -= line[first].distanceFromCenter;
        weighted -= line[first].distanceFromCenter * line[first].depth;
    }
    return driest;
}

std::optional<double> CatchCanStatistics::schedulingCoefficient(
    const std::vector<std::vector<WaterDepthSample>>& lines, double share) {
    const auto average = Uniformity::meanDepth(Uniformity::samples(joined(lines)));
    std::optional<double> driest;
    for (const auto& line : lines) {
        const auto run = driestRunMean(line, share);
        if (run && (!driest || *run < *driest)) {
            driest = run;
        }
    }
    if (!average || !driest || *driest <= 0) {
        return std::nullopt;
    }
    return checked::div(*average, *driest);
}

std::optional<double> CatchCanStatistics::meanOverLowQuarterMean(
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
    const auto all = Uniformity::samples(joined(lines));
    CatchCanFigures figures;
    figures.collectors = all.count();
    figures.meanDepthMm = Uniformity::meanDepth(all);
    figures.lowQuarterMeanMm = Uniformity::lowQuarterMean(all);
    figures.cuHeermannHein = Uniformity::heermannHein(all);
    figures.duLowQuarter = Uniformity::lowQuarter(all);
    figures.schedulingCoefficient = schedulingCoefficient(lines, schedulingShare);
    figures.schedulingCoefficient1Percent = schedulingCoefficient(lines, schedulingShareSmall);
    figures.meanOverLowQuarterMean = meanOverLowQuarterMean(all);
    figures.cuMovingAverage = Uniformity::heermannHein(Uniformity::samples(joined(smoothed)));
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
        {"scheduling_coefficient_5_percent", figures.schedulingCoefficient},
        {"scheduling_coefficient_1_percent", figures.schedulingCoefficient1Percent},
        {"mean_over_low_quarter_mean", figures.meanOverLowQuarterMean},
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
    average.schedulingCoefficient1Percent = meanOf(sets, &CatchCanFigures::schedulingCoefficient1Percent);
    average.meanOverLowQuarterMean = meanOf(sets, &CatchCanFigures::meanOverLowQuarterMean);
    average.cuMovingAverage = meanOf(sets, &CatchCanFigures::cuMovingAverage);
    return average;
}

}  // namespace caudalis::design
