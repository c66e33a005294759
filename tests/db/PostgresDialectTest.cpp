#include <gtest/gtest.h>

#include "ErrorMatchers.hpp"
#include "caudalis/core/Error.hpp"
#include "caudalis/db/Connection.hpp"
#include "caudalis/db/ConnectionSettings.hpp"
#include "caudalis/db/JetStatement.hpp"
#include "caudalis/db/PostgresConnectionString.hpp"
#include "caudalis/db/PostgresDialect.hpp"

using namespace caudalis;

namespace {

/// Rewrites with 42 as the last key and a resolver that names every other database "cat".
std::string rewrite(const std::string& sql, std::vector<std::string>* references = nullptr) {
    const PostgresDialect dialect("42", [references](const std::string& reference) {
        if (references != nullptr) {
            references->push_back(reference);
        }
        return std::string("\"cat\"");
    });
    return dialect.rewrite(JetStatement(sql));
}

}  // namespace

TEST(PostgresConnectionString, AUriWithASchemaGivesLibpqTheRest) {
    const auto parsed = PostgresConnectionString::parse(
        " postgresql://designer@db.office:5433/caudalis?schema=my%20catalogue&sslmode=disable ");
    ASSERT_TRUE(parsed);
    EXPECT_EQ(parsed->conninfo(), "postgresql://designer@db.office:5433/caudalis?sslmode=disable");
    EXPECT_EQ(parsed->schema(), "my catalogue");
    EXPECT_EQ(parsed->database(), "caudalis");
    EXPECT_TRUE(PostgresConnectionString::parse("postgres://localhost"));
}

TEST(PostgresConnectionString, KeyValuePairsWithAQuotedSchema) {
    const auto parsed = PostgresConnectionString::parse(
        "host=127.0.0.1 port = 5432 dbname=office schema='sprinkler catalogue'");
    ASSERT_TRUE(parsed);
    EXPECT_EQ(parsed->conninfo(), "host='127.0.0.1' port='5432' dbname='office'");
    EXPECT_EQ(parsed->schema(), "sprinkler catalogue");
    EXPECT_EQ(parsed->database(), "office");
    EXPECT_FALSE(PostgresConnectionString::parse("host=db")->schema());
}

TEST(PostgresConnectionString, WhatLibpqDoesNotReadIsNotAServer) {
    for (const char* text :
         {"project.db", "/data/my project.db", ":memory:", "Provider=SQLite;Data Source=a.db",
          "Provider=Nothing;Data Source=x", "host=db color=red", "host='unclosed", ""}) {
        EXPECT_FALSE(PostgresConnectionString::parse(text)) << text;
    }
}

TEST(PostgresConnectionString, KeysThatNoKeywordCanBeAreRefusedLikeUnknownKeywords) {
    // Upper-case letters and signs outside a word are refused before libpq is asked; an unknown
    // lower-case keyword is refused by libpq itself.
    for (const char* text : {"Host=db", "host=db Port=5432", "host=db sslmode-x=1", "dbname=x Data=y",
                             "host=db nosuchkeyword=1"}) {
        EXPECT_FALSE(PostgresConnectionString::parse(text)) << text;
    }
    EXPECT_TRUE(PostgresConnectionString::parse("host=db connect_timeout=2 sslmode=disable"));
}

TEST(PostgresConnectionString, AServerStringChoosesThePostgresqlEngine) {
    Connection connection("postgresql://nobody@127.0.0.1:1/nothing?connect_timeout=2");
    const auto number = caudalis::testing::raisedNumber([&] { connection.Open(); });
    EXPECT_EQ(number, RuntimeError::DatabaseEngine);
    EXPECT_FALSE(connection.isOpen());
    EXPECT_EQ(ConnectionSettings::parse("host=db dbname=x").text(), "host=db dbname=x");
}

TEST(PostgresDialect, IdentityBecomesTheLastGeneratedKey) {
    EXPECT_EQ(rewrite("Select @@IDENTITY as id;"), "Select 42 as id;");
}

TEST(PostgresDialect, TruthValuesStayAndDatesBecomeTextLiterals) {
    EXPECT_EQ(rewrite("UPDATE t SET a=true, b=FALSE WHERE d=#3/25/2024#"),
              "UPDATE t SET a=true, b=FALSE WHERE d='3/25/2024'");
}

TEST(PostgresDialect, BracketedNamesBecomeLowerCaseQuotedNames) {
    EXPECT_EQ(rewrite("SELECT [My Field] FROM [Boquillas] AS b"),
              "SELECT \"my field\" FROM \"boquillas\" AS b");
    EXPECT_EQ(rewrite("SELECT [b].a FROM Boquillas AS b"), "SELECT \"b\".a FROM Boquillas AS b");
}

TEST(PostgresDialect, AnotherDatabaseBecomesASchema) {
    std::vector<std::string> references;
    EXPECT_EQ(rewrite("SELECT * FROM ([host=db schema=c].Boquillas AS b INNER JOIN [x/y.db].Modelos ON 1=1)",
                      &references),
              "SELECT * FROM (\"cat\".Boquillas AS b INNER JOIN \"cat\".Modelos ON 1=1)");
    EXPECT_EQ(references, (std::vector<std::string>{"host=db schema=c", "x/y.db"}));
}

TEST(PostgresDialect, LiteralsAreNeverTouchedAndNeverJoinAWord) {
    EXPECT_EQ(rewrite("SELECT '@@IDENTITY [x].y #1#' AS t"), "SELECT '@@IDENTITY [x].y #1#' AS t");
    EXPECT_EQ(rewrite("SELECT E'a\\'' AS t"), "SELECT E 'a\\'' AS t");
    EXPECT_EQ(rewrite("SELECT 'O'Brien'"), "SELECT 'O'Brien '");
}

TEST(PostgresDialect, CommentsAreLeftOut) {
    EXPECT_EQ(rewrite("SELECT 1 /* a /* nested */ -- x\n"), "SELECT 1    ");
}

TEST(PostgresDialect, DollarQuotesAndParametersAreRefused) {
    EXPECT_RAISES(rewrite("SELECT $$a$$"), RuntimeError::DatabaseEngine);
    EXPECT_RAISES(rewrite("SELECT $1"), RuntimeError::DatabaseEngine);
    EXPECT_EQ(rewrite("SELECT a$b FROM t"), "SELECT a$b FROM t");
}
