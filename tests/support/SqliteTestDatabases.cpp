#include "SqliteTestDatabases.hpp"

#include <filesystem>

#include "ShippedDatabases.hpp"

namespace caudalis::testing {
namespace {

std::string triggerOn(const std::string& table, const std::string& event, const std::string& action) {
    return "CREATE TRIGGER injected_failure BEFORE " + event + " ON " + table + " BEGIN SELECT RAISE(" +
           action + "); END";
}

/// Databases made once from the shipped scripts; every test gets copies of them.
class Templates {
public:
    Templates()
        : project_(folder_.file("project.db")),
          sample_(folder_.file("sample.db")),
          empty_(folder_.file("empty.db")) {
        createProjectDatabase(project_);
        createCatalogueDatabase(sample_, true);
        createCatalogueDatabase(empty_, false);
    }

    static const Templates& instance() {
        static const Templates templates;
        return templates;
    }

    const std::string& project() const { return project_; }
    const std::string& catalogue(bool sample) const { return sample ? sample_ : empty_; }

private:
    TemporaryFolder folder_;
    std::string project_;
    std::string sample_;
    std::string empty_;
};

}  // namespace

SqliteTestDatabases::SqliteTestDatabases(bool sampleCatalogue)
    : projectFile_(folder_.file("project.db")),
      catalogueFile_((folder_.path() / "sprinkler catalogue" / "catalogue.db").string()) {
    std::filesystem::create_directories(folder_.path() / "sprinkler catalogue");
    std::filesystem::copy_file(Templates::instance().project(), projectFile_);
    std::filesystem::copy_file(Templates::instance().catalogue(sampleCatalogue), catalogueFile_);
}

std::string SqliteTestDatabases::projectConnection() const {
    return "Provider=SQLite;Data Source=" + projectFile_;
}

std::string SqliteTestDatabases::catalogueConnection() const {
    return "Provider=SQLite;Data Source=" + catalogueFile_;
}

std::string SqliteTestDatabases::allRowsOf(const std::string& table) const {
    return "SELECT * FROM " + table + " ORDER BY rowid";
}

std::vector<std::string> SqliteTestDatabases::keyCounterQueries() const {
    return {"SELECT * FROM sqlite_sequence ORDER BY name"};
}

std::vector<std::string> SqliteTestDatabases::refuse(const std::string& table,
                                                     const std::string& event) const {
    return {triggerOn(table, event, "ABORT, 'injected'")};
}

std::vector<std::string> SqliteTestDatabases::stopRefusing(const std::string& /*table*/) const {
    return {"DROP TRIGGER injected_failure"};
}

std::vector<std::string> SqliteTestDatabases::ignoreInserts(const std::string& table) const {
    return {triggerOn(table, "INSERT", "IGNORE")};
}

std::string SqliteTestDatabases::setLastKey(const std::string& table, const std::string& /*column*/,
                                            long last) const {
    return "INSERT INTO sqlite_sequence (name, seq) VALUES ('" + table + "', " + std::to_string(last) + ")";
}

}  // namespace caudalis::testing
