#pragma once
// The small machine that the native library and the Windows server both design, so that their
// outlet pressures and flows can be compared to the last bit. Units: m, mm, cm, kPa, l/s.

namespace small_machine {

struct Span {
    long id;
    const char* name;
    double length;
    double diameter;
    double spacing_cm;
    double endHeight;
};

inline constexpr Span spans[] = {
    {1, "Span 1", 54.0, 168.0, 230.0, 1.5},
    {2, "Span 2", 54.0, 168.0, 230.0, 2.25},
    {3, "Span 3", 48.0, 141.0, 230.0, 1.75},
};
inline constexpr int spanCount = 3;
inline constexpr double inletPressure = 260.0;
inline constexpr double flow = 26.0;
inline constexpr double roughness = 130.0;
inline constexpr double gunRing = 18.0;
/// The strategy's tolerance: the nozzle's flow within this fraction of the outlet's.
inline constexpr double tolerance = 0.3;

/// The pressure the strategy matches nozzles at: the acting pressure once there is one.
inline double matchingPressure(double acting, double ideal) {
    return acting > 0 ? acting : ideal;
}

}  // namespace small_machine
