#include "caudalis/design/Units.hpp"

#include <cmath>

namespace caudalis::design {

namespace {

struct UnitNames {
    const char* symbol;
    const char* suffix;
};

UnitNames siNames(Quantity quantity) {
    switch (quantity) {
        case Quantity::Pressure:
            return {"kPa", "kpa"};
        case Quantity::Flow:
            return {"l/s", "lps"};
        case Quantity::Length:
            return {"m", "m"};
        case Quantity::Diameter:
            return {"mm", "mm"};
        case Quantity::Spacing:
            return {"cm", "cm"};
        case Quantity::Depth:
            return {"mm", "mm"};
        case Quantity::Rate:
            return {"mm/h", "mm_h"};
        case Quantity::Area:
            break;
    }
    return {"m2", "m2"};
}

UnitNames usNames(Quantity quantity) {
    switch (quantity) {
        case Quantity::Pressure:
            return {"psi", "psi"};
        case Quantity::Flow:
            return {"gpm", "gpm"};
        case Quantity::Length:
            return {"ft", "ft"};
        case Quantity::Diameter:
        case Quantity::Spacing:
        case Quantity::Depth:
            return {"in", "in"};
        case Quantity::Rate:
            return {"in/h", "in_h"};
        case Quantity::Area:
            break;
    }
    return {"acre", "acre"};
}

/// SI units in one US customary unit.
double usFactor(Quantity quantity) {
    switch (quantity) {
        case Quantity::Pressure:
            return Units::kilopascalsPerPsi;
        case Quantity::Flow:
            return Units::litresPerSecondPerGpm;
        case Quantity::Length:
            return Units::metresPerFoot;
        case Quantity::Diameter:
        case Quantity::Depth:
        case Quantity::Rate:
            return Units::millimetresPerInch;
        case Quantity::Spacing:
            return Units::millimetresPerInch / 10;
        case Quantity::Area:
            break;
    }
    return Units::squareMetresPerAcre;
}

}  // namespace

std::string Units::name() const {
    return system_ == UnitSystem::US ? "us" : "si";
}

std::optional<UnitSystem> Units::parse(const std::string& name) {
    if (name == "si") {
        return UnitSystem::SI;
    }
    if (name == "us") {
        return UnitSystem::US;
    }
    return std::nullopt;
}

double Units::factor(Quantity quantity) const {
    return system_ == UnitSystem::US ? usFactor(quantity) : 1.0;
}

double Units::toSI(Quantity quantity, double value) const {
    return value * factor(quantity);
}

double Units::fromSI(Quantity quantity, double value) const {
    return value / factor(quantity);
}

std::string Units::symbol(Quantity quantity) const {
    return system_ == UnitSystem::US ? usNames(quantity).symbol : siNames(quantity).symbol;
}

std::string Units::suffix(Quantity quantity) const {
    return system_ == UnitSystem::US ? usNames(quantity).suffix : siNames(quantity).suffix;
}

// q_si = a_si * p_si^b and q = a * p^b with q_si = q * F, p_si = p * P give
// a = a_si * P^b / F.
double Units::flowCoefficientFromSI(double a, double b) const {
    return a * std::pow(factor(Quantity::Pressure), b) / factor(Quantity::Flow);
}

double Units::flowCoefficientToSI(double a, double b) const {
    return a * factor(Quantity::Flow) / std::pow(factor(Quantity::Pressure), b);
}

}  // namespace caudalis::design
