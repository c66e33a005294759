#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace caudalis {

/// A piece of a statement text in the Access (Jet) dialect.
struct JetSqlSegment {
    enum class Kind {
        Code,           ///< statement text outside any quotes or brackets
        Text,           ///< a string literal '...' ('' inside stands for one quote)
        QuotedName,     ///< a double-quoted part "..."
        BracketedName,  ///< a bracketed name [...]
        Comment         ///< a comment: -- to the end of the line, or /* ... */
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

    /// The statement as written, for an engine that reads the Access (Jet) dialect itself.
    std::string text() const;

    /// Raises `DatabaseError::InvalidStatement` when the text holds no statement and
    /// `DatabaseError::CharactersAfterStatement` when anything but blanks, comments and ";"
    /// follows the ";" that ends the statement: the first one outside quotes and comments, or,
    /// for a CREATE TRIGGER statement, the first one after the END of the trigger's body.
    void requireSingleStatement() const;

    /// True when the text holds anything but blanks, comments and ";".
    bool holdsStatement() const;

private:
    void addCode(std::string_view code);
    std::size_t addDelimited(std::string_view sql, std::size_t start, JetSqlSegment::Kind kind);
    std::size_t addComment(std::string_view sql, std::size_t start);
    bool createsTrigger() const;

    std::vector<JetSqlSegment> segments_;
};

}  // namespace caudalis
