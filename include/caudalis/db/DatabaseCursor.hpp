#pragma once

#include <string>
#include <vector>

#include "caudalis/core/Variant.hpp"

namespace caudalis {

/// The rows produced by one statement, read forward once. A statement that produces no rows
/// has no columns and no rows. Implemented once per database engine.
///
/// An engine that only answers a field by its name (a host's own connection, reached through
/// late binding, which lists no columns) reads by name: it has no column names, `fetch` only
/// moves to the next row, and `field` reads the current one. Its rows stay with the engine and
/// are never read ahead.
class DatabaseCursor {
public:
    virtual ~DatabaseCursor() = default;

    /// The names of the result columns, in order.
    virtual std::vector<std::string> columnNames() const = 0;

    /// Moves the values of the next row into `row`; false when no row is left.
    virtual bool fetch(std::vector<Variant>& row) = 0;

    /// True for a cursor whose fields are read by name with `field`.
    virtual bool readsByName() const noexcept { return false; }
    /// The named field of the current row (after a `fetch` that returned true), for a cursor
    /// that reads by name; `DatabaseError::ItemNotFound` for any other cursor.
    virtual Variant field(const std::string& name) const;
};

}  // namespace caudalis
