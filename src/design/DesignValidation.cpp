#include "caudalis/design/DesignValidation.hpp"

#include <cmath>
#include <functional>

#include <fmt/format.h>

#include "caudalis/core/Constants.hpp"
#include "caudalis/design/DesignError.hpp"

namespace caudalis::design {

namespace {

/// Checks one figure after another, naming each by its path in the design file.
class FieldCheck {
public:
    explicit FieldCheck(UnitSystem system) : units_(system) {}

    /// A number of `quantity` (SI value) that must lie between `low` and `high` (SI values).
    void quantity(const std::string& path, const std::string& base, Quantity quantity, double value,
                  double low, double high) const {
        const auto name = path + base + "_" + units_.suffix(quantity);
        const auto shown = units_.fromSI(quantity, value);
        requireFinite(name, shown);
        if (value < low || value > high) {
            throw DesignError::invalid(fmt::format(
                "{} must be between {:.4g} and {:.4g} {}, not {:.6g}", name, units_.fromSI(quantity, low),
                units_.fromSI(quantity, high), units_.symbol(quantity), shown));
        }
    }
    /// A number without unit between `low` and `high`.
    void number(const std::string& name, double value, double low, double high) const {
        requireFinite(name, value);
        if (value < low || value > high) {
            throw DesignError::invalid(
                fmt::format("{} must be between {:.4g} and {:.4g}, not {:.6g}", name, low, high, value));
        }
    }
    const Units& units() const noexcept { return units_; }

private:
    static void requireFinite(const std::string& name, double value) {
        if (!std::isfinite(value)) {
            throw DesignError::invalid(name + " must be a finite number, not " +
                                       (std::isnan(value) ? std::string("NaN")
                                        : value > 0       ? "infinity"
                                                          : "-infinity"));
        }
    }

    Units units_;
};

constexpr double maximumPressureKpa = 1500;
constexpr double maximumElevationM = 9000;

void checkSpan(const FieldCheck& check, const SpanDescription& span, const std::string& path, bool fixed) {
    check.quantity(path, "length", Quantity::Length, span.lengthM, 0.5, DesignValidation::maximumSpanLengthM);
    check.quantity(path, "diameter", Quantity::Diameter, span.diameterMm, 20, 1000);
    check.quantity(path, "outlet_spacing", Quantity::Spacing, span.outletSpacingCm,
                   DesignValidation::minimumOutletSpacingCm, 1000);
    if (fixed) {
        check.quantity(path, "end_elevation", Quantity::Length, span.endElevationM, -maximumElevationM,
                       maximumElevationM);
    }
}

double irrigatedRadiusM(const DesignDescription& design) {
    double radius = design.overhang ? design.overhang->lengthM : 0;
    for (const auto& span : design.spans) {
        radius += span.lengthM;
    }
    return radius + (design.endGun ? design.endGun->ringWidthM : 0);
}

void checkMachine(const FieldCheck& check, const DesignDescription& design) {
    check.quantity("", "inlet_pressure", Quantity::Pressure, design.inletPressureKpa, 1, maximumPressureKpa);
    check.number("roughness_c", design.roughnessC, 50, 200);
    check.quantity("", "centre_elevation", Quantity::Length, design.centreElevationM, -maximumElevationM,
                   maximumElevationM);
    check.number("revolution_time_h", design.revolutionTimeH, 0.05, 2000);
    for (std::size_t i = 0; i < design.spans.size(); ++i) {
        checkSpan(check, design.spans[i], "spans[" + std::to_string(i) + "].", true);
    }
    if (design.overhang) {
        checkSpan(check, *design.overhang, "overhang.", false);
    }
    if (design.endGun) {
        check.quantity("end_gun.", "ring_width", Quantity::Length, design.endGun->ringWidthM, 0.1, 100);
        check.quantity("end_gun.", "booster", Quantity::Pressure, design.endGun->boosterKpa, 0,
                       maximumPressureKpa);
    }
}

/// The design flow against the area the machine waters.
void checkDesignFlow(const FieldCheck& check, const DesignDescription& design) {
    const double radius = irrigatedRadiusM(design);
    const double hectares = pi * radius * radius / 10000;
    const double highest = DesignValidation::maximumFlowPerHectare * hectares;
    const auto& units = check.units();
    const auto name = "design_flow_" + units.suffix(Quantity::Flow);
    check.number(name, units.fromSI(Quantity::Flow, design.designFlowLps), 0, HUGE_VAL);
    if (design.designFlowLps <= 0 || design.designFlowLps > highest) {
        throw DesignError::invalid(
            fmt::format("{} must be above 0 and at most {:.4g} {} ({:g} l/s per hectare of the {:.1f} ha the "
                        "machine waters), "
                        "not {:.6g}",
                        name, units.fromSI(Quantity::Flow, highest), units.symbol(Quantity::Flow),
                        DesignValidation::maximumFlowPerHectare, hectares,
                        units.fromSI(Quantity::Flow, design.designFlowLps)));
    }
}

void checkAccessories(const FieldCheck& check, const DesignDescription& design) {
    for (std::size_t i = 0; i < design.regulators.size(); ++i) {
        const auto& regulator = design.regulators[i];
        const auto path = "regulators[" + std::to_string(i) + "].";
        check.quantity(path, "pressure", Quantity::Pressure, regulator.pressureKpa, 1, maximumPressureKpa);
        check.quantity(path, "flow_min", Quantity::Flow, regulator.flowMinLps, 0, 1000);
        check.quantity(path, "flow_max", Quantity::Flow, regulator.flowMaxLps, 0, 1000);
    }
    const auto& regulation = design.regulation;
    if (regulation.ratingKpa) {
        check.quantity("regulation.", "rating", Quantity::Pressure, *regulation.ratingKpa, 1,
                       maximumPressureKpa);
    }
    check.quantity("regulation.", "margin", Quantity::Pressure, regulation.marginKpa, 0, maximumPressureKpa);
    check.number("regulation.spread_limit_percent", regulation.spreadLimit * 100, 0.1, 100);
    if (design.drop) {
        check.quantity("drop.", "diameter", Quantity::Diameter, design.drop->diameterMm, 2, 300);
        check.quantity("drop.", "length", Quantity::Length, design.drop->lengthM, 0.01, 50);
    }
    check.number("nozzle_selection.tolerance", design.nozzleSelection.tolerance, 1e-6, 1);
    if (design.nozzleSelection.inner) {
        check.quantity("nozzle_selection.inner.", "to_distance", Quantity::Length,
                       design.nozzleSelection.inner->toDistanceM, 0.1, 10000);
    }
    check.number("checks.minimum_cu_percent", design.checks.minimumUniformityPercent, -1000, 100);
    check.number("checks.discharge_tolerance_percent", design.checks.dischargeTolerance * 100, 0.01, 100);
    check.number("indicators.revolution_hours", design.indicators.revolutionHours, 0.05, 2000);
}

}  // namespace

void DesignValidation::validate(const DesignDescription& design) {
    const FieldCheck check(design.units);
    if (design.spans.empty()) {
        throw DesignError::invalid("spans must hold at least one span");
    }
    checkMachine(check, design);
    checkDesignFlow(check, design);
    checkAccessories(check, design);
}

}  // namespace caudalis::design
