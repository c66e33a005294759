#pragma once

#include <utility>
#include <vector>

#include "caudalis/fieldtests/FieldReadings.hpp"

namespace caudalis::design {

/// One outlet of the machine as designed: where it is and the depth it lays per revolution.
struct DesignedOutlet {
    /// Span number (the overhang follows the fixed spans); the end gun has `endGun` set.
    int span = 0;
    long number = 0;
    bool endGun = false;
    double radiusM = 0;
    /// Depth on the outlet's own ring per revolution (`PivotWrapper::WaterDepthsSamples`), mm.
    double depthMm = 0;
    /// Width of that ring (the outlet spacing; the end gun's ring width), m.
    double ringWidthM = 0;
};

/// Where a span of the machine lies along the radius.
struct DesignedSpan {
    int number = 0;
    double fromM = 0;
    double toM = 0;
};

/// The machine as designed, as the comparison needs it.
struct DesignedMachine {
    std::vector<DesignedOutlet> outlets;
    std::vector<DesignedSpan> spans;
};

/// A collector's depth beside the designed depth at its place.
struct CollectorComparison {
    FieldReading reading;
    /// The designed depth at the collector, scaled so that the designed and measured means of
    /// the collectors agree (what the collector should have caught at the test's mean), mm.
    double designedMm = 0;
    /// 100 (measured - designed) / designed.
    double differencePercent = 0;
};

/// How much an outlet's flow seems to differ from its design.
struct OutletDifference {
    DesignedOutlet outlet;
    /// The least-squares estimate of 100 (delivered - designed) / designed from the collectors
    /// the outlet wets, fitted together with its neighbours; never below -100 (a plugged
    /// outlet delivers nothing, not less).
    double estimatedPercent = 0;
};

/// The mean difference of the collectors under one span.
struct SpanDifference {
    DesignedSpan span;
    long collectors = 0;
    double meanDifferencePercent = 0;
};

/// The measured depths laid over the designed profile.
struct DesignComparison {
    double wettedDiameterM = 0;
    /// The factor that brings the designed mean over the collectors to the measured mean
    /// (timer setting, test duration, gauge and wind all move the measured level).
    double levelFactor = 1;
    std::vector<CollectorComparison> collectors;
    /// The median distance between neighbouring collectors of a line, m.
    double collectorSpacingM = 0;
    /// Whether the collectors stand close enough (at most the wetted radius apart) to single
    /// out outlets; when they do not, `outlets` is empty and only spans are compared.
    bool outletsResolved = false;
    /// The outlets the collectors cover well enough, the largest difference first.
    std::vector<OutletDifference> outlets;
    /// The spans with collectors, the largest mean difference first.
    std::vector<SpanDifference> spans;
};

/// Lays measured depths over the depth profile of the designed machine and finds the spans
/// and outlets where they differ most: a plugged or wrong nozzle shows as a dip centred on its
/// outlet and as wide as its wetted diameter.
///
/// Each outlet i lays depth d_i on a ring of width w_i at radius r_i. Spread by a sprinkler of
/// wetted radius R, its water reaches the ground at radius r with the triangular pattern
/// k(x) = max(0, 1 - |x| / R) / R, which keeps its volume:
///     D(r) = sum_i d_i w_i r_i k(r - r_i) / r.
/// The end gun lays its depth evenly over its ring. With the measured depths m_c at the
/// collectors and s = mean(m) / mean(D) (distance-weighted means), the relative difference at a
/// collector is e_c = m_c / (s D(r_c)) - 1. An outlet whose flow is (1 + a_i) times its design
/// changes e_c by a_i g_i(r_c), g_i(r) = d_i w_i r_i k(r - r_i) / (r D(r)). The least-squares
/// estimate of one outlet alone, a_i = sum_c e_c g_i(r_c) / sum_c g_i(r_c)^2, is right for a
/// single odd outlet but lays the whole of a wider dip (two plugged neighbours, a pattern wider
/// than assumed) on every outlet under it: where four outlets share g_i of about 1/4 it read
/// -130 % and worse. So the outlets are fitted in turn, the one that explains most of the
/// remaining differences first: its a_i (bounded below by -1, since no outlet delivers less
/// than nothing) is fixed and its part a_i g_i is taken off the differences before the next is
/// fitted; collectors that cannot tell two neighbours apart leave the second one near 0.
/// Collectors far apart see some outlets only at the edge of their pattern, where a small
/// difference would make a large estimate: an outlet is estimated only when sum_c g_i(r_c)^2
/// reaches `minimumCoverage` of the best-covered outlet's, and only when the collectors stand
/// at most the wetted radius apart.
class MeasuredDesignedComparison {
public:
    static constexpr double minimumCoverage = 0.25;

    /// `lines` are the collectors that count, per line; `wettedDiameterM` > 0.
    static DesignComparison compare(const std::vector<std::vector<FieldReading>>& lines,
                                    const DesignedMachine& machine, double wettedDiameterM);
    /// D(r) above, in mm per revolution as designed.
    static double designedDepthAt(const DesignedMachine& machine, double radiusM, double wettedRadiusM);

private:
    static double medianSpacing(const std::vector<std::vector<FieldReading>>& lines);
    static double contribution(const DesignedOutlet& outlet, double radiusM, double wettedRadiusM);
    /// An outlet's share g_i at the collectors it wets (by collector index) and its estimate
    /// while it is fitted.
    struct OutletFit {
        const DesignedOutlet* outlet;
        std::vector<std::pair<std::size_t, double>> shares;
        double energy;
        double estimate;
    };
    static std::vector<OutletFit> coveredOutlets(const DesignComparison& comparison,
                                                 const DesignedMachine& machine, double wettedRadiusM);
    static void fitInTurn(std::vector<OutletFit>& fits, std::vector<double> residuals);
    static std::vector<OutletDifference> outletDifferences(const DesignComparison& comparison,
                                                           const DesignedMachine& machine,
                                                           double wettedRadiusM);
    static std::vector<SpanDifference> spanDifferences(const DesignComparison& comparison,
                                                       const DesignedMachine& machine);
};

}  // namespace caudalis::design
