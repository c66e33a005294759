#pragma once

#include <optional>
#include <string>
#include <vector>

#include "caudalis/fieldtests/FieldReadings.hpp"

namespace caudalis::fieldtests {

/// Reads the readings files of a field test: a `.csv` file with named columns
/// (`design::FieldReadingsCsv`), or one or two files in the library's text form
/// (`design::FieldReadingsText`). Every failure raises `InputError` naming the file, and the
/// line and column where there is one.
class ReadingsFile {
public:
    /// `gaugeDiameterM` is the gauges' opening, needed by the text form and by CSV volumes
    /// without a collector area column; `test` chooses one test of a CSV file with a test
    /// column.
    static design::FieldReadings load(const std::vector<std::string>& paths,
                                      std::optional<double> gaugeDiameterM,
                                      const std::optional<std::string>& test = std::nullopt);
    static bool isCsv(const std::string& path);
};

}  // namespace caudalis::fieldtests
