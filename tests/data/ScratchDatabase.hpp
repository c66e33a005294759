#pragma once

#include <sqlite3.h>

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace caudalis::testing {

/// A folder under the system's temporary directory, removed with everything in it.
class ScratchFolder {
public:
    ScratchFolder();
    ~ScratchFolder();
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;

    const std::filesystem::path& path() const { return path_; }

private:
    std::filesystem::path path_;
};

/// Path of a file shipped in the source tree, e.g. "data/schema/project.sql".
std::filesystem::path shippedFile(const std::string& relativePath);

/// One row of a query, every column as text (NULL as "NULL").
using TextRow = std::vector<std::string>;

/// A SQLite database file in its own scratch folder, with the few operations the schema
/// tests need. Every failing statement fails the current test with SQLite's message.
class ScratchDatabase {
public:
    explicit ScratchDatabase(const std::string& fileName = "test.db");
    ~ScratchDatabase();
    ScratchDatabase(const ScratchDatabase&) = delete;
    ScratchDatabase& operator=(const ScratchDatabase&) = delete;

    std::filesystem::path file() const { return folder_.path() / fileName_; }

    /// Runs every statement of the text; returns SQLite's error message, empty on success.
    std::string tryExecute(const std::string& sql);
    /// Runs every statement of the text, failing the test on an error.
    void execute(const std::string& sql);
    /// Runs every statement of a shipped SQL file.
    void load(const std::string& relativePath);

    std::vector<TextRow> rows(const std::string& query);
    std::vector<double> doubles(const std::string& query);
    std::int64_t integer(const std::string& query);
    double real(const std::string& query);
    std::int64_t lastInsertedId() const;

    /// Column names of a table in declaration order (empty when there is no such table).
    std::vector<std::string> columnsOf(const std::string& table);

private:
    template <typename Visitor>
    void forEachRow(const std::string& query, Visitor visit);

    ScratchFolder folder_;
    std::string fileName_;
    sqlite3* handle_ = nullptr;
};

}  // namespace caudalis::testing
