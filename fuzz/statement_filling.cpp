// Placeholder filling and the SQLite dialect rewrite: the input is a statement template and its
// values, separated by 0x01 bytes. Filling either raises a numbered error or gives a statement;
// a statement that the guard accepts is rewritten without touching any text literal.
#include "FuzzInput.hpp"
#include "caudalis/core/Arrays.hpp"
#include "caudalis/core/Error.hpp"
#include "caudalis/db/JetStatement.hpp"
#include "caudalis/db/SqlText.hpp"
#include "caudalis/db/SqliteDialect.hpp"
#include "caudalis/db/StatementGuard.hpp"

using namespace caudalis;

namespace {

/// The text literals of a statement, in order.
std::vector<std::string> literalsOf(const JetStatement& statement) {
    std::vector<std::string> literals;
    for (const JetSqlSegment& segment : statement.segments()) {
        if (segment.kind == JetSqlSegment::Kind::Text) {
            literals.push_back(segment.text);
        }
    }
    return literals;
}

bool holdsDate(const JetStatement& statement) {
    for (const JetSqlSegment& segment : statement.segments()) {
        if (segment.kind == JetSqlSegment::Kind::Code && segment.text.find('#') != std::string::npos) {
            return true;
        }
    }
    return false;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::vector<std::string> pieces = fuzz::piecesOf(fuzz::textOf(data, size), '\x01');
    std::string sql = pieces.front();
    BoundedArray<Variant> params;
    for (std::size_t i = 1; i < pieces.size(); ++i) {
        Arrays::shared()->Push(params, Variant(pieces[i]));
    }
    try {
        substituteParams(sql, params);
        const JetStatement statement(sql);
        StatementGuard::requireReadableStatement(statement);
        statement.requireSingleStatement();
        const SqliteDialect dialect([](const std::string&) { return std::string("attached_1"); });
        const JetStatement rewritten(dialect.rewrite(statement));
        if (!holdsDate(statement)) {
            fuzz::require(literalsOf(rewritten) == literalsOf(statement));
        }
    } catch (const Error&) {
        // Refused templates, values and statements raise numbered errors.
    }
    return 0;
}
