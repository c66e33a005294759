#pragma once

#include <map>
#include <string>
#include <vector>

#include "TemporaryFolder.hpp"

namespace caudalis::testing {

/// Every row of a table as text ("a|b|c", Null as "<null>"), in storage order.
using TableRows = std::vector<std::string>;
/// The rows of several tables, by table name.
using TableDump = std::map<std::string, TableRows>;

/// A project database and a catalogue database made from the shipped schemas (with the sample
/// pipe materials and the sample catalogue) in a fresh temporary folder. The catalogue lives in
/// a subfolder whose name holds a blank, as a user's folder often does.
class PersistenceDatabases {
public:
    explicit PersistenceDatabases(bool sampleCatalogue = true);

    std::string projectConnection() const { return "Provider=SQLite;Data Source=" + projectFile_; }
    std::string catalogueConnection() const { return "Provider=SQLite;Data Source=" + catalogueFile_; }
    const std::string& cataloguePath() const { return catalogueFile_; }
    const TemporaryFolder& folder() const { return folder_; }

    void executeOnProject(const std::string& sql) const;
    void executeOnCatalogue(const std::string& sql) const;

    /// Every table of the project database (and the autoincrement counters).
    TableDump dumpProject() const;
    /// Every table of the catalogue database (and the autoincrement counters).
    TableDump dumpCatalogue() const;

    /// The rows of a query on the project database.
    TableRows projectRows(const std::string& sql) const;
    TableRows catalogueRows(const std::string& sql) const;
    /// The first column of the first row of a query on the project database, as a number.
    double projectNumber(const std::string& sql) const;
    double catalogueNumber(const std::string& sql) const;

private:
    TemporaryFolder folder_;
    std::string projectFile_;
    std::string catalogueFile_;
};

/// The rows of `sql` on the database of `connectionString`.
TableRows queryRowsText(const std::string& connectionString, const std::string& sql);

/// Runs one statement on the database of `connectionString`.
void executeOn(const std::string& connectionString, const std::string& sql);

}  // namespace caudalis::testing
