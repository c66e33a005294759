#include "caudalis/db/SqlText.hpp"

#include "TextHelpers.hpp"
#include "caudalis/core/Arrays.hpp"
#include "caudalis/core/Error.hpp"
#include "caudalis/core/NumberText.hpp"
#include "caudalis/db/Connection.hpp"

namespace caudalis {
namespace {

constexpr const char* nullLiteral = "null";

void replaceFirstMark(std::string& text, const std::string& value) {
    const std::size_t mark = text.find('?');
    if (mark != std::string::npos) {
        text.replace(mark, 1, value);
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
