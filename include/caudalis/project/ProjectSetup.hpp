#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "caudalis/project/DatabaseFile.hpp"

namespace caudalis::project {

/// What set-up found or did for one database.
struct ProvidedDatabase {
    /// "project" or "catalogue".
    std::string kind;
    std::string path;
    /// "created", "already there, left as it was" or "already there, missing side tables added".
    std::string state;
    /// How many charts (project) or nozzles (catalogue) it holds.
    long count = 0;
    /// "charts" or "nozzles".
    std::string counted;
};

/// What `ProjectSetup::run` provided: the project database, then the catalogue database.
struct SetupResult {
    std::vector<ProvidedDatabase> databases;
};

/// `caudalis init`: creates a project database (project.db) and a catalogue database
/// (catalogue.db) in a folder from the shipped schemas, sample catalogue and pipe materials.
/// A database that is already there is checked and left as it was, except that a project
/// database made by an earlier version gets the side tables it lacks (a stored chart's timer
/// table and outlet figures, an evaluation's figures). A new database file is built under a
/// temporary name and renamed when complete, so a failure leaves no half-made file. Either
/// database may instead be a PostgreSQL schema named by a connection string; its tables are
/// made in one transaction (the schema too, when missing), so a failure leaves none.
class ProjectSetup {
public:
    /// The databases to provide: `project` and `catalogue` when given, else the files of
    /// `folder`.
    struct Targets {
        std::filesystem::path folder;
        std::optional<std::string> project;
        std::optional<std::string> catalogue;
    };

    ProjectSetup(Targets targets, std::filesystem::path dataFolder);
    /// Creates what is missing and tells what each database holds.
    SetupResult run() const;

    static constexpr const char* projectFileName = "project.db";
    static constexpr const char* catalogueFileName = "catalogue.db";

private:
    ProvidedDatabase provide(const DatabaseFile& database) const;
    void create(DatabaseKind kind, const std::filesystem::path& file) const;
    /// Runs `scripts` on a server's schema in one transaction (making the schema when missing).
    void runOnServer(const DatabaseFile& database, const std::vector<const char*>& scripts) const;
    /// The target given for `kind`, or its file in the folder (made when missing).
    std::string targetOf(DatabaseKind kind) const;
    static bool lacksSideTables(const DatabaseFile& database);
    /// Adds the side tables a project database of an earlier version lacks; whether it did.
    bool addMissingTables(const DatabaseFile& database) const;

    Targets targets_;
    std::filesystem::path dataFolder_;
};

}  // namespace caudalis::project
