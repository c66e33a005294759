#include "caudalis/design/DesignChecks.hpp"

#include <algorithm>
#include <cmath>
#include <string>

#include <fmt/format.h>

#include "caudalis/catalogue/Aspersor.hpp"
#include "caudalis/design/Limits.hpp"
#include "caudalis/design/PlausibilityChecks.hpp"
#include "caudalis/design/ResultLabels.hpp"

namespace caudalis::design {

namespace {

/// Figures in the units of the messages.
class Figures {
public:
    explicit Figures(const Units& units) : units_(units) {}
    std::string pressure(double kpa) const { return format(Quantity::Pressure, kpa, 1); }
    std::string flow(double lps) const { return format(Quantity::Flow, lps, 3); }
    std::string distance(double m) const { return format(Quantity::Length, m, 1); }

private:
    std::string format(Quantity quantity, double value, int decimals) const {
        return fmt::format("{:.{}f} {}", units_.fromSI(quantity, value), decimals, units_.symbol(quantity));
    }
    const Units& units_;
};

using Findings = std::vector<Finding>;

template <class Test>
std::vector<const OutletResult*> outletsWhere(const DesignResult& result, Test test) {
    std::vector<const OutletResult*> found;
    for (const auto& row : result.outlets) {
        if (test(row)) {
            found.push_back(&row);
        }
    }
    return found;
}

std::string plural(std::size_t count, const char* one, const char* many) {
    return std::to_string(count) + " " + (count == 1 ? one : many);
}

void checkPipePressure(const DesignResult& result, const Figures& figures, Findings& findings) {
    for (const auto& row : result.spans) {
        const double lowest = std::min(row.span.entry_conditions.pressao, row.span.exit_condition.pressao);
        if (lowest < 0) {
            findings.push_back(
                {Severity::Error, "pipe-pressure-negative",
                 fmt::format("the pipe pressure falls to {} in span {}: the inlet pressure cannot "
                             "carry the design flow that far",
                             figures.pressure(lowest), row.number)});
            return;
        }
    }
}

void checkOutletCount(const DesignResult& result, Findings& findings) {
    const auto outlets = static_cast<long>(result.outlets.size());
    if (outlets > limits::maximumOutlets) {
        findings.push_back({Severity::Error, "too-many-outlets",
                            fmt::format("the machine has {} outlets (the end gun counting as one), more than "
                                        "the {} its outlet numbers can address",
                                        outlets, limits::maximumOutlets)});
    }
}

void checkRegulators(const DesignResult& result, const Figures& figures, Findings& findings) {
    for (const auto& span : result.spans) {
        const auto starved = outletsWhere(result, [&](const OutletResult& row) {
            return row.place != OutletPlace::EndGun && row.span == span.number && row.starvedRegulator;
        });
        if (starved.empty()) {
            continue;
        }
        const auto [low, high] = std::minmax_element(
            starved.begin(), starved.end(), [](const OutletResult* a, const OutletResult* b) {
                return a->outlet.pressao_real < b->outlet.pressao_real;
            });
        const double rating = *starved.front()->regulatorKpa;
        findings.push_back(
            {Severity::Warning, "regulator-starved",
             fmt::format(
                 "span {}: {} get {} to {} at the inlet, less than the {} rating plus the {} margin; "
                 "a starved regulator passes what it gets, so these outlets deliver less than the chart "
                 "says",
                 span.number, plural(starved.size(), "regulator", "regulators"),
                 figures.pressure((*low)->outlet.pressao_real),
                 figures.pressure((*high)->outlet.pressao_real), figures.pressure(rating),
                 figures.pressure(result.design.regulation.marginKpa))});
    }
    if (!result.figuresAtPipePressure.empty()) {
        std::string changed;
        for (const auto& figure : result.figuresAtPipePressure) {
            changed += (changed.empty() ? "" : ", ") + figure;
        }
        findings.push_back(
            {Severity::Warning, "figures-at-pipe-pressure",
             "regulators rated above the pipe pressure cannot raise it: the design gives " + changed +
                 " at the pressure the pipe gives there, not at the regulators' ratings (the pipe "
                 "pressures are the march's)"});
    }
}

bool outOfRange(const OutletResult& row) {
    const auto& nozzle = row.outlet.obj_aspersor;
    const double pressure = row.outlet.pressao_actuante;
    return nozzle && (pressure < nozzle->pmin() || nozzle->isHighPressure(pressure));
}

void checkPressureRanges(const DesignResult& result, const Figures& figures, Findings& findings) {
    const auto outside = outletsWhere(result, outOfRange);
    if (outside.empty()) {
        return;
    }
    const auto& first = *outside.front();
    const auto& nozzle = *first.outlet.obj_aspersor;
    findings.push_back(
        {Severity::Warning, "nozzle-out-of-range",
         fmt::format("{} act outside their nozzle's rated pressure, first {} ({} at {}, rated {} "
                     "to {})",
                     plural(outside.size(), "outlet", "outlets"), outletLabel(first),
                     nozzleLabel(first.outlet), figures.pressure(first.outlet.pressao_actuante),
                     figures.pressure(nozzle.pmin()), figures.pressure(nozzle.pmax()))});
}

void checkEmptyOutlets(const DesignResult& result, const Figures& figures, Findings& findings) {
    const auto empty = outletsWhere(result, [](const OutletResult& row) {
        return !row.outlet.obj_aspersor && row.reason != ChoiceReason::BelowSmallestNozzle;
    });
    if (!empty.empty()) {
        findings.push_back(
            {Severity::Warning, "outlets-without-nozzle",
             fmt::format("{} no nozzle within the tolerance, first {} ({}: {})",
                         plural(empty.size(), "outlet has", "outlets have"), outletLabel(*empty.front()),
                         figures.distance(empty.front()->outlet.distanciaAoPivot),
                         reasonText(empty.front()->reason))});
    }
    const auto plugged = outletsWhere(
        result, [](const OutletResult& row) { return row.reason == ChoiceReason::BelowSmallestNozzle; });
    if (!plugged.empty()) {
        findings.push_back(
            {Severity::Note, "outlets-plugged",
             fmt::format(
                 "{} plugged (up to {} from the centre)",
                 plural(plugged.size(), "outlet needs less than the smallest rated nozzle gives and stays",
                        "outlets need less than the smallest rated nozzle gives and stay"),
                 figures.distance(plugged.back()->outlet.distanciaAoPivot))});
    }
}

void checkNearestSizes(const DesignResult& result, Findings& findings) {
    const auto nearest =
        outletsWhere(result, [](const OutletResult& row) { return row.reason == ChoiceReason::NearestSize; });
    if (nearest.empty()) {
        return;
    }
    const auto worst =
        *std::max_element(nearest.begin(), nearest.end(), [](const OutletResult* a, const OutletResult* b) {
            return std::fabs(a->deviationPercent.value_or(0)) < std::fabs(b->deviationPercent.value_or(0));
        });
    findings.push_back(
        {Severity::Note, "nearest-size",
         fmt::format("{} the nearest size outside ±{:g} %, the largest deviation {:+.1f} % at {}",
                     plural(nearest.size(), "outlet gets", "outlets get"),
                     result.design.nozzleSelection.tolerance * 100, worst->deviationPercent.value_or(0),
                     outletLabel(*worst))});
}

void checkDischarge(const DesignResult& result, const Figures& figures, Findings& findings) {
    const auto& summary = result.summary;
    const double off = (summary.computedFlowLps - summary.designFlowLps) / summary.designFlowLps;
    const double limit = result.design.checks.dischargeTolerance;
    if (!(std::fabs(off) <= limit)) {
        findings.push_back(
            {Severity::Warning, "discharge-off",
             fmt::format("the nozzles deliver {}, {:+.1f} % from the design flow of {} (limit ±{:g} %)",
                         figures.flow(summary.computedFlowLps), off * 100,
                         figures.flow(summary.designFlowLps), limit * 100)});
    }
}

void checkUniformity(const DesignResult& result, Findings& findings) {
    const auto& cu = result.summary.uniformityCoefficient;
    const double minimum = result.design.checks.minimumUniformityPercent;
    if (!cu && !result.summary.uniformityBelowZero) {
        findings.push_back({Severity::Warning, "low-uniformity",
                            "the uniformity cannot be computed: the machine applies no water"});
    } else if (*cu < minimum) {
        findings.push_back(
            {Severity::Warning, "low-uniformity",
             fmt::format("the Heermann-Hein CU is {:.1f} %, under the design's minimum of {:g} %", *cu,
                         minimum)});
    }
}

}  // namespace

std::vector<Finding> DesignChecks::check(const DesignResult& result, const Units& units) {
    const Figures figures(units);
    std::vector<Finding> findings;
    checkPipePressure(result, figures, findings);
    checkOutletCount(result, findings);
    checkRegulators(result, figures, findings);
    checkPressureRanges(result, figures, findings);
    checkEmptyOutlets(result, figures, findings);
    checkDischarge(result, figures, findings);
    checkUniformity(result, findings);
    checkNearestSizes(result, findings);
    const auto plausibility = PlausibilityChecks::check(result, units);
    findings.insert(findings.end(), plausibility.begin(), plausibility.end());
    std::stable_sort(findings.begin(), findings.end(),
                     [](const Finding& a, const Finding& b) { return a.severity < b.severity; });
    return findings;
}

}  // namespace caudalis::design
