#pragma once

#include <deque>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "caudalis/core/Object.hpp"
#include "caudalis/core/Variant.hpp"

namespace caudalis {

class DatabaseCursor;

/// The rows returned by `Connection::Execute`, read forward. Rows are read from the statement as
/// they are asked for; before its connection runs anything else (or closes), the rows not read
/// yet are read into the record set, so the statement is finished by then and the record set
/// may outlive its connection. A statement that returns no rows gives an empty record set, at
/// both EOF and BOF. The rows of a cursor that reads by name (a host's own engine) are not read
/// ahead: they stay with that engine, which keeps them for the record set on its own.
///
/// `EOF` is a macro of the C library, so the end test is spelled `EOF_`.
class Recordset : public Object {
public:
    /// An empty record set without columns.
    Recordset();
    /// The rows of `cursor`, read as they are asked for.
    explicit Recordset(std::unique_ptr<DatabaseCursor> cursor);
    ~Recordset() override;
    Recordset(const Recordset&) = delete;
    Recordset& operator=(const Recordset&) = delete;

    /// True when the current position is after the last row (or there is no row).
    bool EOF_() const noexcept { return !hasRow_; }
    /// True when the current position is before the first row, which here means there is no row.
    bool BOF() const noexcept { return !anyRow_; }
    /// Moves to the next row; `RuntimeError::DataAccess` when already at EOF.
    void MoveNext();
    /// The value of the named field (any case) in the current row. An unknown name raises
    /// `DatabaseError::ItemNotFound`; no current row raises `RuntimeError::DataAccess`.
    Variant Fields(const std::string& name) const;

    /// The field names, in column order (none for a cursor that reads by name).
    const std::vector<std::string>& fieldNames() const noexcept { return names_; }

    /// Reads every row not read yet into the record set and lets the statement go; nothing for a
    /// cursor that reads by name.
    void readRemaining();

private:
    std::size_t fieldIndex(const std::string& name) const;

    std::vector<std::string> names_;
    /// The statement's rows not read yet; empty once all are read.
    std::unique_ptr<DatabaseCursor> cursor_;
    std::vector<Variant> current_;
    std::deque<std::vector<Variant>> readAhead_;
    bool hasRow_ = false;
    bool anyRow_ = false;
    /// The cursor reads its fields by name: the current row stays with it.
    bool byName_ = false;
    /// Field names as asked for, with the column each resolved to.
    mutable std::vector<std::pair<std::string, std::size_t>> resolved_;
};

}  // namespace caudalis
