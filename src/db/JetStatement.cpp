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

bool isWordCharacter(char c) {
    return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_';
}

std::string lowerWord(std::string word) {
    for (char& c : word) {
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    }
    return word;
}

/// The words of the code pieces of a statement, lower case, in order.
std::vector<std::string> codeWords(const std::vector<JetSqlSegment>& segments) {
    std::vector<std::string> words;
    std::string word;
    for (const JetSqlSegment& segment : segments) {
        for (const char c : segment.text) {
            if (segment.kind == Kind::Code && isWordCharacter(c)) {
                word += c;
            } else if (!word.empty()) {
                words.push_back(lowerWord(word));
                word.clear();
            }
        }
    }
    if (!word.empty()) {
        words.push_back(lowerWord(word));
    }
    return words;
}

/// Whether the statement is "CREATE [TEMP|TEMPORARY] TRIGGER ...", whose body holds statements
/// ending in ";" up to its closing END.
bool createsTrigger(const std::vector<JetSqlSegment>& segments) {
    const std::vector<std::string> words = codeWords(segments);
    std::size_t next = 1;
    if (words.size() > 2 && (words[1] == "temp" || words[1] == "temporary")) {
        next = 2;
    }
    return words.size() > next && words[0] == "create" && words[next] == "trigger";
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
    // A trigger's body holds statements of its own: only a ";" after the word END ends it.
    const bool trigger = createsTrigger(segments_);
    bool statementSeen = false;
    bool terminated = false;
    std::string word;
    std::string lastWord;
    for (const JetSqlSegment& segment : segments_) {
        for (const char c : segment.text) {
            const bool code = segment.kind == Kind::Code;
            const bool content = !code || !isBlankOrTerminator(c);
            if (content && terminated) {
                raiseDatabaseError(DatabaseError::CharactersAfterStatement);
            }
            if (code && isWordCharacter(c)) {
                word += c;
            } else if (!word.empty()) {
                lastWord = lowerWord(word);
                word.clear();
            }
            statementSeen = statementSeen || content;
            const bool ends = !trigger || lastWord == "end";
            terminated = terminated || (statementSeen && code && c == ';' && ends);
        }
    }
    if (!statementSeen) {
        raiseDatabaseError(DatabaseError::InvalidStatement);
    }
}

}  // namespace caudalis
