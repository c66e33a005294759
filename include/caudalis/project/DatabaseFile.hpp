#pragma once

#include <string>
#include <vector>

namespace caudalis {
class Connection;
}

namespace caudalis::project {

/// The two kinds of database the program works with.
enum class DatabaseKind { Project, Catalogue };

/// A database of the program: the project database (charts, evaluations) or the catalogue
/// database (brands, models, nozzles), either a SQLite file named by its path or a schema of a
/// PostgreSQL server named by a libpq connection string (`postgresql://...` or key=value
/// pairs, `schema` naming the schema). Before a command reads or writes one it calls
/// `requireUsable`, which makes sure the file exists and holds the tables of its kind, so that
/// a wrong file is never written to (SQLite would create a missing file on opening).
class DatabaseFile {
public:
    DatabaseFile(std::string path, DatabaseKind kind);

    /// Whether the database is on a PostgreSQL server rather than in a file.
    bool onServer() const;
    /// How the chart join names this database as the catalogue: the file's absolute path, or
    /// the server's connection string.
    std::string joinName() const;
    /// Whether the database holds none of the tables of its kind (a server schema that `init`
    /// may fill); raises `InputError` when the server cannot be reached.
    bool holdsNoTables() const;

    const std::string& path() const noexcept { return path_; }
    DatabaseKind kind() const noexcept { return kind_; }
    /// "project" or "catalogue".
    std::string kindName() const;
    /// The library's connection string for the file.
    std::string connectionString() const;

    /// Raises `InputError` naming the file when it is missing, is not a SQLite database, or
    /// lacks one of the tables of its kind.
    void requireUsable() const;

    /// The whole numbers in column `field` of the rows `sql` selects (a query of the program's
    /// own, run after `requireUsable`).
    std::vector<long> wholeNumbers(const std::string& sql, const std::string& field) const;
    /// How many rows the table `table` holds (run after `requireUsable`).
    long rowCount(const std::string& table) const;
    /// Makes the schema that a server's connection string names, when it is missing, on
    /// `connection` (inside its transaction); nothing for a file or a string naming no schema.
    void makeSchemaOn(Connection& connection) const;
    /// Whether the file holds the table `name` (in lower case).
    bool hasTable(const std::string& name) const;

    /// The tables a database of `kind` must hold (names in lower case).
    static const std::vector<std::string>& requiredTables(DatabaseKind kind);
    /// The connection string of the SQLite file at `path`.
    static std::string connectionStringFor(const std::string& path);

private:
    /// The names of the database's tables, in lower case.
    std::vector<std::string> tableNames() const;
    void requireFile() const;
    [[noreturn]] void notOurs(const std::string& reason) const;

    std::string path_;
    DatabaseKind kind_;
};

}  // namespace caudalis::project
