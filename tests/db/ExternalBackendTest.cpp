#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "ErrorMatchers.hpp"
#include "PersistenceDatabases.hpp"
#include "TemporaryFolder.hpp"
#include "caudalis/core/Arrays.hpp"
#include "caudalis/db/Connection.hpp"
#include "caudalis/db/DatabaseBackend.hpp"
#include "caudalis/db/DatabaseErrors.hpp"
#include "caudalis/db/SqliteBackend.hpp"
#include "caudalis/evaluation/PivotEvaluations.hpp"

using namespace caudalis;
namespace rt = caudalis::RuntimeError;

namespace {

/// A backend of the caller's own over a real SQLite file: every statement goes to a
/// `SqliteBackend`, and the texts it was given are kept.
class ForwardingBackend : public DatabaseBackend {
public:
    ForwardingBackend(const std::string& path, std::vector<std::string>& received)
        : engine_(path), received_(received) {}

    std::unique_ptr<DatabaseCursor> execute(const JetStatement& statement) override {
        received_.push_back(statement.text());
        return engine_.execute(statement);
    }
    void beginTransaction() override { engine_.beginTransaction(); }
    void commitTransaction() override { engine_.commitTransaction(); }
    void rollbackTransaction() override { engine_.rollbackTransaction(); }
    bool inTransaction() const noexcept override { return engine_.inTransaction(); }

private:
    SqliteBackend engine_;
    std::vector<std::string>& received_;
};

/// The rows of a record set read as a host's late-bound record set is: EOF, MoveNext and a
/// field by name, with no list of columns.
class ByNameCursor : public DatabaseCursor {
public:
    explicit ByNameCursor(std::shared_ptr<Recordset> rows) : rows_(std::move(rows)) {}

    std::vector<std::string> columnNames() const override { return {}; }
    bool fetch(std::vector<Variant>&) override {
        if (started_) {
            rows_->MoveNext();
        }
        started_ = true;
        return !rows_->EOF_();
    }
    bool readsByName() const noexcept override { return true; }
    Variant field(const std::string& name) const override { return rows_->Fields(name); }

private:
    std::shared_ptr<Recordset> rows_;
    bool started_ = false;
};

/// A host's connection that speaks the Access dialect itself: statements go as written to a
/// connection of the library's own over SQLite; only the transactions begun here are counted.
class ByNameBackend : public DatabaseBackend {
public:
    ByNameBackend(const std::string& connectionString, std::vector<std::string>& received)
        : host_(connectionString), received_(received) {
        host_.Open();
    }
    ~ByNameBackend() override {
        try {
            while (inTransaction()) {
                rollbackTransaction();
            }
        } catch (...) {
            // The host's connection abandons the transaction when it closes.
        }
    }
    ByNameBackend(const ByNameBackend&) = delete;
    ByNameBackend& operator=(const ByNameBackend&) = delete;

    std::unique_ptr<DatabaseCursor> execute(const JetStatement& statement) override {
        received_.push_back(statement.text());
        return std::make_unique<ByNameCursor>(host_.Execute(statement.text()));
    }
    void beginTransaction() override {
        host_.BeginTrans();
        ++depth_;
    }
    void commitTransaction() override {
        host_.CommitTrans();
        --depth_;
    }
    void rollbackTransaction() override {
        host_.RollbackTrans();
        --depth_;
    }
    bool inTransaction() const noexcept override { return depth_ > 0; }

private:
    Connection host_;
    std::vector<std::string>& received_;
    int depth_ = 0;
};

class ExternalBackendTest : public ::testing::Test {
protected:
    std::string file() const { return folder.file("project.db"); }

    /// The rows of `t` as seen by a connection of its own.
    Long rowCount() const {
        Connection con("Provider=SQLite;Data Source=" + file());
        con.Open();
        return con.Execute("SELECT Count(*) AS result FROM t")->Fields("result").toLong();
    }

    void createTable() const {
        Connection con("Provider=SQLite;Data Source=" + file());
        con.Open();
        con.Execute("CREATE TABLE t (id INTEGER PRIMARY KEY, name TEXT, amount REAL)");
        con.Execute("INSERT INTO t (name, amount) VALUES ('first', 1.5)");
        con.Execute("INSERT INTO t (name, amount) VALUES ('second', 2.5)");
    }

    caudalis::testing::TemporaryFolder folder;
    std::vector<std::string> received;
};

}  // namespace

