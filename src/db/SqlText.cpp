#include "caudalis/db/SqlText.hpp"

#include <algorithm>
#include <cctype>

#include "TextHelpers.hpp"
#include "caudalis/core/Arrays.hpp"
#include "caudalis/core/Error.hpp"
#include "caudalis/core/NumberText.hpp"
#include "caudalis/core/TextLiteral.hpp"
#include "caudalis/db/Connection.hpp"
#include "caudalis/db/StatementGuard.hpp"

namespace caudalis {
namespace {

constexpr const char* nullLiteral = "null";

/// The character that closes a literal or name opened by `c`, or 0 when `c` opens none.
char closingOf(char c) {
    switch (c) {
        case '\'':
        case '"':
            return c;
        case '[':
            return ']';
        default:
            return 0;
    }
}

bool isNameCharacter(char c) {
    return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_' || c == '.';
}

std::size_t skipBlanksBack(const std::string& text, std::size_t end) {
    while (end > 0 && text[end - 1] == ' ') {
        --end;
    }
    return end;
}

/// The name that ends at `end` ("" when none does).
std::string nameEndingAt(const std::string& text, std::size_t end) {
    std::size_t start = end;
    while (start > 0 && isNameCharacter(text[start - 1])) {
        --start;
    }
    return text.substr(start, end - start);
}

/// The `index`-th name of the list in parentheses that ends at `end` ("" when there is none).
std::string listedName(const std::string& text, std::size_t end, std::size_t index) {
    if (end == 0 || text[end - 1] != ')') {
        return {};
    }
    const std::size_t open = text.rfind('(', end - 1);
    if (open == std::string::npos) {
        return {};
    }
    std::size_t start = open + 1;
    for (std::size_t i = 0; i < index; ++i) {
        start = text.find(',', start);
        if (start == std::string::npos || start > end) {
            return {};
        }
        ++start;
    }
    const std::size_t stop = std::min(text.find_first_of(",)", start), end - 1);
    return trimBlanks(text.substr(start, stop - start));
}

/// The column that the mark at `mark` gives a value for, as the statement names it: the name
/// before "=" (as in "nome='?'"), or the name at the same place in the column list of an
/// "INSERT ... (columns) VALUES (...)"; "a value" when the statement does not say.
std::string fieldOfMark(const std::string& text, std::size_t mark, char closing) {
    std::size_t end = skipBlanksBack(text, closing == 0 ? mark : mark - 1);
    if (end > 0 && text[end - 1] == '=') {
        const std::string name = nameEndingAt(text, skipBlanksBack(text, end - 1));
        return name.empty() ? "a value" : name;
    }
    std::size_t index = 0;
    char quote = closing == ']' ? '[' : closing;
    std::size_t open = mark;
    for (; open > 0 && (quote != 0 || text[open - 1] != '('); --open) {
        const char c = text[open - 1];
        quote = quote == 0 ? (c == '\'' || c == '"' ? c : 0) : (c == quote ? 0 : quote);
        index += quote == 0 && c == ',' ? 1 : 0;
    }
    const std::size_t keyword = skipBlanksBack(text, open == 0 ? 0 : open - 1);
    const std::string values = nameEndingAt(text, keyword);
    if (values.size() != 6 || !texthelpers::equalsIgnoringCase(values, "values")) {
        return "a value";
    }
    const std::string name = listedName(text, skipBlanksBack(text, keyword - values.size()), index);
    return name.empty() ? "a value" : name;
}

/// Checks that the statement stores `value` as given inside the literal or name that `closing`
/// ends (0: the mark is in the statement's code, where a value that begins as a literal must be
/// exactly one).
void requireValueFits(const std::string& value, char closing, const std::string& field) {
    if (closing == 0) {
        StatementGuard::requireWholeLiteral(value, field);
    } else {
        StatementGuard::requireStaysInLiteral(value, closing, field);
    }
}

/// Replaces the first "?" of the text by `value`, after checking that the value is stored as
/// given in the literal the mark stands in. A doubled quote closes and reopens its literal.
void replaceFirstMark(std::string& text, const std::string& value) {
    char closing = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (c == '?') {
            requireValueFits(value, closing, fieldOfMark(text, i, closing));
            text.replace(i, 1, value);
            return;
        }
        closing = closing == 0 ? closingOf(c) : (c == closing ? 0 : closing);
    }
}

void replaceAll(std::string& text, const std::string& from, const std::string& to) {
    if (from.empty()) {
        return;
    }
    for (std::size_t pos = text.find(from); pos != std::string::npos;
         pos = text.find(from, pos + to.size())) {
        text.replace(pos, from.size(), to);
    }
}

bool equalsZero(const Variant& value) {
    const auto order = compareVariants(value, Variant(Integer{0}));
    return order && *order == 0;
}

}  // namespace

std::string substituteParams(std::string& sql, const BoundedArray<Variant>& params) {
    std::string text = sql;
    for (const Variant& param : params) {
        replaceFirstMark(text, param.toString());
    }
    sql = text;
    return text;
}

std::string innerJoin(const BoundedArray<Variant>& tables, Integer lastIndex) {
    // An empty array leaves the index at -1, and reading element 0 raises 9.
    if (lastIndex == -1) {
        lastIndex = static_cast<Integer>(Arrays::shared()->Length(tables) - 1);
    }
    if (lastIndex < -1) {
        // Counting down from a negative index runs past the smallest Integer.
        raiseError(RuntimeError::Overflow);
    }
    std::string joined = tables(0).toString();
    for (Long i = 1; i <= lastIndex; ++i) {
        joined = "(" + joined + " INNER JOIN " + tables(i).toString() + ")";
    }
    return joined;
}

std::string decimalSeparator() {
    return formatNumber(readLeadingNumber("1.5")).substr(1, 1);
}

std::string sqlDouble(double value) {
    std::string text = formatNumber(value);
    replaceAll(text, decimalSeparator(), ".");
    return text;
}

std::string sqlBoolean(const Variant& value) {
    return value.toBoolean() ? "true" : "false";
}

std::string sqlQuote(const Variant& value) {
    return texthelpers::enclosed(value.toString(), '\'');
}

std::string sqlDate(const Variant& value) {
    return texthelpers::enclosed(value.toString(), '#');
}

std::string nullIf(const Variant& condition, const Variant& value) {
    return condition.toBoolean() ? nullLiteral : value.toString();
}

std::string emptyLiteralToNull(const std::string& literal) {
    return literal == "##" || literal == "''" ? nullLiteral : literal;
}

std::string textLiteral(const std::string& text) {
    return quotedLiteral(text, '\'');
}

std::string zeroToNull(const Variant& value) {
    const bool leadingNumberIsZero = readLeadingNumber(value.toString()) == 0.0;
    return nullIf(leadingNumberIsZero || equalsZero(value), value);
}

Variant nullToZero(const Variant& value) {
    return value.isNull() ? Variant(Integer{0}) : value;
}

std::string nullToEmpty(const Variant& value) {
    return value.isNull() ? std::string() : value.toString();
}

bool isBlank(const std::string& text) {
    return trimBlanks(text).empty();
}

Variant lastIdentity(Connection& conn) {
    return conn.Execute("Select @@IDENTITY as id;")->Fields("id");
}

}  // namespace caudalis
