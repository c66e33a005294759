#pragma once

#include <stdexcept>
#include <string>

namespace caudalis::design {

/// Readings that cannot be used. The message names the file (or text), and where known the
/// line and the column, so that a crew can find the cell at fault.
class ReadingsError : public std::runtime_error {
public:
    /// "<source>: <what>".
    ReadingsError(const std::string& source, const std::string& what);
    /// "<source> line <line>: <what>".
    ReadingsError(const std::string& source, long line, const std::string& what);
    /// "<source> line <line>, column <column> (<columnName>): <what>".
    ReadingsError(const std::string& source, long line, long column, const std::string& columnName,
                  const std::string& what);
};

}  // namespace caudalis::design
