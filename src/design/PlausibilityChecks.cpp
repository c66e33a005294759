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
                   fmt::format("{}, outside the usual {:g} to {:g}{}", what, range.low, range.high,
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

void PlausibilityChecks::checkCapacity(const DesignResult& result, std::vector<Finding>& findings) {
    const auto& summary = result.summary;
    if (summary.irrigatedAreaM2 > 0) {
        const double perHa = summary.designFlowLps / (summary.irrigatedAreaM2 / 1e4);
        if (auto finding = outside(flowPerAreaLpsPerHa, perHa, "flow-per-area-unusual",
                                   fmt::format("the design flow is {:.2f} l/s per ha irrigated", perHa))) {
            findings.push_back(*finding);
        }
    }
    if (summary.depthMm && *summary.depthMm > 0) {
        if (auto finding = outside(
                depthPerRevolutionMm, *summary.depthMm, "depth-per-revolution-unusual",
                fmt::format("the machine lays {:.1f} mm per revolution at 100 % timer", *summary.depthMm))) {
            findings.push_back(*finding);
        }
    }
}

std::vector<Finding> PlausibilityChecks::check(const DesignResult& result, const Units& units) {
    std::vector<Finding> findings;
    checkRegulators(result, units, findings);
    checkCapacity(result, findings);
    if (result.summary.uniformityBelowZero) {
        findings.push_back(
            {Severity::Warning, "uniformity-below-zero",
             "the outlets' depths are so uneven that the Heermann-Hein formula falls below 0 %, "
             "which is no uniformity: no CU is given"});
    }
    return findings;
}

}  // namespace caudalis::design
