#include "caudalis/db/SqlText.hpp"

#include "TextHelpers.hpp"
#include "caudalis/core/Arrays.hpp"
#include "caudalis/core/Error.hpp"
#include "caudalis/core/NumberText.hpp"
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

/// Checks that `value` cannot end the literal or name that `closing` ends (0: the mark is in the
/// statement's code, where a value that begins as a literal must be exactly one).
void requireValueFits(const std::string& value, char closing) {
    if (closing == 0) {
        StatementGuard::requireWholeLiteral(value);
    } else {
        StatementGuard::requireStaysInLiteral(value, closing);
    }
}

/// Replaces the first "?" of the text by `value`, after checking that the value stays inside the
/// literal the mark stands in. A doubled quote closes and reopens its literal.
void replaceFirstMark(std::string& text, const std::string& value) {
    char closing = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (c == '?') {
            requireValueFits(value, closing);
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
