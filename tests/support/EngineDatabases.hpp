#pragma once

#include <string>
#include <vector>

namespace caudalis::testing {

/// A project database and a catalogue database of one engine, made from the shipped schemas
/// for one test, and the engine's own statements that the tests need besides the library's.
class EngineDatabases {
public:
    virtual ~EngineDatabases() = default;

    virtual std::string projectConnection() const = 0;
    virtual std::string catalogueConnection() const = 0;
    /// What the chart join is given to name the catalogue database.
    virtual std::string cataloguePath() const = 0;

    /// A query of every row of `table`, in storage order.
    virtual std::string allRowsOf(const std::string& table) const = 0;
    /// Queries of the engine's key counters that a rollback restores, if it keeps any.
    virtual std::vector<std::string> keyCounterQueries() const = 0;
    /// Statements that make every `event` (INSERT, UPDATE, DELETE) of a row of `table` fail.
    virtual std::vector<std::string> refuse(const std::string& table, const std::string& event) const = 0;
    /// Statements that undo `refuse` on `table`.
    virtual std::vector<std::string> stopRefusing(const std::string& table) const = 0;
    /// Statements that make every insert into `table` insert nothing, without an error.
    virtual std::vector<std::string> ignoreInserts(const std::string& table) const = 0;
    /// A statement after which the next generated key of `table` (key column `column`) is
    /// `last` + 1.
    virtual std::string setLastKey(const std::string& table, const std::string& column, long last) const = 0;
};

}  // namespace caudalis::testing