TEST_F(ExternalBackendTest, IsOpenFromTheStartWithAnEmptyConnectionString) {
    Connection con(std::make_unique<ForwardingBackend>(file(), received));
    EXPECT_TRUE(con.isOpen());
    EXPECT_EQ(con.ConnectionString(), "");
    EXPECT_RAISES(con.Open(), DatabaseError::ObjectOpen);
    EXPECT_RAISES(con.ConnectionString("Provider=SQLite;Data Source=x.db"), DatabaseError::ObjectOpen);
}

TEST_F(ExternalBackendTest, AnEmptyBackendIsRefused) {
    EXPECT_RAISES(Connection(std::unique_ptr<DatabaseBackend>()), rt::ObjectNotSet);
}

TEST_F(ExternalBackendTest, StatementsRunOnTheSuppliedBackend) {
    createTable();
    Connection con(std::make_unique<ForwardingBackend>(file(), received));
    con.Execute("INSERT INTO t (name, amount) VALUES ('third', 3.5);");
    const auto rows = con.Execute("SELECT name, amount FROM t WHERE amount > 2 ORDER BY id");
    EXPECT_EQ(rows->Fields("name").toString(), "second");
    rows->MoveNext();
    EXPECT_EQ(rows->Fields("NAME").toString(), "third");
    EXPECT_EQ(rows->Fields("amount").toDouble(), 3.5);
    rows->MoveNext();
    EXPECT_TRUE(rows->EOF_());
    EXPECT_EQ(received,
              (std::vector<std::string>{"INSERT INTO t (name, amount) VALUES ('third', 3.5);",
                                        "SELECT name, amount FROM t WHERE amount > 2 ORDER BY id"}));
    EXPECT_EQ(rowCount(), 3);
}

TEST_F(ExternalBackendTest, TheStatementGuardHoldsBeforeTheBackendSeesAnything) {
    createTable();
    Connection con(std::make_unique<ForwardingBackend>(file(), received));
    EXPECT_RAISES(con.Execute("DELETE FROM t; DROP TABLE t"), DatabaseError::CharactersAfterStatement);
    EXPECT_RAISES(con.Execute("DELETE FROM t -- all of them"), DatabaseError::SyntaxError);
    EXPECT_RAISES(con.Execute("DELETE FROM t WHERE id = ?"), DatabaseError::ParameterWithoutValue);
    EXPECT_TRUE(received.empty());
    EXPECT_EQ(rowCount(), 2);
}

TEST_F(ExternalBackendTest, ClosingRollsBackTheTransactionItBegan) {
    createTable();
    Connection con(std::make_unique<ForwardingBackend>(file(), received));
    con.BeginTrans();
    con.Execute("DELETE FROM t");
    con.Close();
    EXPECT_FALSE(con.isOpen());
    EXPECT_RAISES(con.Execute("SELECT 1"), DatabaseError::ObjectClosed);
    EXPECT_EQ(rowCount(), 2);
}

TEST_F(ExternalBackendTest, DestroyingRollsBackAndCommittedWorkStays) {
    createTable();
    {
        Connection con(std::make_unique<ForwardingBackend>(file(), received));
        con.BeginTrans();
        con.Execute("DELETE FROM t WHERE name = 'first'");
        con.CommitTrans();
        con.BeginTrans();
        con.Execute("DELETE FROM t");
    }
    EXPECT_EQ(rowCount(), 1);
}

TEST_F(ExternalBackendTest, OnceClosedItOpensByConnectionStringLikeAnyOther) {
    createTable();
    Connection con(std::make_unique<ForwardingBackend>(file(), received));
    con.Close();
    con.Open("Provider=SQLite;Data Source=" + file());
    EXPECT_EQ(con.Execute("SELECT Count(*) AS result FROM t")->Fields("result").toLong(), 2);
}

TEST_F(ExternalBackendTest, FieldsOfAHostsRecordSetAreReadByName) {
    createTable();
    Connection con(std::make_unique<ByNameBackend>("Provider=SQLite;Data Source=" + file(), received));
    const auto rows = con.Execute("SELECT id, name FROM t ORDER BY id");
    EXPECT_TRUE(rows->fieldNames().empty());
    EXPECT_FALSE(rows->BOF());
    EXPECT_EQ(rows->Fields("Name").toString(), "first");
    EXPECT_RAISES(rows->Fields("missing"), DatabaseError::ItemNotFound);
    rows->MoveNext();
    EXPECT_EQ(rows->Fields("id").toLong(), 2);
    rows->MoveNext();
    EXPECT_TRUE(rows->EOF_());
    EXPECT_RAISES(rows->Fields("name"), rt::DataAccess);
    EXPECT_RAISES(rows->MoveNext(), rt::DataAccess);
}

