#pragma once

#include <string>
#include <vector>

#include "caudalis/core/Object.hpp"
#include "caudalis/core/Variant.hpp"

namespace caudalis {

class DatabaseCursor;

/// The rows returned by `Connection::Execute`, read forward. All rows are read when the record
/// set is made, so the statement is finished (and its locks released) by then. A statement
/// that returns no rows gives an empty record set, at both EOF and BOF.
///
/// `EOF` is a macro of the C library, so the end test is spelled `EOF_`.
class Recordset : public Object {
public:
    /// An empty record set without columns.
    Recordset() = default;
    /// Reads every row of `cursor`.
    explicit Recordset(DatabaseCursor& cursor);

    /// True when the current position is after the last row (or there is no row).
    bool EOF_() const noexcept;
    /// True when the current position is before the first row, which here means there is no row.
    bool BOF() const noexcept;
    /// Moves to the next row; `RuntimeError::DataAccess` when already at EOF.
    void MoveNext();
    /// The value of the named field (any case) in the current row. An unknown name raises
    /// `DatabaseError::ItemNotFound`; no current row raises `RuntimeError::DataAccess`.
    Variant Fields(const std::string& name) const;

    /// The field names, in column order.
    const std::vector<std::string>& fieldNames() const noexcept { return names_; }

private:
    std::size_t fieldIndex(const std::string& name) const;

    std::vector<std::string> names_;
    std::vector<std::vector<Variant>> rows_;
    std::size_t position_ = 0;
};

}  // namespace caudalis
