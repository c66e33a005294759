#include "SqliteLiteralLift.hpp"

#include <charconv>
#include <utility>

namespace caudalis {
namespace {

/// Integer literals of up to this many digits always fit a 64-bit integer.
constexpr std::size_t safeIntegerDigits = 18;

/// At most this many literals are taken out of one statement (the least limit on parameters
/// any SQLite build has).
constexpr std::size_t mostParameters = 999;

bool isSpace(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\f';
}

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

bool isLetter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

/// A character that may continue an identifier or a keyword (bytes of UTF-8 sequences too).
bool isWordCharacter(char c) {
    return isLetter(c) || isDigit(c) || c == '_' || c == '$' || static_cast<unsigned char>(c) >= 0x80;
}

char upper(char c) {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

bool sameWord(std::string_view word, std::string_view keyword) {
    if (word.size() != keyword.size()) {
        return false;
    }
    for (std::size_t i = 0; i < word.size(); ++i) {
        if (upper(word[i]) != keyword[i]) {
            return false;
        }
    }
    return true;
}

}  // namespace

/// Walks the statement text once, copying it into the shape and taking the literals out.
class SqliteLiteralLift::Scanner {
public:
    Scanner(std::string_view sql, SqliteLiteralLift& lift) : sql_(sql), lift_(lift) {}

    bool statement() {
        if (!prefix()) {
            return false;
        }
        if (!commaSeparated([this] { return tuple(); })) {
            return false;
        }
        if (take(';')) {
            copySpaces();
        }
        return at_ == sql_.size();
    }

private:
    /// "INSERT ... VALUES" with no literal, parameter, comment or SELECT on the way.
    bool prefix() {
        copySpaces();
        if (!sameWord(word(), "INSERT")) {
            return false;
        }
        while (at_ < sql_.size()) {
            const char c = sql_[at_];
            if (isWordCharacter(c) && !isDigit(c)) {
                const std::string_view w = word();
                if (sameWord(w, "SELECT")) {
                    return false;
                }
                copy(w.size());
                if (sameWord(w, "VALUES")) {
                    return true;
                }
            } else if (c == '"' || c == '`' || c == '[') {
                if (!quotedIdentifier(c == '[' ? ']' : c)) {
                    return false;
                }
            } else if (isSpace(c) || c == '(' || c == ')' || c == ',' || c == '.') {
                copy(1);
            } else {
                return false;
            }
        }
        return false;
    }

    /// "item, item, ...", spaces copied around each item.
    template <typename Item>
    bool commaSeparated(Item item) {
        do {
            copySpaces();
            if (!item()) {
                return false;
            }
            copySpaces();
        } while (take(','));
        return true;
    }

    /// "( value, value, ... )".
    bool tuple() {
        if (!take('(')) {
            return false;
        }
        return commaSeparated([this] { return value(); }) && take(')');
    }

    bool value() {
        if (at_ < sql_.size() && sql_[at_] == '\'') {
            return text();
        }
        if (sameWord(word(), "NULL")) {
            copy(4);
            return true;
        }
        // The sign goes with the value: the engine negates a parameter as 0 - value, which
        // turns -0.0 into 0.0, where a negated literal keeps its sign.
        bool negative = false;
        if (at_ < sql_.size() && (sql_[at_] == '-' || sql_[at_] == '+')) {
            negative = sql_[at_] == '-';
            ++at_;
            while (at_ < sql_.size() && isSpace(sql_[at_])) {
                ++at_;
            }
        }
        return number(negative);
    }

    bool text() {
        std::string content;
        std::size_t i = at_ + 1;
        while (true) {
            const std::size_t quote = sql_.find('\'', i);
            if (quote == std::string_view::npos) {
                return false;
            }
            content.append(sql_.substr(i, quote - i));
            if (quote + 1 < sql_.size() && sql_[quote + 1] == '\'') {
                content += '\'';
                i = quote + 2;
                continue;
            }
            at_ = quote + 1;
            break;
        }
        lift_.shape_ += '?';
        lift_.values_.push_back({Value::Kind::Text, 0, std::move(content)});
        return true;
    }

    bool number(bool negative) {
        const std::size_t start = at_;
        std::size_t i = start;
        const std::size_t integerDigits = digitsFrom(i);
        bool real = false;
        if (i < sql_.size() && sql_[i] == '.') {
            real = true;
            ++i;
            digitsFrom(i);
        }
        if (i == start || (i == start + 1 && real)) {
            return false;
        }
        if (i < sql_.size() && (sql_[i] == 'e' || sql_[i] == 'E')) {
            real = true;
            ++i;
            if (i < sql_.size() && (sql_[i] == '+' || sql_[i] == '-')) {
                ++i;
            }
            if (digitsFrom(i) == 0) {
                return false;
            }
        }
        if (i < sql_.size() && (isWordCharacter(sql_[i]) || sql_[i] == '.')) {
            return false;
        }
        const std::string_view literal = sql_.substr(start, i - start);
        at_ = i;
        if (real) {
            lift_.shape_ += "CAST(? AS REAL)";
            std::string text(negative ? "-" : "");
            text.append(literal);
            lift_.values_.push_back({Value::Kind::Real, 0, std::move(text)});
            return true;
        }
        if (integerDigits > safeIntegerDigits) {
            return false;
        }
        std::int64_t integer = 0;
        std::from_chars(literal.data(), literal.data() + literal.size(), integer);
        lift_.shape_ += '?';
        lift_.values_.push_back({Value::Kind::Integer, negative ? -integer : integer, {}});
        return true;
    }

    bool quotedIdentifier(char close) {
        const std::size_t end = sql_.find(close, at_ + 1);
        if (end == std::string_view::npos) {
            return false;
        }
        copy(end + 1 - at_);
        return true;
    }

    std::size_t digitsFrom(std::size_t& i) const {
        const std::size_t start = i;
        while (i < sql_.size() && isDigit(sql_[i])) {
            ++i;
        }
        return i - start;
    }

    std::string_view word() const {
        std::size_t end = at_;
        while (end < sql_.size() && isWordCharacter(sql_[end])) {
            ++end;
        }
        return sql_.substr(at_, end - at_);
    }

    void copySpaces() {
        while (at_ < sql_.size() && isSpace(sql_[at_])) {
            copy(1);
        }
    }

    bool take(char c) {
        if (at_ < sql_.size() && sql_[at_] == c) {
            copy(1);
            return true;
        }
        return false;
    }

    void copy(std::size_t count) {
        lift_.shape_.append(sql_.substr(at_, count));
        at_ += count;
    }

    std::string_view sql_;
    SqliteLiteralLift& lift_;
    std::size_t at_ = 0;
};

std::optional<SqliteLiteralLift> SqliteLiteralLift::of(std::string_view sql) {
    SqliteLiteralLift lift;
    lift.shape_.reserve(sql.size());
    lift.values_.reserve(16);
    if (!Scanner(sql, lift).statement() || lift.values_.empty() || lift.values_.size() > mostParameters) {
        return std::nullopt;
    }
    return lift;
}

void SqliteLiteralLift::bind(sqlite3_stmt* statement) const {
    int parameter = 0;
    for (const Value& value : values_) {
        ++parameter;
        if (value.kind == Value::Kind::Integer) {
            sqlite3_bind_int64(statement, parameter, value.integer);
        } else {
            sqlite3_bind_text(statement, parameter, value.text.data(), static_cast<int>(value.text.size()),
                              SQLITE_TRANSIENT);
        }
    }
}

}  // namespace caudalis
