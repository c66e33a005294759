#include <gtest/gtest.h>

#include <memory>

#include "ErrorMatchers.hpp"
#include "LocaleGuard.hpp"
#include "TemporaryFolder.hpp"
#include "caudalis/core/Records.hpp"
#include "caudalis/db/Connection.hpp"
#include "caudalis/db/SqlText.hpp"

using namespace caudalis;
using caudalis::testing::DecimalSeparatorGuard;
namespace rt = caudalis::RuntimeError;

namespace {

BoundedArray<Variant> zeroBased(std::initializer_list<Variant> items) {
    return BoundedArray<Variant>::of(items, 0);
}

/// An object that exposes its key through an accessor, as charts do.
class Keyed {
public:
    explicit Keyed(Long id) : id_(id) {}
    Long id() const { return id_; }

private:
    Long id_;
};

}  // namespace

TEST(SubstituteParams, FillsMarkAndWritesTheTextBack) {
    std::string sql = "INSERT INTO marca (nome) VALUES (?);";
    EXPECT_EQ(substituteParams(sql, BoundedArray<Variant>::of({"'A'"})),
              "INSERT INTO marca (nome) VALUES ('A');");
    EXPECT_EQ(sql, "INSERT INTO marca (nome) VALUES ('A');");
}

TEST(SubstituteParams, MarkBroughtInByAValueIsTakenByTheNextValue) {
    std::string sql = "? ?";
    EXPECT_EQ(substituteParams(sql, BoundedArray<Variant>::of({"?", "x"})), "x ?");
    EXPECT_EQ(sql, "x ?");
}

TEST(SubstituteParams, ExtraValuesAreIgnoredAndExtraMarksStay) {
    std::string fewer = "VALUES (?,?,?);";
    EXPECT_EQ(substituteParams(fewer, BoundedArray<Variant>::of({Long{1}})), "VALUES (1,?,?);");
    std::string more = "id=?";
    EXPECT_EQ(substituteParams(more, BoundedArray<Variant>::of({Long{4}, Long{5}})), "id=4");
}

TEST(SubstituteParams, TemplateQuotedMarksTakeRawText) {
    std::string sql = "marca.nome='?'";
    EXPECT_EQ(substituteParams(sql, BoundedArray<Variant>::of({"Nelson"})), "marca.nome='Nelson'");
}

TEST(SubstituteParams, NumbersAreWrittenInTheLocaleForm) {
    DecimalSeparatorGuard comma(',');
    std::string sql = "?";
    EXPECT_EQ(substituteParams(sql, BoundedArray<Variant>::of({1.5})), "1,5");
}

TEST(SubstituteParams, UnallocatedParametersLeaveTheText) {
    std::string sql = "SELECT ?";
    EXPECT_EQ(substituteParams(sql, BoundedArray<Variant>()), "SELECT ?");
}

TEST(SubstituteParams, NullRaises94AndLeavesTheCallersText) {
    std::string sql = "VALUES (?,?);";
    EXPECT_RAISES(substituteParams(sql, BoundedArray<Variant>::of({"1", Variant::null()})),
                  rt::InvalidUseOfNull);
    EXPECT_EQ(sql, "VALUES (?,?);");
}

TEST(InnerJoin, NestsEveryJoinInnermostFirst) {
    const auto tables = zeroBased({"Boquillas AS b", "Modelos ON b.id_modelo=modelos.id_modelo",
                                   "Marca ON modelos.id_marca=marca.id_marca"});
    EXPECT_EQ(innerJoin(tables),
              "((Boquillas AS b INNER JOIN Modelos ON b.id_modelo=modelos.id_modelo) INNER JOIN Marca ON "
              "modelos.id_marca=marca.id_marca)");
}

TEST(InnerJoin, OneElementGivesTheElementWithoutParentheses) {
    EXPECT_EQ(innerJoin(zeroBased({"Modelos"})), "Modelos");
}

TEST(InnerJoin, LastIndexLimitsTheJoin) {
    const auto tables = zeroBased({"A", "B ON x", "C ON y"});
    EXPECT_EQ(innerJoin(tables, 1), "(A INNER JOIN B ON x)");
    EXPECT_EQ(innerJoin(tables, 0), "A");
}

TEST(InnerJoin, IndexBeyondTheArrayRaises9) {
    EXPECT_RAISES(innerJoin(zeroBased({"A", "B"}), 2), rt::SubscriptOutOfRange);
}

TEST(InnerJoin, ArrayNotStartingAtZeroRaises9) {
    EXPECT_RAISES(innerJoin(BoundedArray<Variant>::of({"A", "B"})), rt::SubscriptOutOfRange);
}

