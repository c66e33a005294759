#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "EngineDatabases.hpp"
#include "TestEngine.hpp"

namespace caudalis::testing {

/// Every row of a table as text ("a|b|c", Null as "<null>", truth values as 1/0), in storage
/// order.
using TableRows = std::vector<std::string>;
/// The rows of several tables, by table name.
using TableDump = std::map<std::string, TableRows>;

/// A project database and a catalogue database of one engine, made from the shipped schemas
/// (with the sample pipe materials and, unless told otherwise, the sample catalogue) for one
/// test, with the engine's own means to look at them and to make them fail.
class PersistenceDatabases {
public:
    explicit PersistenceDatabases(TestEngine engine = TestEngine::Sqlite, bool sampleCatalogue = true);

    TestEngine engine() const noexcept { return engine_; }
    std::string projectConnection() const { return databases_->projectConnection(); }
    std::string catalogueConnection() const { return databases_->catalogueConnection(); }
    /// What the chart join is given to name the catalogue database.
    std::string cataloguePath() const { return databases_->cataloguePath(); }

    void executeOnProject(const std::string& sql) const;
    void executeOnCatalogue(const std::string& sql) const;

    /// Every table of the project database (and the key counters a rollback restores).
    TableDump dumpProject() const;
    /// Every table of the catalogue database (and the key counters a rollback restores).
    TableDump dumpCatalogue() const;

    /// The rows of a query on the project database.
    TableRows projectRows(const std::string& sql) const;
    TableRows catalogueRows(const std::string& sql) const;
    /// The first column of the first row of a query on the project database, as a number.
    double projectNumber(const std::string& sql) const;
    double catalogueNumber(const std::string& sql) const;

    /// Makes every `event` (INSERT, UPDATE, DELETE) of a row of a project table fail, as a full
    /// disk or a broken constraint would; `stopRefusing` undoes it.
    void refuseOnProject(const std::string& table, const std::string& event) const;
    void stopRefusingOnProject(const std::string& table) const;
    void refuseOnCatalogue(const std::string& table, const std::string& event) const;
    /// Makes every insert into a catalogue table insert nothing, without an error.
    void ignoreInsertsOnCatalogue(const std::string& table) const;
    /// The next key generated for a project table will be `last` + 1.
    void setLastProjectKey(const std::string& table, const std::string& column, long last) const;

private:
    TableDump dump(const std::string& connectionString, const std::vector<std::string>& tables) const;

    TestEngine engine_;
    std::unique_ptr<EngineDatabases> databases_;
};

/// The rows of `sql` on the database of `connectionString`.
TableRows queryRowsText(const std::string& connectionString, const std::string& sql);

/// Runs one statement on the database of `connectionString`.
void executeOn(const std::string& connectionString, const std::string& sql);

/// Runs statements one after the other on one connection to the database of `connectionString`.
void executeAllOn(const std::string& connectionString, const std::vector<std::string>& statements);

}  // namespace caudalis::testing
