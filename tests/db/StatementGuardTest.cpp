#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "ErrorMatchers.hpp"
#include "caudalis/core/Error.hpp"
#include "caudalis/db/Connection.hpp"
#include "caudalis/db/DatabaseErrors.hpp"
#include "caudalis/db/SqlScript.hpp"
#include "caudalis/db/SqlText.hpp"
#include "caudalis/db/StatementGuard.hpp"
#include "caudalis/db/TableSchema.hpp"

using namespace caudalis;

namespace {

std::string filled(std::string sql, std::initializer_list<Variant> params) {
    return substituteParams(sql, BoundedArray<Variant>::of(params));
}

class GuardedConnection : public ::testing::Test {
protected:
    void SetUp() override {
        con.Open();
        con.Execute("CREATE TABLE t (a TEXT, b INTEGER)");
        con.Execute("INSERT INTO t VALUES ('kept', 1)");
    }

    std::string rows() {
        std::string text;
        for (auto rs = con.Execute("SELECT a, b FROM t ORDER BY rowid"); !rs->EOF_(); rs->MoveNext()) {
            text += rs->Fields("a").toString() + "=" + rs->Fields("b").toString() + ";";
        }
        return text;
    }

    Connection con{":memory:"};
};

}  // namespace

TEST(StatementGuard, OrdinaryValuesFillTheMarksAsBefore) {
    EXPECT_EQ(filled("INSERT INTO marca (nome) VALUES (?);", {Variant("'A'")}),
              "INSERT INTO marca (nome) VALUES ('A');");
    EXPECT_EQ(filled("? ?", {Variant("?"), Variant("x")}), "x ?");
    EXPECT_EQ(filled("WHERE id_sistema=?  AND nome='?';", {Variant(Long{7}), Variant("North 2024")}),
              "WHERE id_sistema=7  AND nome='North 2024';");
    EXPECT_EQ(sqlQuote(Variant("a'b")), "'a'b'");
}

TEST(StatementGuard, AValueThatWouldEndItsQuotedMarkIsRefused) {
    EXPECT_RAISES(filled("nome='?'", {Variant("x' OR '1'='1")}), DatabaseError::SyntaxError);
    EXPECT_RAISES(filled("nome='?'", {Variant("x' --")}), DatabaseError::SyntaxError);
    EXPECT_RAISES(filled("nome='?'", {Variant("x'")}), DatabaseError::SyntaxError);
    EXPECT_RAISES(filled("nome=\"?\"", {Variant("x\" OR \"1\"=\"1")}), DatabaseError::SyntaxError);
    EXPECT_RAISES(filled("SELECT * FROM [?]", {Variant("t] WHERE [a")}), DatabaseError::SyntaxError);
}

TEST(StatementGuard, AMarkThatAnEarlierValueBroughtIntoALiteralIsGuardedToo) {
    EXPECT_RAISES(filled("a=? AND b='?'", {Variant("'?'"), Variant("x' OR 'y")}), DatabaseError::SyntaxError);
    EXPECT_EQ(filled("a=? AND b='?'", {Variant("'?'"), Variant("x")}), "a='x' AND b='?'");
}

TEST(StatementGuard, ADoubledQuoteInAValueIsRefusedSinceItWouldBeStoredAsOne) {
    EXPECT_RAISES(filled("nome='?'", {Variant("O''Brien")}), DatabaseError::SyntaxError);
    EXPECT_RAISES(filled("VALUES (?)", {Variant("'O''Brien'")}), DatabaseError::SyntaxError);
    EXPECT_RAISES(filled("SELECT * FROM [?]", {Variant("a]]b")}), DatabaseError::SyntaxError);
    // A template's own doubled quote is the template's business.
    EXPECT_EQ(filled("nome='it''s ?'", {Variant("fine")}), "nome='it''s fine'");
    // Other apostrophes are ordinary text.
    EXPECT_EQ(filled("nome='?'", {Variant("O\xE2\x80\x99"
                                          "Brien")}),
              "nome='O\xE2\x80\x99"
              "Brien'");
    EXPECT_EQ(filled("nome=\"?\"", {Variant("O'Brien")}), "nome=\"O'Brien\"");
}

namespace {

/// The message of the error that filling `sql` raises ("" when none).
std::string refusal(const std::string& sql, std::initializer_list<Variant> params) {
    try {
        filled(sql, params);
    } catch (const Error& error) {
        return error.description();
    }
    return {};
}

}  // namespace

TEST(StatementGuard, TheRefusalNamesTheFieldTheValueWasFor) {
    const std::string head = "Syntax error in query expression. The value for ";
    const std::string tail = " holds ', which the statement's text cannot store as given.";
    EXPECT_EQ(refusal("SELECT count(*) FROM tb_cartas WHERE id_sistema=?  AND nome='?';",
                      {Variant(Long{7}), Variant("a''b")}),
              head + "nome" + tail);
    EXPECT_EQ(refusal("INSERT INTO tb_cartas (nome,boost,id_sistema) values( '?',?, ?);", {Variant("a''b")}),
              head + "nome" + tail);
    EXPECT_EQ(refusal("INSERT INTO Boquillas (denominacion,pmin,id_modelo)VALUES (?,?,?);",
                      {Variant("'a'"), Variant("'b''c'")}),
              head + "pmin" + tail);
    EXPECT_EQ(refusal("WHERE marca.nome='?'", {Variant("x'")}), head + "marca.nome" + tail);
    EXPECT_EQ(refusal("UPDATE t SET a = ? WHERE b = 1", {Variant("'x''y'")}), head + "a" + tail);
    EXPECT_EQ(refusal("SELECT ?", {Variant("'x''y'")}), head + "a value" + tail);
    EXPECT_EQ(refusal("SELECT * FROM [?]", {Variant("t]")}),
              head + "a value holds ], which the statement's text cannot store as given.");
}

