#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "caudalis/db/JetDialect.hpp"

namespace caudalis {

/// Turns a statement of the Access (Jet) dialect into PostgreSQL's. `true`/`false` stay as
/// they are; `@@IDENTITY` becomes the key the connection generated last; a date `#...#`
/// becomes a text literal (read month first, as the session's date style says); a bracketed
/// name becomes a double-quoted name in lower case (the case unquoted names are stored in);
/// the other database of `[reference].Table` becomes a schema of the connected database.
///
/// The server must read every literal exactly where the statement's tokenizer saw it: comments
/// are left out, a literal never follows a letter directly (so no `E'...'` escape string can
/// form), and dollar-quoted strings and `$n` parameters are refused.
class PostgresDialect : public JetDialect {
public:
    /// The quoted schema name of the database named by `reference`.
    using SchemaForReference = std::function<std::string(const std::string& reference)>;

    /// `lastKey` is what `@@IDENTITY` becomes.
    PostgresDialect(std::string lastKey, SchemaForReference schemaFor);

    /// `name` between double quotes, an inner double quote doubled.
    static std::string quotedName(std::string_view name);

protected:
    void appendWord(std::string_view word, std::string& out) const override;
    std::string schemaFor(const std::string& reference) const override;
    bool namesOtherDatabase(std::string_view content) const override;
    std::string rewriteBracketedName(const std::string& bracketed) const override;
    std::string rewriteLiteral(const std::string& literal, const std::string& before) const override;
    std::string rewriteComment(const std::string& comment) const override;

private:
    std::string lastKey_;
    SchemaForReference schemaFor_;
};

}  // namespace caudalis
