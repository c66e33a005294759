#include <gtest/gtest.h>

#include <string>

#include "../../src/db/PostgresLibrary.hpp"
#include "caudalis/core/Error.hpp"

using namespace caudalis;

namespace {

/// The error that loading `file` as the client library raises.
Error loadingError(const char* file) {
    try {
        PostgresLibrary::load(file);
    } catch (const Error& error) {
        return error;
    }
    return Error(0, "nothing raised");
}

}  // namespace

TEST(PostgresLibrary, MissingLibraryIsNamedInTheError) {
    const Error error = loadingError("libpq-not-installed.so.5");
    EXPECT_EQ(error.number(), RuntimeError::DatabaseEngine);
    EXPECT_NE(error.description().find("PostgreSQL's client library libpq-not-installed.so.5"),
              std::string::npos)
        << error.description();
    EXPECT_NE(error.description().find("could not be loaded"), std::string::npos) << error.description();
}

TEST(PostgresLibrary, LibraryWithoutTheClientFunctionsIsRefused) {
    // SQLite's library loads, but holds none of libpq's functions.
    const Error error = loadingError("libsqlite3.so.0");
    EXPECT_EQ(error.number(), RuntimeError::DatabaseEngine);
    EXPECT_NE(error.description().find("libsqlite3.so.0"), std::string::npos) << error.description();
    EXPECT_NE(error.description().find("PQconnectdb"), std::string::npos) << error.description();
}

TEST(PostgresLibrary, ClientLibraryLoadsWithEveryFunction) {
    const PostgresLibrary& pq = PostgresLibrary::shared();
    EXPECT_EQ(&pq, &libpq());
    char* message = nullptr;
    PQconninfoOption* options = pq.PQconninfoParse("dbname=office port=5433", &message);
    ASSERT_NE(options, nullptr);
    std::string database;
    for (const PQconninfoOption* option = options; option->keyword != nullptr; ++option) {
        if (std::string(option->keyword) == "dbname" && option->val != nullptr) {
            database = option->val;
        }
    }
    pq.PQconninfoFree(options);
    pq.PQfreemem(message);
    EXPECT_EQ(database, "office");
    EXPECT_EQ(pq.PQconninfoParse("dbname='unterminated", &message), nullptr);
    ASSERT_NE(message, nullptr);
    pq.PQfreemem(message);
}
