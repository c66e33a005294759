#pragma once

#include <sqlite3.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace caudalis {

/// An INSERT ... VALUES statement whose values are all plain literals (numbers, optionally
/// signed, quoted texts and NULL), with its number and text literals taken out as parameters:
/// one prepared form then serves every statement of the same shape, each with its own values.
///
/// The parameters keep the types the literals have: an integer literal binds as an integer, a
/// text literal as its text (doubled quotes undone), and a real literal as its own text read by
/// the engine through CAST(? AS REAL), the very conversion that reads the literal, so the same
/// double results. Inside a VALUES list neither literals nor parameters carry an affinity, so
/// the values stored are the ones the text gives. Anything else (other statements, expressions,
/// hexadecimal or overlong integers, blobs, comments, parameters already in the text) is left
/// to run as written.
class SqliteLiteralLift {
public:
    /// One literal taken out of the text.
    struct Value {
        enum class Kind { Integer, Real, Text };
        Kind kind = Kind::Text;
        std::int64_t integer = 0;
        /// The real literal's characters, or the text literal's content.
        std::string text;
    };

    /// The lifted form of `sql`, or nothing when it is not such a statement.
    static std::optional<SqliteLiteralLift> of(std::string_view sql);

    /// The statement text with a parameter in place of each literal.
    const std::string& shape() const noexcept { return shape_; }
    const std::vector<Value>& values() const noexcept { return values_; }
    /// Binds the values to `statement`, prepared from `shape()`.
    void bind(sqlite3_stmt* statement) const;

private:
    class Scanner;

    std::string shape_;
    std::vector<Value> values_;
};

}  // namespace caudalis
