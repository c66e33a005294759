#include "caudalis/project/ProjectSetup.hpp"

#include <unistd.h>

#include <cctype>

#include "caudalis/core/Error.hpp"
#include "caudalis/db/Connection.hpp"
#include "caudalis/db/SqlScript.hpp"
#include "caudalis/project/ServiceError.hpp"
#include "caudalis/project/TextFile.hpp"

namespace caudalis::project {

namespace {

std::vector<const char*> scriptsOf(DatabaseKind kind) {
    if (kind == DatabaseKind::Project) {
        return {"schema/project.sql", "sample/pipe-materials.sql"};
    }
    return {"schema/catalogue.sql", "sample/catalogue-data.sql"};
}

std::vector<const char*> serverScriptsOf(DatabaseKind kind) {
    if (kind == DatabaseKind::Project) {
        return {"schema/project-postgresql.sql", "sample/pipe-materials.sql"};
    }
    return {"schema/catalogue-postgresql.sql", "sample/catalogue-data.sql"};
}

/// Whether a statement of a script begins or ends a transaction of its own.
bool controlsTransaction(const std::string& statement) {
    const auto word = statement.substr(0, statement.find_first_of(" \t\r\n"));
    std::string upper;
    for (const char c : word) {
        upper += static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    }
    return upper == "BEGIN" || upper == "COMMIT" || upper == "END" || upper == "ROLLBACK";
}

}  // namespace

ProjectSetup::ProjectSetup(Targets targets, std::filesystem::path dataFolder)
    : targets_(std::move(targets)), dataFolder_(std::move(dataFolder)) {}

void ProjectSetup::create(DatabaseKind kind, const std::filesystem::path& file) const {
    auto building = file;
    building += ".new-" + std::to_string(::getpid());
    std::error_code ignored;
    std::filesystem::remove(building, ignored);
    try {
        Connection connection(DatabaseFile::connectionStringFor(building.string()));
        connection.Open();
        for (const char* script : scriptsOf(kind)) {
            runScriptFile(connection, dataFolder_ / script);
        }
        connection.Close();
        std::filesystem::rename(building, file);
    } catch (const Error& error) {
        std::filesystem::remove(building, ignored);
        throw InputError("cannot create " + file.string() + ": " + error.description());
    } catch (const std::filesystem::filesystem_error& error) {
        std::filesystem::remove(building, ignored);
        throw InputError("cannot create " + file.string() + ": " + error.code().message());
    }
}

void ProjectSetup::runOnServer(const DatabaseFile& database, const std::vector<const char*>& scripts) const {
    try {
        Connection connection(database.connectionString());
        connection.Open();
        connection.BeginTrans();
        database.makeSchemaOn(connection);
        for (const char* script : scripts) {
            for (const auto& statement :
                 splitStatements(readTextFile((dataFolder_ / script).string(), "SQL script"))) {
                if (!controlsTransaction(statement)) {
                    connection.Execute(statement);
                }
            }
        }
        connection.CommitTrans();
        connection.Close();
    } catch (const Error& error) {
        throw InputError("cannot create the tables of " + database.path() + ": " + error.description());
    }
}

bool ProjectSetup::lacksSideTables(const DatabaseFile& database) {
    for (const char* table :
         {"chart_speed_table", "chart_outlet_figures", "chart_design", "pivot_evaluation_figures"}) {
        if (!database.hasTable(table)) {
            return true;
        }
    }
    return false;
}

bool ProjectSetup::addMissingTables(const DatabaseFile& database) const {
    if (database.kind() != DatabaseKind::Project || !lacksSideTables(database)) {
        return false;
    }
    if (database.onServer()) {
        runOnServer(database, {"schema/project-postgresql.sql"});
        return true;
    }
    try {
        Connection connection(database.connectionString());
        connection.Open();
        runScriptFile(connection, dataFolder_ / "schema/project.sql");
        connection.Close();
    } catch (const Error& error) {
        throw InputError("cannot add the missing side tables to " + database.path() + ": " +
                         error.description());
    }
    return true;
}

ProvidedDatabase ProjectSetup::provide(const DatabaseFile& database) const {
    std::error_code ignored;
    const bool existed =
        database.onServer() ? !database.holdsNoTables() : std::filesystem::exists(database.path(), ignored);
    std::string state = "created";
    if (existed) {
        database.requireUsable();
        state = addMissingTables(database) ? "already there, missing side tables added"
                                           : "already there, left as it was";
    } else if (database.onServer()) {
        runOnServer(database, serverScriptsOf(database.kind()));
    } else {
        create(database.kind(), database.path());
    }
    const bool catalogue = database.kind() == DatabaseKind::Catalogue;
    return {database.kindName(), database.path(), state,
            database.rowCount(catalogue ? "Boquillas" : "tb_cartas"), catalogue ? "nozzles" : "charts"};
}

std::string ProjectSetup::targetOf(DatabaseKind kind) const {
    const auto& given = kind == DatabaseKind::Project ? targets_.project : targets_.catalogue;
    if (given) {
        return *given;
    }
    const auto& folder = targets_.folder;
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    if (error || !std::filesystem::is_directory(folder, error)) {
        throw InputError("cannot create folder " + folder.string() + ": " +
                         (error ? error.message() : std::string("a file of that name is in the way")));
    }
    const auto absolute = std::filesystem::absolute(folder).lexically_normal();
    return (absolute / (kind == DatabaseKind::Project ? projectFileName : catalogueFileName)).string();
}

SetupResult ProjectSetup::run() const {
    SetupResult result;
    result.databases.push_back(provide(DatabaseFile(targetOf(DatabaseKind::Project), DatabaseKind::Project)));
    result.databases.push_back(
        provide(DatabaseFile(targetOf(DatabaseKind::Catalogue), DatabaseKind::Catalogue)));
    return result;
}

}  // namespace caudalis::project
