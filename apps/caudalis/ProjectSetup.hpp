#pragma once

#include <filesystem>
#include <optional>
#include <ostream>
#include <string>

#include "DatabaseFile.hpp"

namespace caudalis::cli {

/// `caudalis init`: creates a project database (project.db) and a catalogue database
/// (catalogue.db) in a folder from the shipped schemas, sample catalogue and pipe materials.
/// A database that is already there is checked and left as it was. A new database file is
/// built under a temporary name and renamed when complete, so a failure leaves no half-made
/// file. Either database may instead be a PostgreSQL schema named by a connection string; its
/// tables are made in one transaction (the schema too, when missing), so a failure leaves none.
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
    /// Creates what is missing and reports each database's path on `out`.
    void run(std::ostream& out) const;

    static constexpr const char* projectFileName = "project.db";
    static constexpr const char* catalogueFileName = "catalogue.db";

private:
    void provide(const DatabaseFile& database, std::ostream& out) const;
    void create(DatabaseKind kind, const std::filesystem::path& file) const;
    void createOnServer(const DatabaseFile& database) const;
    /// The target given for `kind`, or its file in the folder (made when missing).
    std::string targetOf(DatabaseKind kind) const;

    Targets targets_;
    std::filesystem::path dataFolder_;
};

}  // namespace caudalis::cli
