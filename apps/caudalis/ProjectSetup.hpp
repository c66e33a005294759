#pragma once

#include <filesystem>
#include <ostream>

#include "DatabaseFile.hpp"

namespace caudalis::cli {

/// `caudalis init`: creates a project database (project.db) and a catalogue database
/// (catalogue.db) in a folder from the shipped schemas, sample catalogue and pipe materials.
/// A database that is already there is checked and left as it was, except that a project
/// database made before evaluations kept their figures gets the table for them. A new database is built
/// under a temporary name and renamed when complete, so a failure leaves no half-made file.
class ProjectSetup {
public:
    ProjectSetup(std::filesystem::path folder, std::filesystem::path dataFolder);
    /// Creates what is missing and reports each database's path on `out`.
    void run(std::ostream& out) const;

    static constexpr const char* projectFileName = "project.db";
    static constexpr const char* catalogueFileName = "catalogue.db";

private:
    void provide(DatabaseKind kind, const std::filesystem::path& file, std::ostream& out) const;
    void create(DatabaseKind kind, const std::filesystem::path& file) const;
    /// Adds the tables a project database of an earlier version lacks; whether it did.
    bool addMissingTables(const DatabaseFile& database) const;

    std::filesystem::path folder_;
    std::filesystem::path dataFolder_;
};

}  // namespace caudalis::cli
