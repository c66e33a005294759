#pragma once

#include <ostream>
#include <string>

#include "DesignResult.hpp"

namespace caudalis::cli {

/// One CSV row per outlet (the end gun last), with the record field names as column names;
/// numbers always with "." as decimal separator.
class CsvReport {
public:
    static void write(std::ostream& out, const DesignResult& result);
    /// Writes the file; raises `InputError` naming it when it cannot be written.
    static void writeFile(const std::string& path, const DesignResult& result);
};

}  // namespace caudalis::cli
