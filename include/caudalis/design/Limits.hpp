#pragma once

#include <cstdint>
#include <limits>

namespace caudalis::design::limits {

/// The computation numbers outlets, spans and charts with 16-bit whole numbers.
inline constexpr long largest16Bit = std::numeric_limits<std::int16_t>::max();
/// Outlets of one machine in all, the end gun counting as one.
inline constexpr long maximumOutlets = largest16Bit;
/// The largest chart id the chart tables read and write.
inline constexpr long largestChartId = largest16Bit;

}  // namespace caudalis::design::limits
