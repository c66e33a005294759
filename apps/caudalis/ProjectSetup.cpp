#include "ProjectSetup.hpp"

#include <unistd.h>

#include <fmt/format.h>
#include <fmt/ostream.h>

#include "CliErrors.hpp"
#include "caudalis/core/Error.hpp"
#include "caudalis/db/Connection.hpp"
#include "caudalis/db/SqlScript.hpp"

namespace caudalis::cli {

namespace {

std::vector<const char*> scriptsOf(DatabaseKind kind) {
    if (kind == DatabaseKind::Project) {
        return {"schema/project.sql", "sample/pipe-materials.sql"};
    }
    return {"schema/catalogue.sql", "sample/catalogue-data.sql"};
}

/// What a database holds, for the report: its nozzles or its charts.
std::string contentOf(const DatabaseFile& database) {
    if (database.kind() == DatabaseKind::Catalogue) {
        const auto n = database.wholeNumbers("SELECT count(*) as n FROM Boquillas", "n").front();
        return fmt::format("{} nozzles", n);
    }
    const auto n = database.wholeNumbers("SELECT count(*) as n FROM tb_cartas", "n").front();
    return fmt::format("{} charts", n);
}

}  // namespace

ProjectSetup::ProjectSetup(std::filesystem::path folder, std::filesystem::path dataFolder)
    : folder_(std::move(folder)), dataFolder_(std::move(dataFolder)) {}

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

bool ProjectSetup::addMissingTables(const DatabaseFile& database) const {
    if (database.kind() != DatabaseKind::Project || database.hasTable("pivot_evaluation_figures")) {
        return false;
    }
    try {
        Connection connection(database.connectionString());
        connection.Open();
        runScriptFile(connection, dataFolder_ / "schema/project.sql");
        connection.Close();
    } catch (const Error& error) {
        throw InputError("cannot add the evaluation figures table to " + database.path() + ": " +
                         error.description());
    }
    return true;
}

void ProjectSetup::provide(DatabaseKind kind, const std::filesystem::path& file, std::ostream& out) const {
    const DatabaseFile database(file.string(), kind);
    std::error_code ignored;
    const bool existed = std::filesystem::exists(file, ignored);
    std::string state = "created";
    if (existed) {
        database.requireUsable();
        state = addMissingTables(database) ? "already there, evaluation figures table added"
                                           : "already there, left as it was";
    } else {
        create(kind, file);
    }
    fmt::print(out, "{} database: {} ({}, {})\n", database.kindName(), file.string(), state,
               contentOf(database));
}

void ProjectSetup::run(std::ostream& out) const {
    std::error_code error;
    std::filesystem::create_directories(folder_, error);
    if (error || !std::filesystem::is_directory(folder_, error)) {
        throw InputError("cannot create folder " + folder_.string() + ": " +
                         (error ? error.message() : std::string("a file of that name is in the way")));
    }
    const auto folder = std::filesystem::absolute(folder_).lexically_normal();
    provide(DatabaseKind::Project, folder / projectFileName, out);
    provide(DatabaseKind::Catalogue, folder / catalogueFileName, out);
}

}  // namespace caudalis::cli
