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
    /// Scheduling coefficient over the driest contiguous 5 % of the watered area (a ratio >= 1).
    std::optional<double> schedulingCoefficient;
    /// Scheduling coefficient over the driest contiguous 1 % of the watered area.
    std::optional<double> schedulingCoefficient1Percent;
    /// Mean depth over the low-quarter mean (100 / DU_lq): not a scheduling coefficient, since
    /// the low quarter need not lie in one place.
    std::optional<double> meanOverLowQuarterMean;
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
/// - SC_p  = m / m_p       the scheduling coefficient of Zoldoske and Solomon (1988), "Coefficient
///                        of uniformity - what it tells us", Irrigation Notes, CATI, California
///                        State University, Fresno: m_p is the mean depth of the driest
///                        *contiguous* area of a stated share p of the watered area (5 %, also
///                        1 %). On a radial line that area is a run of neighbouring collectors
///                        whose weights r_i add up to p sum r_i (the shortest run from each
///                        collector outwards that reaches the share; the driest such run counts).
///                        SC_p says how many times longer the machine must run for the driest
///                        patch of that size to receive the mean depth.
/// - m / m_lq              the mean over the low-quarter mean (100 / DU_lq), kept under its own
///                        name: the driest quarter need not lie in one place, so it is no SC.
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
    /// `scheduling_coefficient_5_percent`, `scheduling_coefficient_1_percent`,
    /// `mean_over_low_quarter_mean`, `cu_moving_average_percent`), in that order.
    static std::vector<std::pair<std::string, std::optional<double>>> named(const CatchCanFigures& figures);
    /// The arithmetic mean of each figure over several sets (a figure missing in one set is
    /// missing in the mean); `collectors` is their sum.
    static CatchCanFigures averageOf(const std::vector<CatchCanFigures>& sets);

    /// The shares of the watered area the scheduling coefficients are given for.
    static constexpr double schedulingShare = 0.05;
    static constexpr double schedulingShareSmall = 0.01;

    /// SC_p of the lines (each ordered by distance) for the share p of each line's weight: the
    /// mean of all collectors over the mean of the driest run; empty when the mean is not
    /// defined, no run reaches the share, or the driest run is dry.
    static std::optional<double> schedulingCoefficient(
        const std::vector<std::vector<WaterDepthSample>>& lines, double share);
    /// The weighted mean depth of the driest run of neighbouring samples whose weights reach
    /// `share` of the line's weight; empty when the line has no weight.
    static std::optional<double> driestRunMean(const std::vector<WaterDepthSample>& line, double share);
    /// m / m_lq; empty when either is not defined or m_lq is 0.
    static std::optional<double> meanOverLowQuarterMean(const BoundedArray<WaterDepthSample>& samples);
    /// The line's depths, each replaced by the mean of itself and its neighbours.
    static std::vector<WaterDepthSample> movingAverage(const std::vector<WaterDepthSample>& line);
};

}  // namespace caudalis::design
