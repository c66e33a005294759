#pragma once

#include <optional>
#include <string>
#include <vector>

#include "caudalis/design/Units.hpp"

namespace caudalis::design {

// The plain content of a design file, always in SI units: kPa, l/s, m, mm, cm (outlet
// spacing), h, whatever units the file was written in.

struct SpanDescription {
    long id = 0;
    std::string name;
    double lengthM = 0;
    double diameterMm = 0;
    double outletSpacingCm = 0;
    /// Elevation at the span's outer end (fixed spans only; the overhang continues the slope).
    double endElevationM = 0;
};

struct EndGunDescription {
    double ringWidthM = 0;
    double boosterKpa = 0;
};

struct RegulatorDescription {
    int span = 0;
    double pressureKpa = 0;
    double flowMinLps = 0;
    double flowMaxLps = 0;
    bool installed = true;
};

struct PipeMaterialDescription {
    long id = 1;
    std::string name;
    long c = 0;
};

struct DropDescription {
    double diameterMm = 0;
    double lengthM = 0;
    PipeMaterialDescription material;
    bool installed = true;
};

struct IndicatorsDescription {
    double revolutionHours = 0;
    int blockedOutlets = 0;
};

struct PluviometryPointDescription {
    double distanceM = 0;
    double wetDiameterM = 0;
    std::string code;
};

struct KostiakovDescription {
    double k = 0;
    double a = 0;
};

struct PluviometryCheckDescription {
    PluviometryPointDescription first;
    std::optional<PluviometryPointDescription> second;
    KostiakovDescription kostiakov;
};

/// A nozzle model of the catalogue, by its name and, where two brands use the same name, its
/// brand.
struct ModelName {
    std::optional<std::string> brand;
    std::string model;
};

/// A second model for the outlets near the centre, up to `toDistanceM` from it.
struct InnerPackage {
    ModelName name;
    double toDistanceM = 0;
};

/// What an outlet gets when no nozzle of its package is within the tolerance.
enum class NoFitPolicy {
    /// The outlet stays empty.
    LeaveEmpty,
    /// The outlet gets the package's nozzle, rated for its pressure, whose flow comes closest;
    /// its deviation is reported.
    NearestSize,
};

/// The nozzle package: which nozzles the span outlets, the outlets near the centre and the
/// end gun may get, and how closely they must match.
struct NozzleSelection {
    /// Allowed relative deviation of a nozzle's flow from the required flow (0.1 = ±10 %).
    double tolerance = 0;
    /// The span outlets' brand and model. A brand alone lets the design choose the model of
    /// that brand that fits most outlets; neither lets it choose from the whole catalogue.
    std::optional<std::string> brand;
    std::optional<std::string> model;
    std::optional<InnerPackage> inner;
    /// The end gun's model; when absent the design takes the catalogue's largest model that is
    /// rated for the gun's pressure.
    std::optional<ModelName> endGun;
    NoFitPolicy whenNoneFits = NoFitPolicy::LeaveEmpty;
};

/// How regulators are checked, and chosen when the file asks for them to be.
struct RegulationDescription {
    /// The rating that automatic regulators get.
    std::optional<double> ratingKpa;
    /// The pressure a regulator needs above its rating at its inlet to regulate.
    double marginKpa = 35;
    /// Automatic regulators go on every span with an outlet whose pipe pressure differs from
    /// the mean over all span outlets by more than this fraction.
    double spreadLimit = 0.10;
    /// Regulators chosen by the design instead of listed.
    bool automatic = false;
};

/// Limits the design is checked against.
struct ChecksDescription {
    /// A Heermann-Hein CU under this (in %) is a warning.
    double minimumUniformityPercent = 85;
    /// A computed discharge further than this fraction from the design flow is a warning.
    double dischargeTolerance = 0.05;
};

struct DesignDescription {
    std::string name;
    /// The units the file was written in; printouts use them unless told otherwise.
    UnitSystem units = UnitSystem::SI;
    /// The irrigation system the machine belongs to; its charts are stored under this key.
    std::optional<long> systemId;
    double inletPressureKpa = 0;
    double designFlowLps = 0;
    double roughnessC = 0;
    double centreElevationM = 0;
    double revolutionTimeH = 0;
    std::vector<SpanDescription> spans;
    std::optional<SpanDescription> overhang;
    std::optional<EndGunDescription> endGun;
    std::vector<RegulatorDescription> regulators;
    RegulationDescription regulation;
    std::optional<DropDescription> drop;
    IndicatorsDescription indicators;
    std::optional<PluviometryCheckDescription> pluviometryCheck;
    NozzleSelection nozzleSelection;
    ChecksDescription checks;
};

}  // namespace caudalis::design
