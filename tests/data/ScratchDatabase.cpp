#include "ScratchDatabase.hpp"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace caudalis::testing {

namespace {

std::string readWholeFile(const std::filesystem::path& path) {
    std::ifstream in(path, std::ios::binary);
    if (!in) {
        throw std::runtime_error("cannot read " + path.string());
    }
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

std::string columnText(sqlite3_stmt* statement, int column) {
    const unsigned char* text = sqlite3_column_text(statement, column);
    return text == nullptr ? "NULL" : reinterpret_cast<const char*>(text);
}

}  // namespace

ScratchFolder::ScratchFolder() {
    std::string pattern = (std::filesystem::temp_directory_path() / "caudalis-data-XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr) {
        throw std::runtime_error("cannot create a scratch folder from " + pattern);
    }
    path_ = pattern;
}

ScratchFolder::~ScratchFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

std::filesystem::path shippedFile(const std::string& relativePath) {
    return std::filesystem::path(CAUDALIS_SOURCE_DIR) / relativePath;
}

ScratchDatabase::ScratchDatabase(const std::string& fileName) : fileName_(fileName) {
    if (sqlite3_open(file().string().c_str(), &handle_) != SQLITE_OK) {
        throw std::runtime_error("cannot open " + file().string());
    }
}

ScratchDatabase::~ScratchDatabase() {
    sqlite3_close(handle_);
}

std::string ScratchDatabase::tryExecute(const std::string& sql) {
    char* message = nullptr;
    if (sqlite3_exec(handle_, sql.c_str(), nullptr, nullptr, &message) == SQLITE_OK) {
        return {};
    }
    std::string error = message == nullptr ? "unknown error" : message;
    sqlite3_free(message);
    return error.empty() ? "unknown error" : error;
}

void ScratchDatabase::execute(const std::string& sql) {
    EXPECT_EQ(tryExecute(sql), "") << sql;
}

void ScratchDatabase::load(const std::string& relativePath) {
    EXPECT_EQ(tryExecute(readWholeFile(shippedFile(relativePath))), "") << relativePath;
}

template <typename Visitor>
void ScratchDatabase::forEachRow(const std::string& query, Visitor visit) {
    sqlite3_stmt* statement = nullptr;
    if (sqlite3_prepare_v2(handle_, query.c_str(), -1, &statement, nullptr) != SQLITE_OK) {
        ADD_FAILURE() << sqlite3_errmsg(handle_) << " in " << query;
        return;
    }
    int status = SQLITE_ROW;
    while ((status = sqlite3_step(statement)) == SQLITE_ROW) {
        visit(statement);
    }
    EXPECT_EQ(status, SQLITE_DONE) << sqlite3_errmsg(handle_) << " in " << query;
    sqlite3_finalize(statement);
}

std::vector<TextRow> ScratchDatabase::rows(const std::string& query) {
    std::vector<TextRow> result;
    forEachRow(query, [&result](sqlite3_stmt* statement) {
        TextRow row;
        for (int column = 0; column < sqlite3_column_count(statement); ++column) {
            row.push_back(columnText(statement, column));
        }
        result.push_back(row);
    });
    return result;
}

std::vector<double> ScratchDatabase::doubles(const std::string& query) {
    std::vector<double> result;
    forEachRow(query, [&result](sqlite3_stmt* statement) {
        for (int column = 0; column < sqlite3_column_count(statement); ++column) {
            result.push_back(sqlite3_column_double(statement, column));
        }
    });
    return result;
}

std::int64_t ScratchDatabase::integer(const std::string& query) {
    std::int64_t value = 0;
    forEachRow(query, [&value](sqlite3_stmt* statement) { value = sqlite3_column_int64(statement, 0); });
    return value;
}

double ScratchDatabase::real(const std::string& query) {
    double value = 0;
    forEachRow(query, [&value](sqlite3_stmt* statement) { value = sqlite3_column_double(statement, 0); });
    return value;
}

std::int64_t ScratchDatabase::lastInsertedId() const {
    return sqlite3_last_insert_rowid(handle_);
}

std::vector<std::string> ScratchDatabase::columnsOf(const std::string& table) {
    std::vector<std::string> names;
    for (const auto& row : rows("SELECT name FROM pragma_table_info('" + table + "')")) {
        names.push_back(row.front());
    }
    return names;
}

}  // namespace caudalis::testing
