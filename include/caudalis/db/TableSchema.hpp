#pragma once

#include <memory>
#include <optional>
#include <string>

#include "caudalis/core/Basic.hpp"
#include "caudalis/core/BoundedArray.hpp"
#include "caudalis/core/Object.hpp"
#include "caudalis/core/Variant.hpp"

namespace caudalis {

class Connection;

/// One table described by its name, its data columns and one key column, writing the texts of
/// the statements the persistence classes run. Values and conditions are SQL text already (see
/// SqlText.hpp) and are placed as they stand. An omitted optional argument (nullopt) differs
/// from a given one: an empty text counts as given.
class TableSchema : public Object {
public:
    void init(const std::string& lnome, const BoundedArray<Variant>& lcampos, const std::string& lfield_id);

    /// Copies every row whose key is `from_id` into new rows with key `to_id`, in one statement.
    void copyData(Connection& con, Long from_id, Long to_id) const;
    /// The statement `copyData` runs.
    std::string copyDataSQL(Long from_id, Long to_id) const;

    /// "UPDATE nome SET c1 = v1,c2 = v2 WHERE key = id"; `values` is read at the indexes of the
    /// columns (9 when one is missing).
    std::string updateSQL(const BoundedArray<Variant>& values, const Variant& id) const;

    /// "SELECT Count(key) as result FROM nome" and the filter.
    std::string countSQL(const std::optional<Variant>& condition = std::nullopt) const;

    /// "SELECT key,s1,... FROM nome" (or "*" without a selection), the filter, the order, ";".
    std::string selectSQL(const std::optional<Variant>& id = std::nullopt,
                          const std::optional<BoundedArray<Variant>>& selection = std::nullopt,
                          const std::optional<Variant>& condition = std::nullopt,
                          const std::optional<Variant>& order = std::nullopt) const;

    /// "INSERT INTO nome (c1,c2) VALUES (v1,v2 );" with `fields` in place of the columns if given.
    std::string insertSQL(const BoundedArray<Variant>& values,
                          const std::optional<BoundedArray<Variant>>& fields = std::nullopt) const;

    /// "DELETE FROM nome" and the filter.
    std::string deleteSQL(const std::optional<Variant>& id = std::nullopt,
                          const std::optional<Variant>& condition = std::nullopt) const;

private:
    /// " WHERE key = id AND condition", either term only when given; empty without both.
    std::string whereClause(const std::optional<Variant>& id, const std::optional<Variant>& condition) const;
    /// The data columns; 13 before `init`.
    const BoundedArray<Variant>& columns() const;

    std::string nome_;
    std::optional<BoundedArray<Variant>> campos_;
    std::string field_id_;
};

/// A new `TableSchema` initialised with the name, the data columns and the key column.
std::shared_ptr<TableSchema> makeTableSchema(const std::string& lnome, const BoundedArray<Variant>& lcampos,
                                             const std::string& lfield_id);

}  // namespace caudalis