TEST(InnerJoin, EmptyArrayRaises9) {
    EXPECT_RAISES(innerJoin(BoundedArray<Variant>()), rt::SubscriptOutOfRange);
}

TEST(InnerJoin, IndexBelowMinusOneOverflows) {
    EXPECT_RAISES(innerJoin(zeroBased({"A"}), -2), rt::Overflow);
}

TEST(InnerJoin, TrueAsIndexMeansTheWholeArray) {
    const auto tables = zeroBased({"A", "B ON x"});
    EXPECT_EQ(innerJoin(tables, Variant(true).toInteger()), "(A INNER JOIN B ON x)");
}

TEST(SqlDouble, UsesPointWithThePointLocale) {
    EXPECT_EQ(sqlDouble(1.5), "1.5");
    EXPECT_EQ(sqlDouble(-0.25), "-0.25");
    EXPECT_EQ(sqlDouble(150.0), "150");
    EXPECT_EQ(sqlDouble(1.0 / 3.0), "0.333333333333333");
    EXPECT_EQ(decimalSeparator(), ".");
}

TEST(SqlDouble, UsesPointWithTheCommaLocale) {
    DecimalSeparatorGuard comma(',');
    EXPECT_EQ(sqlDouble(1.5), "1.5");
    EXPECT_EQ(sqlDouble(-1234.125), "-1234.125");
    EXPECT_EQ(sqlDouble(2.5e-7), "2.5E-07");
    EXPECT_EQ(decimalSeparator(), ",");
}

TEST(SqlBoolean, WritesTrueOrFalse) {
    EXPECT_EQ(sqlBoolean(true), "true");
    EXPECT_EQ(sqlBoolean(false), "false");
    EXPECT_EQ(sqlBoolean(Long{-1}), "true");
    EXPECT_EQ(sqlBoolean(Integer{0}), "false");
    EXPECT_EQ(sqlBoolean(Variant()), "false");
    EXPECT_RAISES(sqlBoolean(Variant::null()), rt::InvalidUseOfNull);
    EXPECT_RAISES(sqlBoolean("abc"), rt::TypeMismatch);
}

TEST(SqlQuote, DoesNotDoubleEmbeddedQuotes) {
    EXPECT_EQ(sqlQuote("a'b"), "'a'b'");
    EXPECT_EQ(sqlQuote(""), "''");
    EXPECT_EQ(sqlQuote(Long{12}), "'12'");
    EXPECT_RAISES(sqlQuote(Variant::null()), rt::InvalidUseOfNull);
}

TEST(SqlDate, PutsTheTextBetweenHashes) {
    EXPECT_EQ(sqlDate("2024-03-01"), "#2024-03-01#");
    EXPECT_EQ(sqlDate(""), "##");
}

TEST(NullIf, GivesNullOnlyWhenTheConditionHolds) {
    EXPECT_EQ(nullIf(true, Long{5}), "null");
    EXPECT_EQ(nullIf(false, Long{5}), "5");
    EXPECT_EQ(nullIf(false, "x"), "x");
    EXPECT_RAISES(nullIf(Variant::null(), "x"), rt::InvalidUseOfNull);
}

TEST(EmptyLiteralToNull, OnlyTheTwoEmptyLiteralsBecomeNull) {
    EXPECT_EQ(emptyLiteralToNull(sqlQuote("")), "null");
    EXPECT_EQ(emptyLiteralToNull(sqlDate("")), "null");
    EXPECT_EQ(emptyLiteralToNull("' '"), "' '");
    EXPECT_EQ(emptyLiteralToNull("'a'"), "'a'");
    EXPECT_EQ(emptyLiteralToNull(""), "");
}

TEST(ZeroToNull, ZeroEmptyAndNonNumericTextGiveNull) {
    EXPECT_EQ(zeroToNull(Integer{0}), "null");
    EXPECT_EQ(zeroToNull(0.0), "null");
    EXPECT_EQ(zeroToNull(""), "null");
    EXPECT_EQ(zeroToNull("abc"), "null");
    EXPECT_EQ(zeroToNull("0"), "null");
    EXPECT_EQ(zeroToNull(Variant()), "null");
}

TEST(ZeroToNull, OtherNumbersGiveTheirText) {
    EXPECT_EQ(zeroToNull(0.5), "0.5");
    EXPECT_EQ(zeroToNull(Long{-3}), "-3");
    EXPECT_EQ(zeroToNull("12abc"), "12abc");
    EXPECT_EQ(zeroToNull(sqlDouble(2.5)), "2.5");
}

