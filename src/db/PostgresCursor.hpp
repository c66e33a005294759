#pragma once

#include <memory>

#include "PostgresLibrary.hpp"

#include "caudalis/db/DatabaseCursor.hpp"

namespace caudalis {

/// Owns a libpq result and clears it.
struct PostgresResultClearer {
    void operator()(PGresult* result) const noexcept { libpq().PQclear(result); }
};
using PostgresResultHandle = std::unique_ptr<PGresult, PostgresResultClearer>;

/// The rows of a finished libpq result (none when the handle is empty). Booleans come back as
/// Boolean, whole numbers as Long (Double beyond 32 bits), floating and decimal numbers as
/// Double, everything else as String, NULL as Null.
class PostgresCursor : public DatabaseCursor {
public:
    explicit PostgresCursor(PostgresResultHandle result);

    std::vector<std::string> columnNames() const override;
    bool fetch(std::vector<Variant>& row) override;

private:
    Variant value(int row, int column) const;

    PostgresResultHandle result_;
    int nextRow_ = 0;
};

}  // namespace caudalis
