#pragma once

#include <memory>
#include <string>
#include <type_traits>

#include "caudalis/core/Basic.hpp"
#include "caudalis/core/BoundedArray.hpp"
#include "caudalis/core/Variant.hpp"

namespace caudalis {

class Connection;

/// Fills the "?" marks of `sql` from left to right with the elements of `params` (as text, in
/// the current locale's form), each replacing the first mark still in the text, so a mark that
/// an element brings in is taken by the next element. Extra elements change nothing and extra
/// marks stay. Writes the result back into `sql` and returns it. A Null element raises 94 and
/// leaves `sql` unchanged.
std::string substituteParams(std::string& sql, const BoundedArray<Variant>& params);

/// Nests the join operands `tables(0)` to `tables(lastIndex)` in parenthesised INNER JOINs,
/// innermost first; -1 means the last element. The array must start at index 0.
std::string innerJoin(const BoundedArray<Variant>& tables, Integer lastIndex = -1);

/// A number as text with "." as decimal separator whatever the locale.
std::string sqlDouble(double value);

/// The current locale's decimal separator.
std::string decimalSeparator();

/// "true" when the value is true, else "false".
std::string sqlBoolean(const Variant& value);

/// The value's text between single quotes; quotes inside are not doubled.
std::string sqlQuote(const Variant& value);

/// The value's text between "#" marks.
std::string sqlDate(const Variant& value);

/// "null" when `condition` is true, else the value's text.
std::string nullIf(const Variant& condition, const Variant& value);

/// "null" for the empty literals "##" and "''", else the literal unchanged.
std::string emptyLiteralToNull(const std::string& literal);

/// `text` as a statement's text literal: between single quotes, with its quotes doubled.
std::string textLiteral(const std::string& text);

/// "null" when the number at the start of the value's text (read with "." as decimal point, 0
/// when the text does not start with a number) is 0, or the value equals 0; else its text.
std::string zeroToNull(const Variant& value);

/// Integer 0 for Null, else the value unchanged.
Variant nullToZero(const Variant& value);

/// "" for Null, else the value's text.
std::string nullToEmpty(const Variant& value);

/// True when the text is empty after trimming blanks.
bool isBlank(const std::string& text);

/// Something persisted that carries its database key as a member `id` (records) or as an
/// accessor `id()` (objects).
template <class T>
concept HasIdMember = requires(const T& item) {
    item.id;
};
template <class T>
concept HasIdAccessor = requires(const T& item) {
    item.id();
};
template <class T>
concept Persisted = HasIdMember<T> || HasIdAccessor<T>;

namespace detail {
/// Whether a key marks something not yet stored (0 or less); a Null key raises 94.
template <class Id>
bool isUnstoredId(const Id& id) {
    if constexpr (std::is_same_v<Id, Variant>) {
        return id.toDouble() <= 0.0;
    } else {
        return id <= 0;
    }
}
}  // namespace detail

/// True when the item's `id` is 0 or less (not stored yet).
template <Persisted T>
bool isNewRecord(const T& item) {
    if constexpr (HasIdAccessor<T>) {
        return detail::isUnstoredId(item.id());
    } else {
        return detail::isUnstoredId(item.id);
    }
}

/// The same for an object held by reference.
template <Persisted T>
bool isNewRecord(const std::shared_ptr<T>& item) {
    return isNewRecord(*item);
}

/// The identity value generated last on `conn` ("Select @@IDENTITY as id;").
Variant lastIdentity(Connection& conn);

}  // namespace caudalis
