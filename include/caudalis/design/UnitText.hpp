#pragma once

#include <string>

#include "caudalis/design/Units.hpp"

namespace caudalis::design {

/// SI values written in a unit system for printouts: a fixed number of decimals per quantity
/// and system (kPa 1, psi 2, l/s 3, gpm 2, m 2, ft 1, depths in mm 2, in 3, mm/h 1, in/h 2, ...).
class UnitText {
public:
    explicit UnitText(Units units) : units_(units) {}

    const Units& units() const noexcept { return units_; }
    /// A plain number with a fixed number of decimals (none when `decimals` is negative).
    static std::string fixed(double value, int decimals);
    /// The number alone, e.g. "300.0".
    std::string number(Quantity quantity, double si) const;
    /// The number with more or fewer decimals than usual.
    std::string number(Quantity quantity, double si, int extraDecimals) const;
    /// The number and its unit, e.g. "300.0 kPa".
    std::string text(Quantity quantity, double si) const;
    /// The number, with more or fewer decimals than usual, and its unit.
    std::string text(Quantity quantity, double si, int extraDecimals) const;
    /// The number with up to six significant digits and its unit, e.g. "120 kPa", "2.4384 m".
    std::string general(Quantity quantity, double si) const;
    /// A column heading with the unit, e.g. "pipe kPa".
    std::string heading(const std::string& label, Quantity quantity) const;
    /// An area: "57.09 ha" or "141.08 acre".
    std::string area(double squareMetres) const;
    /// A water depth with its unit ("6.02 mm", "0.237 in").
    std::string depth(double millimetres) const;
    /// A speed from metres per hour: "125.7 m/h" or "412.3 ft/h".
    std::string speed(double metresPerHour) const;

private:
    int decimals(Quantity quantity) const;

    Units units_;
};

}  // namespace caudalis::design
