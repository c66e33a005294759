#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "caudalis/core/Records.hpp"
#include "caudalis/design/DesignAnalysis.hpp"
#include "caudalis/design/DesignDescription.hpp"
#include "caudalis/design/Finding.hpp"
#include "caudalis/design/NozzleSet.hpp"

namespace caudalis {
class CartaAspersores;
}

namespace caudalis::design {

/// Where an outlet sits: a fixed span, the overhang or the end gun.
enum class OutletPlace { Span, Overhang, EndGun };

/// One outlet of the computed machine, as a dealer's sprinkler chart lists it.
struct OutletResult {
    OutletPlace place = OutletPlace::Span;
    /// Span number (the overhang follows the fixed spans); -1 for the end gun.
    int span = 0;
    /// Outlet number within the span; -1 for the end gun.
    long number = 0;
    /// The outlet record after the computation (required flow `caudal`, `pressao_ideal`,
    /// `pressao_real`, `pressao_actuante`, `caudal_do_aspersor`, `over_pressure`, ...).
    saida outlet;
    bool regulated = false;
    /// (delivered - required) / required, in %; empty when nothing is required.
    std::optional<double> deviationPercent;
    /// Depth laid in one revolution by the delivered and by the required flow, in mm.
    double depthMm = 0;
    double idealDepthMm = 0;
    /// Why the outlet got its nozzle, or none.
    ChoiceReason reason = ChoiceReason::NoPackage;
    /// The rating of the outlet's regulator, when its span has one.
    std::optional<double> regulatorKpa;
    /// The regulator gets less than its rating plus the design's margin at its inlet, so it
    /// does not regulate: the outlet acts at less than the chart says.
    bool starvedRegulator = false;
};

/// One span (fixed or overhang) after the computation.
struct SpanResult {
    int number = 0;
    bool overhang = false;
    tramo span;
};

/// Application rate at one pluviometry check point.
struct PeakRate {
    PivotSample point;
    double rateMmH = 0;
};

struct DesignSummary {
    double designFlowLps = 0;
    double computedFlowLps = 0;
    long passes = 0;
    bool hasEndGun = false;
    double endGunPressureKpa = 0;
    double endGunFlowLps = 0;
    double endGunBoosterKpa = 0;
    double irrigatedLengthM = 0;
    double irrigatedAreaM2 = 0;
    double revolutionTimeH = 0;
    long outlets = 0;
    long unfittedOutlets = 0;
    long overPressureOutlets = 0;
    std::optional<double> depthMm;
    std::optional<double> idealDepthMm;
    std::vector<PeakRate> peakRates;
    std::optional<double> uniformityCoefficient;
    /// The depths are so uneven that the Heermann-Hein formula falls below 0: no CU is given.
    bool uniformityBelowZero = false;
    std::optional<double> idealUniformityCoefficient;
    std::optional<double> lowQuarterUniformity;
    std::optional<double> idealLowQuarterUniformity;
};

/// The models the package put on the machine, as "brand model" labels ("" for none).
struct PackageSummary {
    std::string spans;
    std::string inner;
    double innerToDistanceM = 0;
    std::string endGun;
};

/// Everything a design run produces.
struct DesignResult {
    /// The design as computed: the description given, with the regulators the design chose
    /// when it was asked to (`regulation.automatic`).
    DesignDescription design;
    PackageSummary package;
    std::vector<SpanResult> spans;
    std::vector<OutletResult> outlets;
    DesignSummary summary;
    /// What a designer must know about the design, most severe first.
    std::vector<Finding> findings;
    /// The computed machine as the library left it.
    pivot machine;
    /// Pipe pressures, ground, timer table, depth per revolution, runoff, application profile.
    DesignAnalysis analysis;
    /// The figures the design service gives at the pressure the pipe gives rather than at the
    /// regulators' ratings, where regulators cannot reach theirs (`StarvedRegulators`).
    std::vector<std::string> figuresAtPipePressure;
    /// The chart of the chosen nozzles with the design's accessories, ready to be stored.
    std::shared_ptr<CartaAspersores> chart;

    /// Whether any finding has this severity.
    bool has(Severity severity) const;
    /// Whether the design must not be delivered: an error finding, or under `strict` any
    /// warning.
    bool fails(bool strict) const;
};

}  // namespace caudalis::design
