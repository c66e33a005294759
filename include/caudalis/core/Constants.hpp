#pragma once

namespace caudalis {

/// pi as the library writes it everywhere: these 15 digits, not full precision.
inline constexpr double pi = 3.14159265358979;
/// 2 pi, likewise as 15 digits.
inline constexpr double twoPi = 6.28318530717958;
inline constexpr double secondsPerHour = 3600;
/// A difference in height enters a pressure multiplied by this factor (1 m of water = 10 kPa).
inline constexpr double pressurePerMetre = 10.0;

}  // namespace caudalis
