#pragma once

#include <ostream>

#include "caudalis/design/DesignResult.hpp"
#include "caudalis/design/Units.hpp"

namespace caudalis::design {

/// One CSV row per outlet (the end gun last), with the record field names as column names;
/// numbers always with "." as decimal separator, in the design's own units or in `units`
/// (depth_mm and ideal_depth_mm then hold inches).
class CsvReport {
public:
    static void write(std::ostream& out, const DesignResult& result);
    static void write(std::ostream& out, const DesignResult& result, const Units& units);
};

}  // namespace caudalis::design
