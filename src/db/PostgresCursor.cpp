#include "PostgresCursor.hpp"

#include <charconv>
#include <limits>
#include <string_view>

#include "caudalis/core/Basic.hpp"

namespace caudalis {
namespace {

// Type identifiers of the server's built-in types (pg_type.oid), fixed by the server.
constexpr Oid booleanType = 16;
constexpr Oid bigintType = 20;
constexpr Oid smallintType = 21;
constexpr Oid integerType = 23;
constexpr Oid oidType = 26;
constexpr Oid realType = 700;
constexpr Oid doubleType = 701;
constexpr Oid numericType = 1700;

Variant wholeNumber(std::string_view text) {
    long long value = 0;
    std::from_chars(text.data(), text.data() + text.size(), value);
    if (value < std::numeric_limits<Long>::min() || value > std::numeric_limits<Long>::max()) {
        return Variant(static_cast<double>(value));
    }
    return Variant(static_cast<Long>(value));
}

Variant floatingNumber(std::string_view text) {
    if (text == "NaN") {
        return Variant(std::numeric_limits<double>::quiet_NaN());
    }
    if (text == "Infinity" || text == "-Infinity") {
        const double infinity = std::numeric_limits<double>::infinity();
        return Variant(text.starts_with('-') ? -infinity : infinity);
    }
    double value = 0;
    std::from_chars(text.data(), text.data() + text.size(), value);
    return Variant(value);
}

}  // namespace

PostgresCursor::PostgresCursor(PostgresResultHandle result) : result_(std::move(result)) {}

std::vector<std::string> PostgresCursor::columnNames() const {
    std::vector<std::string> names;
    const int count = result_ ? libpq().PQnfields(result_.get()) : 0;
    for (int column = 0; column < count; ++column) {
        names.emplace_back(libpq().PQfname(result_.get(), column));
    }
    return names;
}

bool PostgresCursor::fetch(std::vector<Variant>& row) {
    if (!result_ || nextRow_ >= libpq().PQntuples(result_.get())) {
        return false;
    }
    const int count = libpq().PQnfields(result_.get());
    row.clear();
    for (int column = 0; column < count; ++column) {
        row.push_back(value(nextRow_, column));
    }
    ++nextRow_;
    return true;
}

Variant PostgresCursor::value(int row, int column) const {
    PGresult* result = result_.get();
    if (libpq().PQgetisnull(result, row, column) != 0) {
        return Variant::null();
    }
    const std::string_view text(libpq().PQgetvalue(result, row, column),
                                static_cast<std::size_t>(libpq().PQgetlength(result, row, column)));
    switch (libpq().PQftype(result, column)) {
        case booleanType:
            return Variant(text == "t");
        case bigintType:
        case smallintType:
        case integerType:
        case oidType:
            return wholeNumber(text);
        case realType:
        case doubleType:
        case numericType:
            return floatingNumber(text);
        default:
            return Variant(std::string(text));
    }
}

}  // namespace caudalis
