#pragma once

#include <optional>
#include <string>
#include <vector>

#include "caudalis/fieldtests/FieldReadings.hpp"
#include "caudalis/fieldtests/ReadingsText.hpp"

namespace caudalis::design {

/// Catch-can readings as CSV with named columns, the way crews keep them in a spreadsheet. The
/// first row that is not blank and not a "#" comment names the columns (any order, any case):
///
/// | column | meaning |
/// |---|---|
/// | `distance_m` or `distance_ft` | distance of the collector from the centre |
/// | `volume_ml`, `depth_mm` or `depth_in` | what the collector caught; `volume_ml` may stand beside a depth
/// column, which is read only when the collectors' opening is not given | | `collector_area_cm2` or
/// `collector_area_in2` | optional, with `volume_ml`: the collector's opening | | `line` | optional: the
/// radial line's name (at most two lines) | | `test` | optional: the test's name, for a file that holds
/// several tests; one is read at a time | | `collector` | optional: the collector's label | | `flag` |
/// optional: why the crew struck the collector out (wind, tipped); blank when it counts | | `note`, `notes`,
/// `comment` | optional, ignored |
///
/// Fields are separated by commas and may be double-quoted; numbers use "." as decimal point.
/// Every failure raises `ReadingsError` naming the text, line and column.
class FieldReadingsCsv {
public:
    /// The readings of `text`. Volumes need a collector area column or `gaugeDiameterM`
    /// (in m); an area column wins over the gauge.
    static FieldReadings read(const ReadingsText& text, std::optional<double> gaugeDiameterM);
    /// The readings of one test of `text` (its `test` column); with no test named, the text
    /// must hold only one.
    static FieldReadings readTest(const ReadingsText& text, std::optional<double> gaugeDiameterM,
                                  const std::optional<std::string>& test);
    /// The fields of one CSV row; `source` and `line` name the row in messages.
    static std::vector<std::string> fields(const std::string& row, const std::string& source, long line);
};

}  // namespace caudalis::design
