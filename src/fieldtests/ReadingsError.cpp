#include "caudalis/fieldtests/ReadingsError.hpp"

namespace caudalis::design {

ReadingsError::ReadingsError(const std::string& source, const std::string& what)
    : std::runtime_error(source + ": " + what) {}

ReadingsError::ReadingsError(const std::string& source, long line, const std::string& what)
    : std::runtime_error(source + " line " + std::to_string(line) + ": " + what) {}

ReadingsError::ReadingsError(const std::string& source, long line, long column, const std::string& columnName,
                             const std::string& what)
    : std::runtime_error(source + " line " + std::to_string(line) + ", column " + std::to_string(column) +
                         " (" + columnName + "): " + what) {}

}  // namespace caudalis::design
