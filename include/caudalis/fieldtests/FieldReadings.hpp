#pragma once

#include <optional>
#include <string>
#include <vector>

#include "caudalis/core/Records.hpp"
#include "caudalis/design/Units.hpp"

namespace caudalis::design {

/// What the amounts of a set of readings are, as they are stored with an evaluation.
enum class StoredAmount {
    /// Volumes in ml caught in gauges of one opening (`FieldReadings::gaugeDiameterM`).
    VolumeMl,
    /// Depths in mm (read as depths, or volumes turned into depths through each collector's
    /// own opening).
    DepthMm,
};

/// One collector of a catch-can test.
struct FieldReading {
    /// The radial line the collector lies on: 1 or 2.
    int line = 1;
    /// The crew's label of the collector ("" when the readings give none).
    std::string collector;
    /// The amount as stored (ml or mm, see `FieldReadings::amounts`) and the distance from the
    /// centre in m, in the library's reading record.
    FieldSample sample;
    /// The depth caught, in mm, at the distance in m; the null sample when the reading is not
    /// valid (a negative amount, a distance of 0 or less).
    WaterDepthSample depth;
    /// Why the crew struck the collector out ("wind", "tipped", ...); empty when it counts.
    std::string crewExclusion;
    /// Where the reading was read: the file (or text) and its line.
    std::string source;
    long sourceLine = 0;
};

/// The name of line `line` (numbered from 1) among `names`; its number when it has none.
inline std::string lineNameOf(const std::vector<std::string>& names, int line) {
    const auto index = static_cast<std::size_t>(line - 1);
    return line >= 1 && index < names.size() ? names[index] : std::to_string(line);
}

/// The readings of a field test on one or two radial lines.
struct FieldReadings {
    std::vector<FieldReading> readings;
    /// The names of the lines in the order of their numbers ("1", "2" when none are given).
    std::vector<std::string> lineNames;
    StoredAmount amounts = StoredAmount::VolumeMl;
    /// The gauges' opening when the amounts are volumes (0 otherwise).
    double gaugeDiameterM = 0;
    /// The units the crew wrote distances and depths in: US when a column is in feet or inches
    /// (`distance_ft`, `depth_in`); reports print in them unless asked otherwise. The readings
    /// themselves are held in SI.
    UnitSystem units = UnitSystem::SI;

    std::string lineName(int line) const { return lineNameOf(lineNames, line); }
};

}  // namespace caudalis::design
