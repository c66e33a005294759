#pragma once

#include <caudalis/core/Object.hpp>
#include <caudalis/core/Variant.hpp>
#include <caudalis/db/Recordset.hpp>
#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace caudalis::com {

class ScriptFields;

/// The record set of `Caudalis.Connection.Execute`, as a macro reads it with ADO's members:
/// `Fields` (by name or by position from 0), `EOF`, `BOF`, `MoveNext`, `MoveFirst`,
/// `RecordCount`, `Close`. Every row is read when the statement runs, so the record set knows
/// its count, can return to its first row and stays readable after its connection closes.
/// Once closed, every member raises 3704 (object closed), a second `Close` included.
class ScriptRecordset final : public caudalis::Object, public std::enable_shared_from_this<ScriptRecordset> {
public:
    explicit ScriptRecordset(const std::shared_ptr<caudalis::Recordset>& rows);

    std::shared_ptr<ScriptFields> fields();
    bool EOF_() const;
    /// True only when there is no row: there is no moving back before the first.
    bool BOF() const;
    caudalis::Long RecordCount() const;
    /// 3021 (no current row) at EOF.
    void MoveNext();
    /// 3021 (no current row) when there is no row.
    void MoveFirst();
    void Close();

    std::size_t columnCount() const;
    const std::string& columnName(std::size_t column) const;
    /// The column a field index names: a number is a position from 0, a text a name in any
    /// case; 3265 (item not found) for any other.
    std::size_t columnOf(const caudalis::Variant& index) const;
    /// The value of a column in the current row; 3021 when there is none.
    const caudalis::Variant& value(std::size_t column) const;

private:
    void requireOpen() const;

    std::vector<std::string> names_;
    std::vector<std::vector<caudalis::Variant>> rows_;
    std::size_t position_ = 0;
    bool open_ = true;
};

}  // namespace caudalis::com
