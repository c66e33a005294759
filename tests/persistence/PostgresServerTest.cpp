#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <stdexcept>

#include "ChartFixture.hpp"
#include "ErrorMatchers.hpp"
#include "PostgresTestServer.hpp"
#include "TemporaryFolder.hpp"
#include "caudalis/core/Error.hpp"
#include "caudalis/db/Connection.hpp"
#include "caudalis/db/DatabaseErrors.hpp"
#include "caudalis/db/PostgresConnectionString.hpp"

using namespace caudalis;
using namespace caudalis::testing;

namespace {

/// What only the PostgreSQL engine has to get right.
class PostgresServer : public ::testing::Test, public ChartFixture {
protected:
    PostgresServer() : ChartFixture(TestEngine::Postgresql) {}

    /// The description of the error raised by `action`.
    static std::string raisedDescription(const std::function<void()>& action) {
        try {
            action();
        } catch (const Error& error) {
            return error.description();
        }
        return {};
    }
};

TEST_F(PostgresServer, TheLastKeyIsZeroBeforeAnyInsertAndKeptByAnInsertOfNoRow) {
    Connection con(databases.projectConnection());
    con.Open();
    EXPECT_EQ(con.Execute("Select @@IDENTITY as id;")->Fields("id").toLong(), 0);
    con.Execute("INSERT INTO pipe_materials (name, rugosidade) VALUES ('Copper', 140)");
    const Long copper = con.Execute("Select @@IDENTITY as id;")->Fields("id").toLong();
    EXPECT_EQ(copper, 6);
    con.Execute(
        "INSERT INTO pipe_materials (name, rugosidade) SELECT name, rugosidade FROM pipe_materials WHERE "
        "1=0");
    con.Execute("INSERT INTO tb_drop (longitud, carta_id) VALUES (1, 1)");
    EXPECT_EQ(con.Execute("Select @@IDENTITY as id;")->Fields("id").toLong(), copper);
    EXPECT_TRUE(
        con.Execute("INSERT INTO tb_cartas (nome, id_sistema) VALUES ('x', 1)")->fieldNames().empty());
}

TEST_F(PostgresServer, ValuesComeBackAsTheirKinds) {
    Connection con(databases.projectConnection());
    con.Open();
    const auto row = con.Execute(
        "SELECT true AS yes, 3000000000 AS big, 7 AS small, 2.5::float8 AS real, 'x'::text AS word, null AS "
        "nothing");
    EXPECT_EQ(row->Fields("YES").type(), Variant::Type::Boolean);
    EXPECT_TRUE(row->Fields("yes").toBoolean());
    EXPECT_EQ(row->Fields("big").type(), Variant::Type::Double);
    EXPECT_EQ(row->Fields("big").toDouble(), 3e9);
    EXPECT_EQ(row->Fields("small").type(), Variant::Type::Long);
    EXPECT_EQ(row->Fields("real").toDouble(), 2.5);
    EXPECT_EQ(row->Fields("word").toString(), "x");
    EXPECT_TRUE(row->Fields("nothing").isNull());
}

TEST_F(PostgresServer, ACatalogueInAnotherDatabaseIsRefusedByName) {
    auto chart = fullChart("Elsewhere");
    saveAsNew(*chart);
    const std::string description = raisedDescription([&] {
        charts.find(databases.projectConnection(), "host=127.0.0.1 dbname=another schema=catalogue",
                    static_cast<Integer>(chart->id()));
    });
    EXPECT_NE(description.find("is in database another"), std::string::npos) << description;
}

TEST_F(PostgresServer, ACatalogueFileCannotBeJoinedToAServerDatabase) {
    auto chart = fullChart("File");
    saveAsNew(*chart);
    const std::string description = raisedDescription([&] {
        charts.find(databases.projectConnection(), "/data/catalogue.db", static_cast<Integer>(chart->id()));
    });
    EXPECT_NE(description.find("names no schema of this PostgreSQL database"), std::string::npos)
        << description;
}

TEST_F(PostgresServer, ACatalogueSchemaNamedOnItsOwnIsJoined) {
    auto chart = fullChart("By schema");
    saveAsNew(*chart);
    const std::string schema =
        PostgresConnectionString::parse(databases.catalogueConnection())->schema().value();
    for (const std::string& reference : {"schema='" + schema + "'", schema}) {
        const auto loaded =
            charts.find(databases.projectConnection(), reference, static_cast<Integer>(chart->id()));
        EXPECT_EQ(loaded->mountedAspersores()->Count(), 3) << reference;
    }
}

TEST_F(PostgresServer, AStatementWithANulCharacterIsRefusedNotCutShort) {
    auto chart = fullChart("Kept");
    saveAsNew(*chart);
    const TableDump before = databases.dumpProject();
    Connection con(databases.projectConnection());
    con.Open();
    const std::string sql("DELETE FROM tb_cartas WHERE id_carta=1\0 AND nome='nobody'", 57);
    EXPECT_RAISES(con.Execute(sql), DatabaseError::SyntaxError);
    EXPECT_EQ(databases.dumpProject(), before);
}

TEST_F(PostgresServer, AFailedStatementLeavesTheTransactionGoodOnlyForARollback) {
    Connection con(databases.projectConnection());
    con.Open();
    con.BeginTrans();
    con.Execute("INSERT INTO pipe_materials (name, rugosidade) VALUES ('Copper', 140)");
    EXPECT_RAISES(con.Execute("SELECT no_such_column FROM pipe_materials"), RuntimeError::DatabaseEngine);
    EXPECT_RAISES(con.Execute("SELECT 1"), RuntimeError::DatabaseEngine);
    EXPECT_RAISES(con.CommitTrans(), RuntimeError::DatabaseEngine);
    EXPECT_EQ(databases.projectNumber("SELECT count(*) FROM pipe_materials WHERE name='Copper'"), 0);
    EXPECT_EQ(con.Execute("SELECT 1 AS one")->Fields("one").toLong(), 1);
}

TEST(PostgresTestServer, AServerThatCannotStartSaysWhy) {
    const TemporaryFolder folder;
    ::setenv("CAUDALIS_POSTGRESQL_BIN", folder.path().c_str(), 1);
    std::string message;
    try {
        PostgresTestServer::start(folder.path() / "state");
    } catch (const std::runtime_error& error) {
        message = error.what();
    }
    ::unsetenv("CAUDALIS_POSTGRESQL_BIN");
    EXPECT_NE(message.find("the PostgreSQL test server: "), std::string::npos) << message;
    EXPECT_FALSE(std::filesystem::exists(folder.path() / "state"));
    EXPECT_NE(message.find("initdb failed"), std::string::npos) << message;
    EXPECT_THROW(PostgresTestServer::connection(folder.path() / "state"), std::runtime_error);
}

}  // namespace