TEST(StatementGuard, TableSchemaNamesTheColumnOfARefusedValue) {
    const auto schema = makeTableSchema("t", BoundedArray<Variant>::of({Variant("a"), Variant("b")}), "id");
    const auto values = BoundedArray<Variant>::of({Variant("'x'"), Variant("'O''Brien'")});
    const auto message = [](const std::function<void()>& build) {
        try {
            build();
        } catch (const Error& error) {
            return error.description();
        }
        return std::string();
    };
    EXPECT_NE(message([&] { schema->insertSQL(values); }).find("The value for b holds '"), std::string::npos);
    EXPECT_NE(message([&] { schema->updateSQL(values, Variant(Long{3})); }).find("The value for b holds '"),
              std::string::npos);
    EXPECT_NE(message([&] {
                  schema->insertSQL(BoundedArray<Variant>::of({Variant("1"), Variant("2"), Variant("'a''")}));
              }).find("The value for a column not named holds '"),
              std::string::npos);
}

TEST(StatementGuard, AQuotedValueThatIsNotOneLiteralIsRefusedWhereCodeGoes) {
    EXPECT_RAISES(filled("VALUES (?);", {sqlQuote(Variant("x' OR '1'='1"))}), DatabaseError::SyntaxError);
    EXPECT_RAISES(filled("VALUES (?);", {sqlQuote(Variant("a'b"))}), DatabaseError::SyntaxError);
    EXPECT_RAISES(filled("VALUES (?);", {Variant("'")}), DatabaseError::SyntaxError);
    EXPECT_EQ(filled("WHERE ?", {Variant("a='x' OR a='y'")}), "WHERE a='x' OR a='y'");
}

TEST(StatementGuard, TableSchemaRefusesValuesThatEndTheirLiteral) {
    const auto schema = makeTableSchema("t", BoundedArray<Variant>::of({Variant("a"), Variant("b")}), "id");
    const auto hostile = BoundedArray<Variant>::of({Variant(sqlQuote(Variant("x', 'y"))), Variant("1")});
    EXPECT_RAISES(schema->insertSQL(hostile), DatabaseError::SyntaxError);
    EXPECT_RAISES(schema->updateSQL(hostile, Variant(Long{3})), DatabaseError::SyntaxError);
    const auto ordinary = BoundedArray<Variant>::of({Variant(sqlQuote(Variant("x"))), Variant("null")});
    EXPECT_EQ(schema->insertSQL(ordinary), "INSERT INTO t (a,b) VALUES ('x',null );");
    EXPECT_EQ(schema->updateSQL(ordinary, Variant(Long{3})), "UPDATE t SET a = 'x',b = null WHERE id = 3");
}

TEST_F(GuardedConnection, CommentsAreRefusedAndNothingRuns) {
    EXPECT_RAISES(con.Execute("UPDATE t SET a='x' -- WHERE b=2"), DatabaseError::SyntaxError);
    EXPECT_RAISES(con.Execute("UPDATE t SET a='x' /* WHERE b=2 */"), DatabaseError::SyntaxError);
    EXPECT_RAISES(con.Execute("/* note */ DELETE FROM t"), DatabaseError::SyntaxError);
    EXPECT_EQ(rows(), "kept=1;");
}

TEST_F(GuardedConnection, CommentMarksInsideTextsAreText) {
    con.Execute("INSERT INTO t VALUES ('-- not a comment /* nor this */', 2)");
    EXPECT_EQ(rows(), "kept=1;-- not a comment /* nor this */=2;");
}

TEST_F(GuardedConnection, AQuestionMarkOutsideQuotesIsAParameterWithoutValue) {
    EXPECT_RAISES(con.Execute("UPDATE t SET a='x' WHERE b=?"), DatabaseError::ParameterWithoutValue);
    EXPECT_RAISES(con.Execute("INSERT INTO t VALUES ('y', ?)"), DatabaseError::ParameterWithoutValue);
    con.Execute("INSERT INTO t VALUES ('a?b', 2)");
    EXPECT_EQ(rows(), "kept=1;a?b=2;");
}

TEST_F(GuardedConnection, ANulCharacterIsRefused) {
    EXPECT_RAISES(con.Execute(std::string("INSERT INTO t VALUES ('a\0b', 2)", 31)),
                  DatabaseError::SyntaxError);
    EXPECT_RAISES(con.Execute(std::string("DELETE FROM t\0 WHERE b=2", 24)), DatabaseError::SyntaxError);
    EXPECT_EQ(rows(), "kept=1;");
}

TEST_F(GuardedConnection, AnUnterminatedTextOrNameIsRefused) {
    EXPECT_RAISES(con.Execute("INSERT INTO t VALUES ('a'b', 2)"), DatabaseError::SyntaxError);
    EXPECT_RAISES(con.Execute("INSERT INTO t VALUES ('it''s"), DatabaseError::SyntaxError);
    EXPECT_RAISES(con.Execute("SELECT [a FROM t"), DatabaseError::SyntaxError);
    EXPECT_RAISES(con.Execute("SELECT \"a FROM t"), DatabaseError::SyntaxError);
    con.Execute("INSERT INTO t VALUES ('it''s', 2)");
    EXPECT_EQ(rows(), "kept=1;it's=2;");
}

TEST_F(GuardedConnection, ScriptsLoseTheirCommentsBeforeTheyRun) {
    runScript(
        con,
        "-- two rows\nINSERT INTO t VALUES ('a', 2); /* and one more */ INSERT INTO t VALUES ('b', 3);\n");
    EXPECT_EQ(rows(), "kept=1;a=2;b=3;");
}
