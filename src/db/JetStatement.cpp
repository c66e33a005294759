#include "caudalis/db/JetStatement.hpp"

#include <cctype>

#include "caudalis/db/DatabaseErrors.hpp"

namespace caudalis {
namespace {

using Kind = JetSqlSegment::Kind;

bool isBlankOrTerminator(char c) {
    return c == ';' || std::isspace(static_cast<unsigned char>(c)) != 0;
}

/// The end (one past the closing delimiter) of the quoted piece that starts at `start`;
/// a doubled closing quote stays inside. An unterminated piece runs to the end of the text.
std::size_t quotedEnd(std::string_view sql, std::size_t start) {
    const char quote = sql[start];
    std::size_t i = start + 1;
    while (i < sql.size()) {
        if (sql[i] != quote) {
            ++i;
        } else if (i + 1 < sql.size() && sql[i + 1] == quote) {
            i += 2;
        } else {
            return i + 1;
        }
    }
    return sql.size();
}

std::size_t bracketEnd(std::string_view sql, std::size_t start) {
    const std::size_t close = sql.find(']', start + 1);
    return close == std::string_view::npos ? sql.size() : close + 1;
}

}  // namespace

JetStatement::JetStatement(std::string_view sql) {
    std::size_t i = 0;
    while (i < sql.size()) {
        switch (sql[i]) {
            case '\'':
                i = addDelimited(sql, i, Kind::Text);
                break;
            case '"':
                i = addDelimited(sql, i, Kind::QuotedName);
                break;
            case '[':
                i = addDelimited(sql, i, Kind::BracketedName);
                break;
            default:
                addCode(sql[i++]);
        }
    }
}

void JetStatement::addCode(char c) {
    if (segments_.empty() || segments_.back().kind != Kind::Code) {
        segments_.push_back({Kind::Code, {}});
    }
    segments_.back().text += c;
}

std::size_t JetStatement::addDelimited(std::string_view sql, std::size_t start, Kind kind) {
    const std::size_t end = kind == Kind::BracketedName ? bracketEnd(sql, start) : quotedEnd(sql, start);
    segments_.push_back({kind, std::string(sql.substr(start, end - start))});
    return end;
}

void JetStatement::requireSingleStatement() const {
    bool statementSeen = false;
    bool terminated = false;
    for (const JetSqlSegment& segment : segments_) {
        for (const char c : segment.text) {
            const bool content = segment.kind != Kind::Code || !isBlankOrTerminator(c);
            if (content && terminated) {
                raiseDatabaseError(DatabaseError::CharactersAfterStatement);
            }
            statementSeen = statementSeen || content;
            terminated = terminated || (statementSeen && segment.kind == Kind::Code && c == ';');
        }
    }
    if (!statementSeen) {
        raiseDatabaseError(DatabaseError::InvalidStatement);
    }
}

}  // namespace caudalis
