#include "caudalis/design/PlausibilityChecks.hpp"

#include <fmt/format.h>

namespace caudalis::design {

std::optional<Finding> PlausibilityChecks::outside(const TypicalRange& range, double value,
                                                   const std::string& code, const std::string& what) {
    if (range.holds(value)) {
        return std::nullopt;
    }
    const bool far = range.far(value);
    return Finding{far ? Severity::Warning : Severity::Note, code,
                   fmt::format("{}, outside the usual {:.3g} to {:.3g}{}", what, range.low, range.high,
                               far ? ": far enough to be a typing mistake (a unit?)" : "")};
}

void PlausibilityChecks::checkRegulators(const DesignResult& result, const Units& units,
                                         std::vector<Finding>& findings) {
    for (const auto& regulator : result.design.regulators) {
        if (regulator.installed && !regulatorRatingKpa.holds(regulator.pressureKpa)) {
            const auto symbol = units.symbol(Quantity::Pressure);
            findings.push_back(
                {Severity::Warning, "regulator-rating-unusual",
                 fmt::format("the regulator of span {} is rated {:.1f} {}; regulators on pivots are rated "
                             "{:.1f} to {:.1f} {}",
                             regulator.span, units.fromSI(Quantity::Pressure, regulator.pressureKpa), symbol,
                             units.fromSI(Quantity::Pressure, regulatorRatingKpa.low),
                             units.fromSI(Quantity::Pressure, regulatorRatingKpa.high), symbol)});
            return;
        }
    }
}

namespace {

/// How many of the system's flow-per-area units one l/s per ha is: l/s per ha, or gpm per acre.
double flowPerAreaFactor(const Units& units) {
    return units.system() == UnitSystem::SI
               ? 1.0
               : units.fromSI(Quantity::Flow, 1.0) / units.fromSI(Quantity::Area, 1e4);
}

}  // namespace

void PlausibilityChecks::checkCapacity(const DesignResult& result, const Units& units,
                                       std::vector<Finding>& findings) {
    const auto& summary = result.summary;
    const bool si = units.system() == UnitSystem::SI;
    if (summary.irrigatedAreaM2 > 0) {
        const double factor = flowPerAreaFactor(units);
        const double perArea = summary.designFlowLps / (summary.irrigatedAreaM2 / 1e4) * factor;
        if (auto finding = outside(flowPerAreaLpsPerHa.scaled(factor), perArea, "flow-per-area-unusual",
                                   fmt::format("the design flow is {:.2f} {} irrigated", perArea,
                                               si ? "l/s per ha" : "gpm per acre"))) {
            findings.push_back(*finding);
        }
    }
    if (summary.depthMm && *summary.depthMm > 0) {
        const double factor = units.fromSI(Quantity::Depth, 1.0);
        const double depth = *summary.depthMm * factor;
        if (auto finding = outside(depthPerRevolutionMm.scaled(factor), depth, "depth-per-revolution-unusual",
                                   fmt::format("the machine lays {:.{}f} {} per revolution at 100 % timer",
                                               depth, si ? 1 : 2, units.symbol(Quantity::Depth)))) {
            findings.push_back(*finding);
        }
    }
}

std::vector<Finding> PlausibilityChecks::check(const DesignResult& result, const Units& units) {
    std::vector<Finding> findings;
    checkRegulators(result, units, findings);
    checkCapacity(result, units, findings);
    if (result.summary.uniformityBelowZero) {
        findings.push_back(
            {Severity::Warning, "uniformity-below-zero",
             "the outlets' depths are so uneven that the Heermann-Hein formula falls below 0 %, "
             "which is no uniformity: no CU is given"});
    }
    return findings;
}

}  // namespace caudalis::design
