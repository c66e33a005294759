#include <gtest/gtest.h>
#include <sqlite3.h>

#include <bit>
#include <cstdint>
#include <cstdio>
#include <random>
#include <string>
#include <vector>

#include "../../src/db/SqliteLiteralLift.hpp"
#include "ErrorMatchers.hpp"
#include "TemporaryFolder.hpp"
#include "caudalis/db/Connection.hpp"
#include "caudalis/db/JetStatement.hpp"
#include "caudalis/db/SqliteDialect.hpp"

using namespace caudalis;

namespace {

/// One stored value as SQLite keeps it: its type and its bytes.
struct StoredValue {
    int type = SQLITE_NULL;
    std::int64_t integer = 0;
    std::uint64_t realBits = 0;
    std::string bytes;
    bool operator==(const StoredValue&) const = default;
};

std::string describe(const StoredValue& value) {
    return std::to_string(value.type) + "/" + std::to_string(value.integer) + "/" +
           std::to_string(value.realBits) + "/" + value.bytes;
}

/// Tables `lifted` and `direct` alike, one column of each affinity (the last has none).
constexpr const char* tableColumns = "(n NUMERIC, i INTEGER, r REAL, s TEXT, b BLOB, x)";

class SqliteLiteralLiftTest : public ::testing::Test {
protected:
    void SetUp() override {
        library.Open();
        library.Execute(std::string("CREATE TABLE lifted ") + tableColumns);
        library.Execute(std::string("CREATE TABLE direct ") + tableColumns);
        ASSERT_EQ(sqlite3_open(folder.file("values.db").c_str(), &raw), SQLITE_OK);
        // Thousands of single-row commits: no waiting for the disk on each.
        library.Execute("PRAGMA synchronous=OFF");
        sqlite3_exec(raw, "PRAGMA synchronous=OFF", nullptr, nullptr, nullptr);
    }
    void TearDown() override { sqlite3_close_v2(raw); }

    /// Inserts `literal` into every column of `lifted` through the library and of `direct` by
    /// SQLite running the same text (as the SQLite dialect writes it) unprepared.
    void insertBothWays(const std::string& literal) {
        const std::string values = " (n,i,r,s,b,x) VALUES (" + literal + "," + literal + "," + literal + "," +
                                   literal + "," + literal + "," + literal + ")";
        const std::string jet = "INSERT INTO lifted" + values;
        const std::string sql = SqliteDialect([](const std::string& path) {
                                    return path;
                                }).rewrite(JetStatement("INSERT INTO direct" + values));
        // A statement of NULLs only has nothing to take out.
        const bool nullsOnly = literal == "NULL" || literal == "null";
        ASSERT_EQ(SqliteLiteralLift::of(sql).has_value(), !nullsOnly) << sql;
        library.Execute(jet);
        ASSERT_EQ(sqlite3_exec(raw, sql.c_str(), nullptr, nullptr, nullptr), SQLITE_OK) << sql;
    }

    std::vector<StoredValue> rows(const std::string& table) {
        std::vector<StoredValue> stored;
        sqlite3_stmt* statement = nullptr;
        const std::string sql = "SELECT n,i,r,s,b,x FROM " + table + " ORDER BY rowid";
        sqlite3_prepare_v2(raw, sql.c_str(), -1, &statement, nullptr);
        while (sqlite3_step(statement) == SQLITE_ROW) {
            for (int column = 0; column < 6; ++column) {
                StoredValue value;
                value.type = sqlite3_column_type(statement, column);
                if (value.type == SQLITE_INTEGER) {
                    value.integer = sqlite3_column_int64(statement, column);
                } else if (value.type == SQLITE_FLOAT) {
                    value.realBits = std::bit_cast<std::uint64_t>(sqlite3_column_double(statement, column));
                } else if (value.type != SQLITE_NULL) {
                    const auto* data = static_cast<const char*>(sqlite3_column_blob(statement, column));
                    value.bytes.assign(data,
                                       static_cast<std::size_t>(sqlite3_column_bytes(statement, column)));
                }
                stored.push_back(value);
            }
        }
        sqlite3_finalize(statement);
        return stored;
    }

    caudalis::testing::TemporaryFolder folder;
    Connection library{"Provider=SQLite;Data Source=" + folder.file("values.db")};
    sqlite3* raw = nullptr;
};

std::string printed(const char* format, double value) {
    char text[64];
    std::snprintf(text, sizeof text, format, value);
    return text;
}

}  // namespace

TEST_F(SqliteLiteralLiftTest, StoresWhatTheLiteralStoresWithTheSameTypeInEveryAffinity) {
    std::vector<std::string> literals = {"5",
                                         "-5",
                                         "+5",
                                         "- 5",
                                         "007",
                                         "0",
                                         "-0",
                                         "123456789012345678",
                                         "-123456789012345678",
                                         "5.0",
                                         "-5.0",
                                         "5.",
                                         ".5",
                                         "-.5",
                                         "0.0",
                                         "-0.0",
                                         "0.1",
                                         "0.30000000000000004",
                                         "3.141592653589793238462643383279",
                                         "1e3",
                                         "1E-3",
                                         "-2.5e+10",
                                         "2.5E10",
                                         "1e400",
                                         "-1e400",
                                         "4.9e-324",
                                         "2.2250738585072014e-308",
                                         "1.7976931348623157e308",
                                         "9007199254740993.0",
                                         "'5'",
                                         "'5.0'",
                                         "' 5'",
                                         "'5 '",
                                         "'-5'",
                                         "'1e3'",
                                         "'0x10'",
                                         "''",
                                         "'it''s'",
                                         "''''",
                                         "'a''b''c'",
                                         "'2024-01-31 12:00:00'",
                                         "'héllo wörld'",
                                         "NULL",
                                         "null",
                                         "#2024-01-31#",
                                         "#1/31/2024 12:30:00#"};
    std::mt19937_64 random(31);
    std::uniform_real_distribution<double> spread(-1e6, 1e6);
    for (int i = 0; i < 200; ++i) {
        const double value = spread(random) * std::pow(10.0, static_cast<int>(random() % 40) - 20);
        literals.push_back(printed("%.17g", value));
        literals.push_back(printed("%.15g", value));
        literals.push_back(printed("%.3f", value));
    }
    for (const auto& literal : literals) {
        insertBothWays(literal);
    }
    const auto lifted = rows("lifted");
    const auto direct = rows("direct");
    ASSERT_EQ(lifted.size(), literals.size() * 6);
    ASSERT_EQ(direct.size(), lifted.size());
    for (std::size_t i = 0; i < lifted.size(); ++i) {
        EXPECT_EQ(lifted[i], direct[i]) << literals[i / 6] << " column " << i % 6 << ": "
                                        << describe(lifted[i]) << " against " << describe(direct[i]);
    }
}