TEST(ZeroToNull, FractionBelowOneIsNullWithTheCommaLocale) {
    DecimalSeparatorGuard comma(',');
    EXPECT_EQ(zeroToNull(0.5), "null");
    EXPECT_EQ(zeroToNull(1.5), "1,5");
    EXPECT_EQ(zeroToNull(sqlDouble(0.5)), "0.5");
}

TEST(ZeroToNull, NullRaises94) {
    EXPECT_RAISES(zeroToNull(Variant::null()), rt::InvalidUseOfNull);
}

TEST(NullToZero, NullBecomesIntegerZeroAndOtherValuesStay) {
    const Variant zero = nullToZero(Variant::null());
    EXPECT_EQ(zero.type(), Variant::Type::Integer);
    EXPECT_EQ(zero.toInteger(), 0);
    EXPECT_EQ(nullToZero(2.5).toDouble(), 2.5);
    EXPECT_EQ(nullToZero("x").toString(), "x");
    EXPECT_TRUE(nullToZero(Variant()).isEmpty());
}

TEST(NullToEmpty, NullBecomesEmptyText) {
    EXPECT_EQ(nullToEmpty(Variant::null()), "");
    EXPECT_EQ(nullToEmpty("abc"), "abc");
    EXPECT_EQ(nullToEmpty(Long{7}), "7");
}

TEST(IsBlank, OnlyBlanksCountAsBlank) {
    EXPECT_TRUE(isBlank(""));
    EXPECT_TRUE(isBlank("   "));
    EXPECT_FALSE(isBlank(" a "));
}

TEST(IsNewRecord, ReadsTheIdMemberOfARecord) {
    PivotEvaluation evaluation;
    EXPECT_TRUE(isNewRecord(evaluation));
    evaluation.id = 1;
    EXPECT_FALSE(isNewRecord(evaluation));
    evaluation.id = -4;
    EXPECT_TRUE(isNewRecord(evaluation));
}

TEST(IsNewRecord, ReadsTheIdAccessorOfAnObject) {
    EXPECT_TRUE(isNewRecord(Keyed(0)));
    EXPECT_FALSE(isNewRecord(Keyed(1)));
    EXPECT_TRUE(isNewRecord(std::make_shared<Keyed>(0)));
    EXPECT_FALSE(isNewRecord(std::make_shared<Keyed>(1)));
}

TEST(IsNewRecord, VariantKeysAreComparedAsNumbersAndNullRaises) {
    struct VariantKeyed {
        Variant id;
    };
    EXPECT_TRUE(isNewRecord(VariantKeyed{Variant(0.0)}));
    EXPECT_FALSE(isNewRecord(VariantKeyed{Variant(Long{9})}));
    EXPECT_RAISES(isNewRecord(VariantKeyed{Variant::null()}), rt::InvalidUseOfNull);
}

TEST(LastIdentity, GivesTheKeyOfTheLastInsertOnTheConnection) {
    caudalis::testing::TemporaryFolder folder;
    Connection con("Provider=SQLite;Data Source=" + folder.file("identity.db"));
    con.Open();
    con.Execute("CREATE TABLE marca (id_marca INTEGER PRIMARY KEY AUTOINCREMENT, nome TEXT)");
    EXPECT_EQ(lastIdentity(con).toLong(), 0);
    con.Execute("INSERT INTO marca (nome) VALUES ('A');");
    EXPECT_EQ(lastIdentity(con).toLong(), 1);
    con.Execute("INSERT INTO marca (nome) VALUES ('B');");
    const Variant id = lastIdentity(con);
    EXPECT_EQ(id.type(), Variant::Type::Long);
    EXPECT_EQ(id.toLong(), 2);
    con.Execute("SELECT * FROM marca;");
    EXPECT_EQ(lastIdentity(con).toLong(), 2);
}

TEST(LastIdentity, IsPerConnection) {
    caudalis::testing::TemporaryFolder folder;
    const std::string file = folder.file("shared.db");
    Connection first(file);
    first.Open();
    first.Execute("CREATE TABLE t (id INTEGER PRIMARY KEY, v TEXT)");
    first.Execute("INSERT INTO t (v) VALUES ('a')");
    Connection second(file);
    second.Open();
    second.Execute("INSERT INTO t (v) VALUES ('b')");
    second.Execute("INSERT INTO t (v) VALUES ('c')");
    EXPECT_EQ(lastIdentity(first).toLong(), 1);
    EXPECT_EQ(lastIdentity(second).toLong(), 3);
}
