#pragma once

#include <string>
#include <string_view>

#include "caudalis/db/JetStatement.hpp"

namespace caudalis {

/// Turns a statement of the Access (Jet) dialect into an engine's own SQL. The walk over the
/// statement is shared by every engine and never looks inside a literal: words of code
/// (`@@IDENTITY`, `true`, `false`), dates between "#", bracketed names and a table of another
/// database named as `[path].Table` are handed to the engine's rules one by one.
class JetDialect {
public:
    virtual ~JetDialect() = default;

    std::string rewrite(const JetStatement& statement) const;

    /// Whether a bracketed name followed by "." names a database file rather than a table:
    /// it holds a path separator, a drive colon or a file extension point.
    static bool namesDatabaseFile(std::string_view bracketed);

protected:
    /// Appends to `out` what a word of code (letters, digits, "_", "@", "$") becomes.
    virtual void appendWord(std::string_view word, std::string& out) const = 0;
    /// What the date between "#" marks (without them) becomes; a text literal by default.
    virtual std::string rewriteDate(std::string_view date) const;
    /// The schema for the other database named by `reference`, the bracket's content in
    /// `[reference].Table`.
    virtual std::string schemaFor(const std::string& reference) const = 0;
    /// Whether the content of a bracketed name followed by "." names another database.
    virtual bool namesOtherDatabase(std::string_view content) const;
    /// What a bracketed name that is not another database becomes; unchanged by default.
    virtual std::string rewriteBracketedName(const std::string& bracketed) const;
    /// What a string literal becomes, given the text rewritten before it; unchanged by default.
    virtual std::string rewriteLiteral(const std::string& literal, const std::string& before) const;
    /// What a comment becomes; unchanged by default.
    virtual std::string rewriteComment(const std::string& comment) const;

    /// The content of a bracketed name, without its brackets.
    static std::string bracketContent(const std::string& bracketed);
    static bool isWordCharacter(char c) {
        const bool letterOrDigit = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
        return letterOrDigit || c == '_' || c == '@' || c == '$';
    }

private:
    /// Appends the rewritten run of code to `result`.
    void appendCode(std::string_view code, std::string& result) const;
    std::string rewriteBracketed(const JetSqlSegment& segment, const JetSqlSegment* next) const;
    /// The rewritten date that starts with the "#" at `start`, or empty when no "#" closes it
    /// on the same line; `end` is then one past the closing "#".
    std::string dateAt(std::string_view code, std::size_t start, std::size_t& end) const;
};

}  // namespace caudalis
