#include <gtest/gtest.h>

#include <chrono>
#include <thread>

#include "ErrorMatchers.hpp"
#include "TemporaryFolder.hpp"
#include "caudalis/db/Connection.hpp"
#include "caudalis/db/DatabaseErrors.hpp"
#include "caudalis/db/SqlText.hpp"

using namespace caudalis;
namespace rt = caudalis::RuntimeError;

namespace {

class ConnectionTest : public ::testing::Test {
protected:
    std::string connectionString(const std::string& file = "project.db") const {
        return "Provider=SQLite;Data Source=" + folder.file(file);
    }

    /// An open connection to `file` with a table `t (id, name, amount)`.
    std::unique_ptr<Connection> openWithTable(const std::string& file = "project.db") const {
        auto con = std::make_unique<Connection>(connectionString(file));
        con->Open();
        con->Execute("CREATE TABLE IF NOT EXISTS t (id INTEGER PRIMARY KEY, name TEXT, amount REAL)");
        return con;
    }

    Long rowCount(const std::string& file = "project.db") const {
        Connection con(connectionString(file));
        con.Open();
        return con.Execute("SELECT Count(*) as result FROM t")->Fields("result").toLong();
    }

    caudalis::testing::TemporaryFolder folder;
};

}  // namespace

TEST_F(ConnectionTest, StartsClosedAndKeepsItsConnectionString) {
    Connection con;
    EXPECT_FALSE(con.isOpen());
    con.ConnectionString(connectionString());
    EXPECT_EQ(con.ConnectionString(), connectionString());
    con.Open();
    EXPECT_TRUE(con.isOpen());
    con.Close();
    EXPECT_FALSE(con.isOpen());
}

TEST_F(ConnectionTest, OperationsOnAClosedConnectionRaise) {
    Connection con(connectionString());
    EXPECT_RAISES(con.Execute("SELECT 1"), DatabaseError::ObjectClosed);
    EXPECT_RAISES(con.BeginTrans(), DatabaseError::ObjectClosed);
    EXPECT_RAISES(con.Close(), DatabaseError::ObjectClosed);
}

TEST_F(ConnectionTest, OpenTwiceOrChangingTheStringWhileOpenRaises) {
    Connection con(connectionString());
    con.Open();
    EXPECT_RAISES(con.Open(), DatabaseError::ObjectOpen);
    EXPECT_RAISES(con.ConnectionString("x.db"), DatabaseError::ObjectOpen);
    EXPECT_EQ(con.ConnectionString(), connectionString());
}

TEST_F(ConnectionTest, ConnectionStringFormsReachTheSameFile) {
    openWithTable()->Execute("INSERT INTO t (name) VALUES ('a')");
    const std::string file = folder.file("project.db");
    for (const std::string& text : {file, "  provider = sqlite ;  data source = " + file + " ; ",
                                    "DATA SOURCE=\"" + file + "\";PROVIDER=SQLite"}) {
        Connection con(text);
        con.Open();
        EXPECT_EQ(con.Execute("SELECT name FROM t")->Fields("name").toString(), "a") << text;
    }
}

TEST_F(ConnectionTest, MemoryDatabasesArePrivateToTheirConnection) {
    Connection first(":memory:");
    first.Open();
    first.Execute("CREATE TABLE m (v INTEGER)");
    first.Execute("INSERT INTO m VALUES (5)");
    EXPECT_EQ(first.Execute("SELECT v FROM m")->Fields("v").toLong(), 5);
    Connection second("Provider=SQLite;Data Source=:memory:");
    second.Open();
    EXPECT_RAISES(second.Execute("SELECT v FROM m"), rt::DatabaseEngine);
}

TEST_F(ConnectionTest, UnknownProviderAndMissingDataSourceRaise) {
    Connection unknown("Provider=Microsoft.Jet.OLEDB.4.0;Data Source=x.mdb");
    EXPECT_RAISES(unknown.Open(), DatabaseError::ProviderNotFound);
    EXPECT_FALSE(unknown.isOpen());
    Connection noFile("Provider=SQLite");
    EXPECT_RAISES(noFile.Open(), rt::DatabaseEngine);
    Connection empty;
    EXPECT_RAISES(empty.Open(), rt::DatabaseEngine);
}

TEST_F(ConnectionTest, UnopenableFileRaisesAnEngineError) {
    Connection con(folder.file("no-such-folder/x.db"));
    EXPECT_RAISES(con.Open(), rt::DatabaseEngine);
    EXPECT_FALSE(con.isOpen());
}

