#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "caudalis/core/BoundedArray.hpp"
#include "caudalis/core/Records.hpp"

namespace caudalis::design {

/// The uniformity figures of a catch-can test, or of one radial line of it. A figure is empty
/// when it is not defined for the collectors (none, no water, too few for a low quarter).
struct CatchCanFigures {
    long collectors = 0;
    std::optional<double> meanDepthMm;
    std::optional<double> lowQuarterMeanMm;
    /// Heermann-Hein coefficient, %.
    std::optional<double> cuHeermannHein;
    /// Low-quarter distribution uniformity, %.
    std::optional<double> duLowQuarter;
    /// Scheduling coefficient (a ratio >= 1).
    std::optional<double> schedulingCoefficient;
    /// Heermann-Hein coefficient of the three-collector moving average, %.
    std::optional<double> cuMovingAverage;
};

/// The figures a field evaluation of a centre pivot reports, after ASABE S436.1 (ISO 11545);
/// the mean, low-quarter mean, CU_HH and DU_lq are the design's own (`Uniformity`):
/// every collector is weighted by its distance r_i from the centre, because it stands for a
/// ring whose area grows with r_i. With depths d_i:
///
/// - weighted mean depth  m = sum d_i r_i / sum r_i                  (`WaterDepths::Average`)
/// - low-quarter mean     m_lq = the weighted mean of the driest collectors that together weigh
///                        at most a quarter of sum r_i                (`WaterDepths::LowQuarter`)
/// - CU_HH = 100 (1 - sum |d_i - m| r_i / sum d_i r_i)   Heermann and Hein (1968), Trans. ASAE
///                        11(1):11-15; the coefficient of ASABE S436.1
/// - DU_lq = 100 m_lq / m                                 Merriam and Keller (1978), Farm
///                        Irrigation System Evaluation: the low-quarter distribution uniformity
/// - SC    = m / m_lq      the scheduling coefficient in Merriam and Keller's low-quarter terms:
///                        how many times longer the machine must run for the driest quarter to
///                        receive the mean depth (100 / DU_lq)
/// - CU_MA = CU_HH of the depths smoothed along each line by a three-collector moving average
///                        (each collector with its two neighbours; an end collector with its one),
///                        as Henggeler and Vories (2009), ASABE paper 096044, report it beside CU_HH,
///                        since neighbouring collectors 3 m apart water the same plants.
class CatchCanStatistics {
public:
    /// The figures of one or more lines of collectors, each line ordered by distance.
    static CatchCanFigures of(const std::vector<std::vector<WaterDepthSample>>& lines);
    /// The figures by the names reports and stored evaluations give them (`collectors`,
    /// `mean_depth_mm`, `low_quarter_mean_mm`, `cu_hh_percent`, `du_lq_percent`,
    /// `scheduling_coefficient`, `cu_moving_average_percent`), in that order.
    static std::vector<std::pair<std::string, std::optional<double>>> named(const CatchCanFigures& figures);
    /// The arithmetic mean of each figure over several sets (a figure missing in one set is
    /// missing in the mean); `collectors` is their sum.
    static CatchCanFigures averageOf(const std::vector<CatchCanFigures>& sets);

    /// m / m_lq; empty when either is not defined or m_lq is 0.
    static std::optional<double> schedulingCoefficient(const BoundedArray<WaterDepthSample>& samples);
    /// The line's depths, each replaced by the mean of itself and its neighbours.
    static std::vector<WaterDepthSample> movingAverage(const std::vector<WaterDepthSample>& line);
};

}  // namespace caudalis::design
