#pragma once

#include <string>
#include <vector>

#include "caudalis/core/Variant.hpp"

namespace caudalis {

/// The rows produced by one statement, read forward once. A statement that produces no rows
/// has no columns and no rows. Implemented once per database engine.
class DatabaseCursor {
public:
    virtual ~DatabaseCursor() = default;

    /// The names of the result columns, in order.
    virtual std::vector<std::string> columnNames() const = 0;

    /// Moves the values of the next row into `row`; false when no row is left.
    virtual bool fetch(std::vector<Variant>& row) = 0;
};

}  // namespace caudalis
