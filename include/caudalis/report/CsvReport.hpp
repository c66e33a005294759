#pragma once

#include <ostream>

#include "caudalis/design/DesignResult.hpp"
#include "caudalis/design/Units.hpp"

namespace caudalis::design {

/// One CSV row per outlet (the end gun last), with the record field names as column names, each
/// column of a measure ending in its unit ("caudal_lps", "depth_in"); numbers always with "." as
/// decimal separator, in the design's own units or in `units`.
class CsvReport {
public:
    static void write(std::ostream& out, const DesignResult& result);
    static void write(std::ostream& out, const DesignResult& result, const Units& units);
};

}  // namespace caudalis::design
