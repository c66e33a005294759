#pragma once

#include <ostream>

#include "caudalis/design/DesignResult.hpp"

namespace caudalis::design {

/// One CSV row per outlet (the end gun last), with the record field names as column names;
/// numbers always with "." as decimal separator.
class CsvReport {
public:
    static void write(std::ostream& out, const DesignResult& result);
};

}  // namespace caudalis::design
