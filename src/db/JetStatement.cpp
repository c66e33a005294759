#include "caudalis/db/JetStatement.hpp"

#include <algorithm>
#include <cctype>

#include "caudalis/db/DatabaseErrors.hpp"

namespace caudalis {
namespace {

using Kind = JetSqlSegment::Kind;

/// The blanks of the C locale: space, tab, line feed, vertical tab, form feed, carriage return.
bool isBlank(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

bool isBlankOrTerminator(char c) {
    return c == ';' || isBlank(c);
}

/// The end of the plain code that starts at `start`: the next quote, bracket or possible
/// comment start.
std::size_t codeRunEnd(std::string_view sql, std::size_t start) {
    const std::size_t end = sql.find_first_of("'\"[-/", start + 1);
    return end == std::string_view::npos ? sql.size() : end;
}

/// True when the character belongs to a statement: anything inside a literal or a name, and
/// any code but blanks and ";". Comments hold no statement.
bool isContent(const JetSqlSegment& segment, char c) {
    return segment.kind != JetSqlSegment::Kind::Comment &&
           (segment.kind != JetSqlSegment::Kind::Code || !isBlankOrTerminator(c));
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

std::size_t commentEnd(std::string_view sql, std::size_t start) {
    const bool lineComment = sql[start] == '-';
    const std::string_view closing = lineComment ? "\n" : "*/";
    const std::size_t close = sql.find(closing, start + 2);
    return close == std::string_view::npos ? sql.size() : close + closing.size();
}

bool startsComment(std::string_view sql, std::size_t i) {
    const std::string_view rest = sql.substr(i);
    return rest.starts_with("--") || rest.starts_with("/*");
}

bool isWordCharacter(char c) {
    return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_';
}

/// Skips the blanks at `pos`; returns how many there were.
std::size_t skipBlanks(std::string_view code, std::size_t& pos) {
    const std::size_t start = pos;
    while (pos < code.size() && isBlank(code[pos])) {
        ++pos;
    }
    return pos - start;
}

/// True when `word` (any case) stands at `pos`; moves past it then.
bool takeWord(std::string_view code, std::size_t& pos, std::string_view word) {
    if (code.size() - pos < word.size()) {
        return false;
    }
    for (std::size_t i = 0; i < word.size(); ++i) {
        if (std::toupper(static_cast<unsigned char>(code[pos + i])) != word[i]) {
            return false;
        }
    }
    pos += word.size();
    return true;
}

/// True when the code begins, after blanks, with CREATE [TEMP | TEMPORARY] TRIGGER as whole
/// words, in any case.
bool beginsCreateTrigger(std::string_view code) {
    std::size_t pos = 0;
    skipBlanks(code, pos);
    if (!takeWord(code, pos, "CREATE") || skipBlanks(code, pos) == 0) {
        return false;
    }
    std::size_t afterTemp = pos;
    if ((takeWord(code, afterTemp, "TEMPORARY") || takeWord(code, afterTemp, "TEMP")) &&
        skipBlanks(code, afterTemp) > 0) {
        pos = afterTemp;
    }
    return takeWord(code, pos, "TRIGGER") && (pos == code.size() || !isWordCharacter(code[pos]));
}

/// True when the code written so far ends with the keyword END (the end of a trigger's body).
bool endsWithEndKeyword(const std::string& code) {
    const auto last = code.find_last_not_of(" \t\r\n");
    if (last == std::string::npos || last < 2) {
        return false;
    }
    std::string word = code.substr(last - 2, 3);
    std::transform(word.begin(), word.end(), word.begin(), [](unsigned char c) { return std::toupper(c); });
    const bool boundary = last < 3 || std::isalnum(static_cast<unsigned char>(code[last - 3])) == 0;
    return word == "END" && boundary;
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
                if (startsComment(sql, i)) {
                    i = addComment(sql, i);
                } else {
                    const std::size_t end = codeRunEnd(sql, i);
                    addCode(sql.substr(i, end - i));
                    i = end;
                }
        }
    }
}

std::string JetStatement::text() const {
    std::string whole;
    for (const JetSqlSegment& segment : segments_) {
        whole += segment.text;
    }
    return whole;
}

void JetStatement::addCode(std::string_view code) {
    if (segments_.empty() || segments_.back().kind != Kind::Code) {
        segments_.push_back({Kind::Code, {}});
    }
    segments_.back().text += code;
}

std::size_t JetStatement::addDelimited(std::string_view sql, std::size_t start, Kind kind) {
    const std::size_t end = kind == Kind::BracketedName ? bracketEnd(sql, start) : quotedEnd(sql, start);
    segments_.push_back({kind, std::string(sql.substr(start, end - start))});
    return end;
}

std::size_t JetStatement::addComment(std::string_view sql, std::size_t start) {
    const std::size_t end = commentEnd(sql, start);
    segments_.push_back({Kind::Comment, std::string(sql.substr(start, end - start))});
    return end;
}

bool JetStatement::createsTrigger() const {
    const auto firstCode = std::find_if(segments_.begin(), segments_.end(), [](const JetSqlSegment& segment) {
        return segment.kind != Kind::Comment;
    });
    return firstCode != segments_.end() && firstCode->kind == Kind::Code &&
           beginsCreateTrigger(firstCode->text);
}

void JetStatement::requireSingleStatement() const {
    const bool trigger = createsTrigger();
    bool statementSeen = false;
    bool terminated = false;
    std::string code;
    for (const JetSqlSegment& segment : segments_) {
        if (segment.kind == Kind::Comment) {
            continue;
        }
        if (segment.kind != Kind::Code) {
            // A literal or a name is content throughout and never ends the statement.
            if (!segment.text.empty() && terminated) {
                raiseDatabaseError(DatabaseError::CharactersAfterStatement);
            }
            statementSeen = statementSeen || !segment.text.empty();
            if (trigger) {
                code.append(segment.text.size(), ' ');
            }
            continue;
        }
        for (const char c : segment.text) {
            const bool content = isContent(segment, c);
            if (content && terminated) {
                raiseDatabaseError(DatabaseError::CharactersAfterStatement);
            }
            statementSeen = statementSeen || content;
            const bool ends = statementSeen && c == ';';
            terminated = terminated || (ends && (!trigger || endsWithEndKeyword(code)));
            if (trigger) {
                code += c;
            }
        }
    }
    if (!statementSeen) {
        raiseDatabaseError(DatabaseError::InvalidStatement);
    }
}

bool JetStatement::holdsStatement() const {
    return std::any_of(segments_.begin(), segments_.end(), [](const JetSqlSegment& segment) {
        return std::any_of(segment.text.begin(), segment.text.end(),
                           [&segment](char c) { return isContent(segment, c); });
    });
}

}  // namespace caudalis