TEST_F(ConnectionTest, EngineErrorsCarryTheEnginesMessage) {
    auto con = openWithTable();
    try {
        con->Execute("SELECT name FROM missing_table");
        FAIL() << "no error raised";
    } catch (const Error& error) {
        EXPECT_EQ(error.number(), rt::DatabaseEngine);
        EXPECT_NE(error.description().find("missing_table"), std::string::npos) << error.description();
    }
}

TEST_F(ConnectionTest, TwoStatementsAreRejectedAndNothingRuns) {
    auto con = openWithTable();
    EXPECT_RAISES(con->Execute("INSERT INTO t (name) VALUES ('a'); INSERT INTO t (name) VALUES ('b');"),
                  DatabaseError::CharactersAfterStatement);
    EXPECT_RAISES(con->Execute("DELETE FROM t; x"), DatabaseError::CharactersAfterStatement);
    EXPECT_EQ(rowCount(), 0);
}

TEST_F(ConnectionTest, TrailingTerminatorsAndBlanksAreAccepted) {
    auto con = openWithTable();
    con->Execute("INSERT INTO t (name) VALUES ('a;b');  ;\r\n ");
    con->Execute("INSERT INTO t (name) VALUES ('c')");
    EXPECT_EQ(rowCount(), 2);
    EXPECT_EQ(con->Execute("SELECT name FROM t WHERE id=1;")->Fields("name").toString(), "a;b");
}

TEST_F(ConnectionTest, EmptyStatementIsInvalid) {
    auto con = openWithTable();
    EXPECT_RAISES(con->Execute("  ;  "), DatabaseError::InvalidStatement);
    EXPECT_RAISES(con->Execute(""), DatabaseError::InvalidStatement);
}

TEST_F(ConnectionTest, StatementWithoutRowsGivesAnEmptyRecordset) {
    auto con = openWithTable();
    const auto rs = con->Execute("INSERT INTO t (name) VALUES ('a')");
    EXPECT_TRUE(rs->EOF_());
    EXPECT_TRUE(rs->BOF());
    const auto none = con->Execute("SELECT * FROM t WHERE id = 99");
    EXPECT_TRUE(none->EOF_());
    EXPECT_TRUE(none->BOF());
}

TEST_F(ConnectionTest, RowsAreReadForwardUntilEof) {
    auto con = openWithTable();
    con->Execute("INSERT INTO t (name, amount) VALUES ('a', 1.5)");
    con->Execute("INSERT INTO t (name, amount) VALUES ('b', 2.5)");
    const auto rs = con->Execute("SELECT id, name, amount FROM t ORDER BY id");
    EXPECT_FALSE(rs->BOF());
    std::vector<std::string> names;
    double total = 0.0;
    while (!rs->EOF_()) {
        names.push_back(rs->Fields("name").toString());
        total += rs->Fields("amount").toDouble();
        rs->MoveNext();
    }
    EXPECT_EQ(names, (std::vector<std::string>{"a", "b"}));
    EXPECT_EQ(total, 4.0);
    EXPECT_FALSE(rs->BOF());
    EXPECT_RAISES(rs->MoveNext(), rt::DataAccess);
}

TEST_F(ConnectionTest, FieldValuesKeepTheirKinds) {
    auto con = openWithTable();
    const auto rs = con->Execute(
        "SELECT NULL as empty_value, 7 as small, 3000000000 as big, 2.5 as real_value, 'x' as text_value");
    EXPECT_TRUE(rs->Fields("empty_value").isNull());
    EXPECT_EQ(rs->Fields("small").type(), Variant::Type::Long);
    EXPECT_EQ(rs->Fields("small").toLong(), 7);
    EXPECT_EQ(rs->Fields("big").type(), Variant::Type::Double);
    EXPECT_EQ(rs->Fields("big").toDouble(), 3000000000.0);
    EXPECT_EQ(rs->Fields("real_value").type(), Variant::Type::Double);
    EXPECT_EQ(rs->Fields("text_value").toString(), "x");
    EXPECT_EQ(rs->fieldNames().size(), 5u);
}

TEST_F(ConnectionTest, NullFieldsReadThroughNullToZeroAndNullToEmpty) {
    auto con = openWithTable();
    con->Execute("INSERT INTO t (name, amount) VALUES (NULL, NULL)");
    const auto rs = con->Execute("SELECT * FROM t;");
    EXPECT_TRUE(rs->Fields("amount").isNull());
    EXPECT_EQ(nullToZero(rs->Fields("amount")).toDouble(), 0.0);
    EXPECT_EQ(nullToEmpty(rs->Fields("name")), "");
    EXPECT_RAISES(rs->Fields("name").toString(), rt::InvalidUseOfNull);
}

