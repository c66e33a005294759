#pragma once

#include <optional>
#include <string>

namespace caudalis::design {

/// The two systems of units a design can be written and printed in. The library computes in
/// SI (kPa, l/s, m, mm); US customary (psi, gpm, ft, in) exists only at the edges.
enum class UnitSystem { SI, US };

/// What a number measures, which decides its unit in each system.
enum class Quantity {
    Pressure,  ///< kPa | psi
    Flow,      ///< l/s | gpm
    Length,    ///< m | ft (span lengths, distances, elevations)
    Diameter,  ///< mm | in (pipe and hose bores)
    Spacing,   ///< cm | in (outlet spacing)
    Depth,     ///< mm | in (water depth)
    Rate,      ///< mm/h | in/h (application rate)
    Area,      ///< m2 | acre
};

/// Every conversion between SI and US customary units, with the published factors:
/// 1 psi = 6.894757 kPa, 1 gpm = 0.0630902 l/s, 1 ft = 0.3048 m, 1 in = 25.4 mm,
/// 1 acre = 0.4046856 ha.
class Units {
public:
    static constexpr double kilopascalsPerPsi = 6.894757;
    static constexpr double litresPerSecondPerGpm = 0.0630902;
    static constexpr double metresPerFoot = 0.3048;
    static constexpr double millimetresPerInch = 25.4;
    static constexpr double squareMetresPerAcre = 4046.856;

    explicit Units(UnitSystem system = UnitSystem::SI) : system_(system) {}

    UnitSystem system() const noexcept { return system_; }
    /// "si" or "us".
    std::string name() const;
    /// The system named "si" or "us"; empty for any other text.
    static std::optional<UnitSystem> parse(const std::string& name);

    /// A value in this system's unit of `quantity`, in the SI unit.
    double toSI(Quantity quantity, double value) const;
    /// An SI value in this system's unit of `quantity`.
    double fromSI(Quantity quantity, double value) const;
    /// The unit as printed: "kPa", "psi", "l/s", "gpm", ...
    std::string symbol(Quantity quantity) const;
    /// The unit as it ends a field name: "kpa", "psi", "lps", "gpm", "m", "ft", ...
    std::string suffix(Quantity quantity) const;

    /// The coefficient `a` of a flow law q = a * p^b (`b` unchanged) written for this system's
    /// pressure and flow units, from the SI one, and back.
    double flowCoefficientFromSI(double a, double b) const;
    double flowCoefficientToSI(double a, double b) const;

private:
    /// How many SI units one unit of this system is.
    double factor(Quantity quantity) const;

    UnitSystem system_;
};

}  // namespace caudalis::design
