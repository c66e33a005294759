#pragma once

#include "EngineDatabases.hpp"

namespace caudalis::testing {

/// Two schemas of their own in the test database of the tests' PostgreSQL server, copied from
/// templates made once from the shipped scripts: one for the project tables, one for the
/// catalogue tables (its name holds a blank). The chart join names the catalogue by its
/// connection string. The schemas are dropped when the object goes away.
///
/// PostgreSQL hands out generated keys outside transactions (a rolled-back insert still uses
/// its key), so its key counters are not part of what a rollback must restore.
class PostgresTestDatabases : public EngineDatabases {
public:
    explicit PostgresTestDatabases(bool sampleCatalogue);
    ~PostgresTestDatabases() override;
    PostgresTestDatabases(const PostgresTestDatabases&) = delete;
    PostgresTestDatabases& operator=(const PostgresTestDatabases&) = delete;

    std::string projectConnection() const override;
    std::string catalogueConnection() const override;
    std::string cataloguePath() const override { return catalogueConnection(); }
    std::string allRowsOf(const std::string& table) const override;
    std::vector<std::string> keyCounterQueries() const override { return {}; }
    std::vector<std::string> refuse(const std::string& table, const std::string& event) const override;
    std::vector<std::string> stopRefusing(const std::string& table) const override;
    std::vector<std::string> ignoreInserts(const std::string& table) const override;
    std::string setLastKey(const std::string& table, const std::string& column, long last) const override;

private:
    std::string database_;
    std::string projectSchema_;
    std::string catalogueSchema_;
};

}  // namespace caudalis::testing
