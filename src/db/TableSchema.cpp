#include "caudalis/db/TableSchema.hpp"

#include <limits>
#include <type_traits>

#include "caudalis/core/Arrays.hpp"
#include "caudalis/core/Error.hpp"
#include "caudalis/db/Connection.hpp"
#include "caudalis/db/StatementGuard.hpp"

namespace caudalis {
namespace {

template <class T>
std::string textOf(const T& item) {
    if constexpr (std::is_same_v<T, Variant>) {
        return item.toString();
    } else {
        return item;
    }
}

/// Each element as text, with `separator` between neighbours.
template <class T>
std::string join(const BoundedArray<T>& items, const std::string& separator) {
    std::string joined;
    bool first = true;
    for (const T& item : items) {
        joined += (first ? "" : separator) + textOf(item);
        first = false;
    }
    return joined;
}

/// The text of a value written into a statement for `column`, refusing a text that the
/// statement would not store as given.
std::string valueText(const Variant& value, const std::string& column) {
    std::string text = value.toString();
    StatementGuard::requireWholeLiteral(text, column);
    return text;
}

/// The next value of a 16-bit loop counter; 6 past 32767.
Integer nextIndex(Integer index) {
    if (index >= std::numeric_limits<Integer>::max()) {
        raiseError(RuntimeError::Overflow);
    }
    return static_cast<Integer>(index + 1);
}

}  // namespace

void TableSchema::init(const std::string& lnome, const BoundedArray<Variant>& lcampos,
                       const std::string& lfield_id) {
    nome_ = lnome;
    campos_ = lcampos;
    field_id_ = lfield_id;
}

void TableSchema::copyData(Connection& con, Long from_id, Long to_id) const {
    con.Execute(copyDataSQL(from_id, to_id));
}

std::string TableSchema::copyDataSQL(Long from_id, Long to_id) const {
    const std::string columnList = join(columns(), ",");
    return "INSERT INTO " + nome_ + "(" + columnList + "," + field_id_ + ") " + "SELECT " + columnList + "," +
           std::to_string(to_id) + " FROM  " + nome_ + " WHERE " + field_id_ + "=" + std::to_string(from_id) +
           ";";
}

std::string TableSchema::updateSQL(const BoundedArray<Variant>& values, const Variant& id) const {
    const BoundedArray<Variant>& campos = columns();
    BoundedArray<std::string> terms;
    for (Integer i = Variant(campos.lbound()).toInteger(); i <= campos.ubound(); i = nextIndex(i)) {
        Arrays::shared()->Push(terms,
                               campos(i).toString() + " = " + valueText(values(i), campos(i).toString()));
    }
    return "UPDATE " + nome_ + " SET " + join(terms, ",") + " WHERE " + field_id_ + " = " + id.toString();
}

std::string TableSchema::countSQL(const std::optional<Variant>& condition) const {
    return "SELECT Count(" + field_id_ + ") as result FROM " + nome_ + whereClause(std::nullopt, condition);
}

std::string TableSchema::selectSQL(const std::optional<Variant>& id,
                                   const std::optional<BoundedArray<Variant>>& selection,
                                   const std::optional<Variant>& condition,
                                   const std::optional<Variant>& order) const {
    const std::string columnList = selection ? field_id_ + "," + join(*selection, ",") : "*";
    const std::string ordering = order ? " ORDER BY " + order->toString() : "";
    return "SELECT " + columnList + " FROM " + nome_ + whereClause(id, condition) + ordering + ";";
}

std::string TableSchema::insertSQL(const BoundedArray<Variant>& values,
                                   const std::optional<BoundedArray<Variant>>& fields) const {
    const BoundedArray<Variant>& names = fields ? *fields : columns();
    const std::string columnList = join(names, ",");
    BoundedArray<std::string> texts;
    Long position = 0;
    for (const Variant& value : values) {
        const std::string column =
            position < names.count() ? names(names.lbound() + position).toString() : "a column not named";
        Arrays::shared()->Push(texts, valueText(value, column));
        ++position;
    }
    return "INSERT INTO " + nome_ + " (" + columnList + ") VALUES (" + join(texts, ",") + " );";
}

std::string TableSchema::deleteSQL(const std::optional<Variant>& id,
                                   const std::optional<Variant>& condition) const {
    return "DELETE FROM " + nome_ + whereClause(id, condition);
}

std::string TableSchema::whereClause(const std::optional<Variant>& id,
                                     const std::optional<Variant>& condition) const {
    BoundedArray<std::string> terms;
    if (id) {
        Arrays::shared()->Push(terms, field_id_ + " = " + id->toString());
    }
    if (condition) {
        Arrays::shared()->Push(terms, condition->toString());
    }
    return Arrays::shared()->HasAny(terms) ? " WHERE " + join(terms, " AND ") : "";
}

const BoundedArray<Variant>& TableSchema::columns() const {
    if (!campos_) {
        raiseError(RuntimeError::TypeMismatch);
    }
    return *campos_;
}

std::shared_ptr<TableSchema> makeTableSchema(const std::string& lnome, const BoundedArray<Variant>& lcampos,
                                             const std::string& lfield_id) {
    auto schema = std::make_shared<TableSchema>();
    schema->init(lnome, lcampos, lfield_id);
    return schema;
}

}  // namespace caudalis
