#include <gtest/gtest.h>

#include "ErrorMatchers.hpp"
#include "caudalis/db/Connection.hpp"
#include "caudalis/db/DatabaseErrors.hpp"
#include "caudalis/db/JetStatement.hpp"

using namespace caudalis;

namespace {

Long countOf(Connection& con, const std::string& table) {
    return con.Execute("SELECT count(*) as n FROM " + table)->Fields("n").toLong();
}

class StatementShapes : public ::testing::Test {
protected:
    void SetUp() override {
        con.Open();
        con.Execute("CREATE TABLE t (a TEXT)");
        con.Execute("CREATE TABLE log (what TEXT)");
    }
    Connection con{":memory:"};
};

}  // namespace

TEST_F(StatementShapes, CommentsAreRefusedWhateverTheyHold) {
    EXPECT_RAISES(con.Execute("INSERT INTO t VALUES ('x') -- don't; stop here"), DatabaseError::SyntaxError);
    EXPECT_RAISES(con.Execute("/* it's; a comment */ INSERT INTO t VALUES ('y');"),
                  DatabaseError::SyntaxError);
    EXPECT_RAISES(con.Execute("INSERT INTO t VALUES ('z'); -- trailing comment after the end"),
                  DatabaseError::SyntaxError);
    EXPECT_RAISES(con.Execute("INSERT INTO t VALUES ('x'); /* c */ DELETE FROM t"),
                  DatabaseError::SyntaxError);
    EXPECT_EQ(countOf(con, "t"), 0);
}

TEST_F(StatementShapes, TriggerBodiesKeepTheirSemicolons) {
    con.Execute(
        "CREATE TRIGGER t_log AFTER INSERT ON t BEGIN "
        "INSERT INTO log VALUES ('one'); INSERT INTO log VALUES ('two'); END;");
    con.Execute("INSERT INTO t VALUES ('x')");
    EXPECT_EQ(countOf(con, "log"), 2);
}

TEST_F(StatementShapes, AStatementAfterATriggerIsRefused) {
    EXPECT_RAISES(
        con.Execute("CREATE TRIGGER t_log AFTER INSERT ON t BEGIN INSERT INTO log VALUES ('one'); END; "
                    "DELETE FROM t"),
        DatabaseError::CharactersAfterStatement);
    con.Execute("INSERT INTO t VALUES ('x')");
    EXPECT_EQ(countOf(con, "log"), 0);
}

TEST_F(StatementShapes, TriggerThatRefusesInserts) {
    con.Execute("CREATE TEMP TRIGGER refuse BEFORE INSERT ON t BEGIN SELECT RAISE(ABORT, 'injected'); END");
    EXPECT_RAISES(con.Execute("INSERT INTO t VALUES ('x')"), RuntimeError::DatabaseEngine);
    EXPECT_EQ(countOf(con, "t"), 0);
}

TEST(JetStatement, CommentsAreSegmentsOfTheirOwn) {
    const JetStatement statement("SELECT 1 -- note\n/* more */ FROM t");
    ASSERT_EQ(statement.segments().size(), 4U);
    EXPECT_EQ(statement.segments()[1].kind, JetSqlSegment::Kind::Comment);
    EXPECT_EQ(statement.segments()[1].text, "-- note\n");
    EXPECT_EQ(statement.segments()[2].text, "/* more */");
}

TEST(JetStatement, OnlyCommentsIsNoStatement) {
    EXPECT_RAISES(JetStatement("-- nothing here").requireSingleStatement(), DatabaseError::InvalidStatement);
}
