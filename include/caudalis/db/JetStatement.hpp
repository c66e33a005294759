#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace caudalis {

/// A piece of a statement text in the Access (Jet) dialect.
struct JetSqlSegment {
    enum class Kind {
        Code,          ///< statement text outside any quotes or brackets
        Text,          ///< a string literal '...' ('' inside stands for one quote)
        QuotedName,    ///< a double-quoted part "..."
        BracketedName  ///< a bracketed name [...]
    };
    Kind kind = Kind::Code;
    /// The piece as written, delimiters included.
    std::string text;
};

/// One statement text split into code, literals and bracketed names, so that dialect rewriting
/// never touches the inside of a literal.
class JetStatement {
public:
    explicit JetStatement(std::string_view sql);

    const std::vector<JetSqlSegment>& segments() const noexcept { return segments_; }

    /// Raises `DatabaseError::InvalidStatement` when the text holds no statement and
    /// `DatabaseError::CharactersAfterStatement` when anything but blanks and ";" follows the
    /// first ";" outside quotes.
    void requireSingleStatement() const;

private:
    void addCode(char c);
    std::size_t addDelimited(std::string_view sql, std::size_t start, JetSqlSegment::Kind kind);

    std::vector<JetSqlSegment> segments_;
};

}  // namespace caudalis