TEST(SqliteLiteralLift, TakesTheLiteralsOutOfAnInsertOfPlainValues) {
    const auto lifted = SqliteLiteralLift::of(
        "insert into \"odd values\" ([values], `x`) values ( -12, 'it''s' ,NULL, 2.50e1),(7,'',null,.5);");
    ASSERT_TRUE(lifted.has_value());
    EXPECT_EQ(lifted->shape(),
              "insert into \"odd values\" ([values], `x`) values ( ?, ? ,NULL, CAST(? AS REAL)),(?,?,null,"
              "CAST(? AS REAL));");
    using Kind = SqliteLiteralLift::Value::Kind;
    ASSERT_EQ(lifted->values().size(), 6u);
    EXPECT_EQ(lifted->values()[0].kind, Kind::Integer);
    EXPECT_EQ(lifted->values()[0].integer, -12);
    EXPECT_EQ(lifted->values()[1].kind, Kind::Text);
    EXPECT_EQ(lifted->values()[1].text, "it's");
    EXPECT_EQ(lifted->values()[2].kind, Kind::Real);
    EXPECT_EQ(lifted->values()[2].text, "2.50e1");
    EXPECT_EQ(lifted->values()[4].text, "");
    EXPECT_EQ(lifted->values()[5].text, ".5");
}

TEST(SqliteLiteralLift, LeavesEveryOtherStatementAsWritten) {
    for (const char* sql : {"SELECT 1",
                            "UPDATE t SET a = 1",
                            "DELETE FROM t WHERE a = 1",
                            "INSERT INTO t SELECT 1",
                            "INSERT INTO t VALUES (1+2)",
                            "INSERT INTO t VALUES (x'00')",
                            "INSERT INTO t VALUES (0x10)",
                            "INSERT INTO t VALUES (1234567890123456789)",
                            "INSERT INTO t VALUES (-9223372036854775808)",
                            "INSERT INTO t VALUES (?)",
                            "INSERT INTO t VALUES (:a)",
                            "INSERT INTO t VALUES (1) -- note",
                            "INSERT INTO t VALUES (1) /* note */",
                            "INSERT INTO t VALUES (1) RETURNING *",
                            "INSERT INTO t DEFAULT VALUES",
                            "INSERT INTO t VALUES (abs(1))",
                            "INSERT INTO t VALUES ('a' || 'b')",
                            "INSERT INTO t VALUES (- 'x')",
                            "INSERT INTO t VALUES (1e)",
                            "INSERT INTO t VALUES (1.2.3)",
                            "INSERT INTO t VALUES (5abc)",
                            "INSERT INTO t VALUES ('open)",
                            "INSERT INTO t VALUES (1); INSERT INTO t VALUES (2)",
                            "INSERT INTO t VALUES (NULL)",
                            "INSERT INTO t (a) VALUES (1) ON CONFLICT DO NOTHING",
                            "INSERT INTO t VALUES (TRUE)",
                            "INSERT INTO t VALUES (CURRENT_DATE)",
                            "INSERT INTO t('a') VALUES (1)",
                            "WITH c AS (SELECT 1) INSERT INTO t VALUES (1)"}) {
        EXPECT_FALSE(SqliteLiteralLift::of(sql).has_value()) << sql;
    }
}

TEST(SqliteLiteralLiftStatements, ARepeatedShapeStillInUseAndAFailedInsertLeaveTheNextInsertsRight) {
    caudalis::testing::TemporaryFolder folder;
    Connection con("Provider=SQLite;Data Source=" + folder.file("shapes.db"));
    con.Open();
    con.Execute("CREATE TABLE t (id INTEGER PRIMARY KEY, name TEXT NOT NULL)");
    const auto first = con.Execute("INSERT INTO t (id, name) VALUES (1, 'one')");
    const auto second = con.Execute("INSERT INTO t (id, name) VALUES (2, 'two')");
    EXPECT_THROW(con.Execute("INSERT INTO t (id, name) VALUES (2, 'again')"), std::exception);
    con.Execute("INSERT INTO t (id, name) VALUES (3, 'three')");
    const auto rows = con.Execute("SELECT Count(*) AS n, Sum(id) AS ids FROM t");
    EXPECT_EQ(rows->Fields("n").toLong(), 3);
    EXPECT_EQ(rows->Fields("ids").toLong(), 6);
    const auto named = con.Execute("SELECT name FROM t WHERE id = 2");
    EXPECT_EQ(named->Fields("name").toString(), "two");
}