TEST_F(ExternalBackendTest, AStatementWithoutRowsGivesAnEmptyRecordSet) {
    createTable();
    Connection con(std::make_unique<ByNameBackend>("Provider=SQLite;Data Source=" + file(), received));
    const auto rows = con.Execute("UPDATE t SET amount = 0");
    EXPECT_TRUE(rows->EOF_());
    EXPECT_TRUE(rows->BOF());
    EXPECT_RAISES(rows->Fields("amount"), rt::DataAccess);
}

TEST_F(ExternalBackendTest, AHostsRecordSetStaysReadableAfterTheNextStatement) {
    createTable();
    Connection con(std::make_unique<ByNameBackend>("Provider=SQLite;Data Source=" + file(), received));
    const auto all = con.Execute("SELECT name FROM t ORDER BY id");
    const auto count = con.Execute("SELECT Count(*) AS result FROM t");
    EXPECT_EQ(count->Fields("result").toLong(), 2);
    EXPECT_EQ(all->Fields("name").toString(), "first");
    all->MoveNext();
    EXPECT_EQ(all->Fields("name").toString(), "second");
}

TEST_F(ExternalBackendTest, StatementsReachAHostsEngineAsWritten) {
    createTable();
    Connection con(std::make_unique<ByNameBackend>("Provider=SQLite;Data Source=" + file(), received));
    const std::string jet = "SELECT name FROM [t] WHERE amount > 0 AND true AND #2024-01-02# > '2023'";
    EXPECT_EQ(con.Execute(jet)->Fields("name").toString(), "first");
    con.Execute("INSERT INTO t (name) VALUES ('third')");
    EXPECT_EQ(con.Execute("SELECT @@IDENTITY AS id")->Fields("id").toLong(), 3);
    ASSERT_EQ(received.size(), 3U);
    EXPECT_EQ(received[0], jet);
    EXPECT_EQ(received[2], "SELECT @@IDENTITY AS id");
}

TEST(ExternalBackendOperations, EvaluationsAreStoredThroughAHostsConnection) {
    const caudalis::testing::PersistenceDatabases databases;
    std::vector<std::string> received;
    Connection con(std::make_unique<ByNameBackend>(databases.projectConnection(), received));
    const auto& evaluations = *PivotEvaluations::shared();

    PivotEvaluation evaluation = evaluations.newEvaluation("North field");
    evaluations.save(con, evaluation);
    EXPECT_GT(evaluation.id, 0);
    EXPECT_TRUE(evaluations.exists(con, "name = 'North field'"));
    EXPECT_EQ(evaluations.find(con, "name = 'North field'").id, evaluation.id);
    EXPECT_EQ(Arrays::shared()->Length(evaluations.Enumerate(con)), 1);
    EXPECT_EQ(databases.projectNumber("SELECT Count(*) FROM pivot_evaluations"), 1);

    con.BeginTrans();
    evaluations.destroy(con, evaluation);
    EXPECT_FALSE(evaluations.exists(con, "name = 'North field'"));
    con.RollbackTrans();
    EXPECT_TRUE(evaluations.exists(con, "name = 'North field'"));
    EXPECT_FALSE(received.empty());
}

TEST(ExternalBackendOperations, AFailureOfTheHostsEngineLeavesNothingBehind) {
    const caudalis::testing::PersistenceDatabases databases;
    databases.refuseOnProject("pivot_evaluations", "INSERT");
    std::vector<std::string> received;
    Connection con(std::make_unique<ByNameBackend>(databases.projectConnection(), received));
    PivotEvaluation evaluation = PivotEvaluations::shared()->newEvaluation("refused");
    EXPECT_EQ(caudalis::testing::raisedNumber([&] { PivotEvaluations::shared()->save(con, evaluation); }),
              rt::DatabaseEngine);
    EXPECT_EQ(evaluation.id, 0);
    EXPECT_EQ(databases.projectNumber("SELECT Count(*) FROM pivot_evaluations"), 0);
}
