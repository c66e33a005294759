#pragma once

#include <vector>

#include "caudalis/fieldtests/FieldReadings.hpp"
#include "caudalis/fieldtests/ReadingsText.hpp"

namespace caudalis::design {

/// Catch-can readings in the library's text form: one reading a line, the volume collected in
/// ml, one space and the distance from the centre in m, with "." as decimal point. Lines
/// starting with "#" are comments. Two radial lines are two groups separated by a blank line
/// in one text, or two texts of one group each. Every failure raises `ReadingsError` naming
/// the text and line.
class FieldReadingsText {
public:
    /// The readings of one or two texts, turned into depths through gauges of
    /// `gaugeDiameterM` (> 0, in m).
    static FieldReadings read(const std::vector<ReadingsText>& texts, double gaugeDiameterM);
    /// The groups of readings of one text (groups separated by blank lines), with the
    /// amounts and distances as written.
    static std::vector<std::vector<FieldReading>> groups(const ReadingsText& text);

private:
    static FieldReading parseLine(const std::string& line, const std::string& source, long number);
};

}  // namespace caudalis::design