TEST_F(ConnectionTest, FieldNamesAreMatchedWithoutRegardToCase) {
    auto con = openWithTable();
    con->Execute("INSERT INTO t (name) VALUES ('a')");
    const auto rs = con->Execute("SELECT id as Id_indicadores, name FROM t");
    EXPECT_EQ(rs->Fields("id_indicadores").toLong(), 1);
    EXPECT_EQ(rs->Fields("ID_INDICADORES").toLong(), 1);
    EXPECT_EQ(rs->Fields("NAME").toString(), "a");
}

TEST_F(ConnectionTest, UnknownFieldRaisesItemNotFound) {
    auto con = openWithTable();
    con->Execute("INSERT INTO t (name) VALUES ('a')");
    EXPECT_RAISES(con->Execute("SELECT name FROM t")->Fields("other"), DatabaseError::ItemNotFound);
    EXPECT_RAISES(con->Execute("SELECT name FROM t WHERE id=5")->Fields("other"),
                  DatabaseError::ItemNotFound);
}

TEST_F(ConnectionTest, ReadingWithNoCurrentRowRaisesTheDataAccessError) {
    auto con = openWithTable();
    EXPECT_RAISES(con->Execute("SELECT name FROM t")->Fields("name"), rt::DataAccess);
    con->Execute("INSERT INTO t (name) VALUES ('a')");
    const auto rs = con->Execute("SELECT name FROM t");
    rs->MoveNext();
    try {
        rs->Fields("name");
        FAIL() << "no error raised";
    } catch (const Error& error) {
        EXPECT_EQ(error.number(), rt::DataAccess);
        EXPECT_EQ(error.description(), "Either BOF or EOF is True, or the current record has been deleted");
    }
}

TEST_F(ConnectionTest, CommitKeepsAndRollbackDiscards) {
    auto con = openWithTable();
    con->BeginTrans();
    con->Execute("INSERT INTO t (name) VALUES ('kept')");
    con->CommitTrans();
    con->BeginTrans();
    con->Execute("INSERT INTO t (name) VALUES ('dropped')");
    con->RollbackTrans();
    EXPECT_EQ(rowCount(), 1);
}

TEST_F(ConnectionTest, CommitWithoutTransactionRaisesAnEngineError) {
    auto con = openWithTable();
    EXPECT_RAISES(con->CommitTrans(), rt::DatabaseEngine);
    EXPECT_RAISES(con->RollbackTrans(), rt::DatabaseEngine);
}

TEST_F(ConnectionTest, CloseRollsAnOpenTransactionBack) {
    auto con = openWithTable();
    con->BeginTrans();
    con->Execute("INSERT INTO t (name) VALUES ('lost')");
    con->Close();
    EXPECT_EQ(rowCount(), 0);
    con->Open();
    con->Execute("INSERT INTO t (name) VALUES ('after reopening')");
    EXPECT_EQ(rowCount(), 1);
}

TEST_F(ConnectionTest, DestructionRollsAnOpenTransactionBack) {
    {
        auto con = openWithTable();
        con->BeginTrans();
        con->Execute("INSERT INTO t (name) VALUES ('lost')");
    }
    EXPECT_EQ(rowCount(), 0);
}

TEST_F(ConnectionTest, RecordsetOutlivesItsConnection) {
    std::shared_ptr<Recordset> rs;
    {
        auto con = openWithTable();
        con->Execute("INSERT INTO t (name) VALUES ('a')");
        rs = con->Execute("SELECT name FROM t");
    }
    EXPECT_EQ(rs->Fields("name").toString(), "a");
}

TEST_F(ConnectionTest, SecondConnectionWaitsForAWriteTransaction) {
    openWithTable();
    auto holder = openWithTable();
    holder->BeginTrans();
    holder->Execute("INSERT INTO t (name) VALUES ('first')");
    std::thread release([&holder] {
        std::this_thread::sleep_for(std::chrono::milliseconds(200));
        holder->CommitTrans();
    });
    Connection waiter(connectionString());
    waiter.Open();
    const auto started = std::chrono::steady_clock::now();
    EXPECT_NO_THROW(waiter.Execute("INSERT INTO t (name) VALUES ('second')"));
    const auto waited = std::chrono::steady_clock::now() - started;
    release.join();
    EXPECT_GE(waited, std::chrono::milliseconds(100));
    EXPECT_EQ(rowCount(), 2);
}

TEST_F(ConnectionTest, ForeignKeysAreEnforced) {
    auto con = openWithTable();
    con->Execute("CREATE TABLE child (id INTEGER PRIMARY KEY, t_id INTEGER REFERENCES t(id))");
    EXPECT_RAISES(con->Execute("INSERT INTO child (t_id) VALUES (42)"), rt::DatabaseEngine);
}
