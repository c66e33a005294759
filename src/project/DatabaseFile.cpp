#include "caudalis/project/DatabaseFile.hpp"

#include <algorithm>
#include <cctype>
#include <filesystem>

#include "caudalis/core/Error.hpp"
#include "caudalis/db/Connection.hpp"
#include "caudalis/db/PostgresConnectionString.hpp"
#include "caudalis/project/ServiceError.hpp"

namespace caudalis::project {

namespace {

std::string lowerCase(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return text;
}

}  // namespace

DatabaseFile::DatabaseFile(std::string path, DatabaseKind kind) : path_(std::move(path)), kind_(kind) {}

std::string DatabaseFile::kindName() const {
    return kind_ == DatabaseKind::Project ? "project" : "catalogue";
}

bool DatabaseFile::onServer() const {
    return PostgresConnectionString::parse(path_).has_value();
}

std::string DatabaseFile::connectionString() const {
    return onServer() ? path_ : connectionStringFor(path_);
}

std::string DatabaseFile::joinName() const {
    return onServer() ? path_ : std::filesystem::absolute(path_).string();
}

std::string DatabaseFile::connectionStringFor(const std::string& path) {
    return "Provider=SQLite;Data Source=\"" + path + "\"";
}

const std::vector<std::string>& DatabaseFile::requiredTables(DatabaseKind kind) {
    static const std::vector<std::string> project{"tb_cartas",      "tb_aspersores",    "tb_reguladores",
                                                  "tb_indicadores", "tb_pluviometria",  "tb_drop",
                                                  "pipe_materials", "pivot_evaluations"};
    static const std::vector<std::string> catalogue{"marca", "modelos", "boquillas"};
    return kind == DatabaseKind::Project ? project : catalogue;
}

void DatabaseFile::notOurs(const std::string& reason) const {
    throw InputError(path_ + " is not a Caudalis " + kindName() + " database (" + reason + ")");
}

std::vector<std::string> DatabaseFile::tableNames() const {
    std::vector<std::string> names;
    try {
        Connection connection(connectionString());
        connection.Open();
        const auto rows = connection.Execute(
            onServer()
                ? "SELECT tablename AS name FROM pg_catalog.pg_tables WHERE schemaname = current_schema()"
                : "SELECT name FROM sqlite_master WHERE type='table'");
        for (; !rows->EOF_(); rows->MoveNext()) {
            names.push_back(lowerCase(rows->Fields("name").toString()));
        }
        connection.Close();
    } catch (const Error& error) {
        if (onServer()) {
            throw InputError("cannot open " + kindName() + " database " + path_ + ": " + error.description());
        }
        notOurs(error.description());
    }
    return names;
}

std::vector<long> DatabaseFile::wholeNumbers(const std::string& sql, const std::string& field) const {
    std::vector<long> numbers;
    Connection connection(connectionString());
    connection.Open();
    const auto rows = connection.Execute(sql);
    for (; !rows->EOF_(); rows->MoveNext()) {
        numbers.push_back(rows->Fields(field).toLong());
    }
    connection.Close();
    return numbers;
}

long DatabaseFile::rowCount(const std::string& table) const {
    std::string sql = "SELECT count(*) as n FROM ";
    sql += table;
    return wholeNumbers(sql, "n").front();
}

void DatabaseFile::makeSchemaOn(Connection& connection) const {
    if (!onServer()) {
        return;
    }
    if (const auto schema = PostgresConnectionString::parse(path_)->schema()) {
        std::string sql = "CREATE SCHEMA IF NOT EXISTS \"";
        sql += *schema;
        sql += '"';
        connection.Execute(sql);
    }
}

bool DatabaseFile::holdsNoTables() const {
    const auto names = tableNames();
    const auto& required = requiredTables(kind_);
    return std::none_of(required.begin(), required.end(), [&names](const std::string& table) {
        return std::find(names.begin(), names.end(), table) != names.end();
    });
}

void DatabaseFile::requireFile() const {
    std::error_code error;
    const auto status = std::filesystem::status(path_, error);
    if (!std::filesystem::exists(status)) {
        throw InputError("cannot open " + kindName() + " database " + path_ +
                         ": no such file (caudalis init creates one)");
    }
    if (!std::filesystem::is_regular_file(status)) {
        throw InputError("cannot open " + kindName() + " database " + path_ + ": not a file");
    }
}

void DatabaseFile::requireUsable() const {
    if (!onServer()) {
        requireFile();
    }
    const auto names = tableNames();
    for (const auto& table : requiredTables(kind_)) {
        if (std::find(names.begin(), names.end(), table) == names.end()) {
            notOurs("it has no table " + table + (onServer() ? "; caudalis init creates them" : ""));
        }
    }
}

bool DatabaseFile::hasTable(const std::string& name) const {
    const auto names = tableNames();
    return std::find(names.begin(), names.end(), name) != names.end();
}

}  // namespace caudalis::project
