#include "ShippedDatabases.hpp"

#include "caudalis/db/Connection.hpp"
#include "caudalis/db/SqlScript.hpp"

namespace caudalis::testing {
namespace {

void createDatabase(const std::string& file, std::initializer_list<const char*> scripts) {
    Connection connection("Provider=SQLite;Data Source=" + file);
    connection.Open();
    for (const char* script : scripts) {
        runScriptFile(connection, shippedDataFile(script));
    }
    connection.Close();
}

}  // namespace

std::filesystem::path shippedDataFile(const std::string& relative) {
    return std::filesystem::path(CAUDALIS_SOURCE_DIR) / "data" / relative;
}

void createProjectDatabase(const std::string& file) {
    createDatabase(file, {"schema/project.sql", "sample/pipe-materials.sql"});
}

void createCatalogueDatabase(const std::string& file, bool withSample) {
    if (withSample) {
        createDatabase(file, {"schema/catalogue.sql", "sample/catalogue-data.sql"});
    } else {
        createDatabase(file, {"schema/catalogue.sql"});
    }
}

}  // namespace caudalis::testing
