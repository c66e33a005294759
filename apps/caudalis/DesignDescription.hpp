#pragma once

#include <optional>
#include <string>
#include <vector>

namespace caudalis::cli {

// The plain, validated content of a design file. Units: kPa, l/s, m, mm, cm (outlet spacing), h.

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

struct NozzleSelection {
    /// Allowed relative deviation of a nozzle's flow from the required flow (0.1 = ±10 %).
    double tolerance = 0;
    std::optional<std::string> brand;
    std::optional<std::string> model;
};

struct DesignDescription {
    std::string name;
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
    std::optional<DropDescription> drop;
    IndicatorsDescription indicators;
    std::optional<PluviometryCheckDescription> pluviometryCheck;
    NozzleSelection nozzleSelection;
};

}  // namespace caudalis::cli
