#pragma once

#include "EngineDatabases.hpp"
#include "TemporaryFolder.hpp"

namespace caudalis::testing {

/// SQLite files copied from databases made once from the shipped scripts, in a fresh temporary
/// folder. The catalogue lives in a subfolder whose name holds a blank, as a user's folder
/// often does.
class SqliteTestDatabases : public EngineDatabases {
public:
    explicit SqliteTestDatabases(bool sampleCatalogue);

    std::string projectConnection() const override;
    std::string catalogueConnection() const override;
    std::string cataloguePath() const override { return catalogueFile_; }
    std::string allRowsOf(const std::string& table) const override;
    std::vector<std::string> keyCounterQueries() const override;
    std::vector<std::string> refuse(const std::string& table, const std::string& event) const override;
    std::vector<std::string> stopRefusing(const std::string& table) const override;
    std::vector<std::string> ignoreInserts(const std::string& table) const override;
    std::string setLastKey(const std::string& table, const std::string& column, long last) const override;

private:
    TemporaryFolder folder_;
    std::string projectFile_;
    std::string catalogueFile_;
};

}  // namespace caudalis::testing
