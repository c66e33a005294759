#include <gtest/gtest.h>

#include "ErrorMatchers.hpp"
#include "TemporaryFolder.hpp"
#include "caudalis/db/Connection.hpp"
#include "caudalis/db/SqlText.hpp"
#include "caudalis/db/TableSchema.hpp"

using namespace caudalis;
namespace rt = caudalis::RuntimeError;

namespace {

std::shared_ptr<TableSchema> pipeMaterials() {
    return makeTableSchema("pipe_materials", BoundedArray<Variant>::of({"name", "rugosidade"}), "id");
}

const BoundedArray<Variant> pvcValues = BoundedArray<Variant>::of({"'PVC'", "150"});

}  // namespace

TEST(TableSchema, SelectWithoutArguments) {
    EXPECT_EQ(pipeMaterials()->selectSQL(), "SELECT * FROM pipe_materials;");
}

TEST(TableSchema, SelectById) {
    EXPECT_EQ(pipeMaterials()->selectSQL(Variant(Long{3})), "SELECT * FROM pipe_materials WHERE id = 3;");
}

TEST(TableSchema, SelectWithSelectionConditionAndOrder) {
    EXPECT_EQ(pipeMaterials()->selectSQL(std::nullopt, BoundedArray<Variant>::of({"name"}),
                                         Variant("rugosidade>100"), Variant("id asc")),
              "SELECT id,name FROM pipe_materials WHERE rugosidade>100 ORDER BY id asc;");
}

TEST(TableSchema, SelectWithIdAndConditionPutsTheKeyTestFirst) {
    EXPECT_EQ(pipeMaterials()->selectSQL(Variant(Long{3}), std::nullopt, Variant("a=1 OR b=2")),
              "SELECT * FROM pipe_materials WHERE id = 3 AND a=1 OR b=2;");
}

TEST(TableSchema, SelectWithOnlyAnOrder) {
    EXPECT_EQ(pipeMaterials()->selectSQL(std::nullopt, std::nullopt, std::nullopt, Variant("id asc")),
              "SELECT * FROM pipe_materials ORDER BY id asc;");
}

TEST(TableSchema, EmptyTextsCountAsGiven) {
    const auto schema = pipeMaterials();
    EXPECT_EQ(schema->selectSQL(Variant(""), std::nullopt, Variant(""), Variant("")),
              "SELECT * FROM pipe_materials WHERE id =  AND  ORDER BY ;");
    EXPECT_EQ(schema->countSQL(Variant("")), "SELECT Count(id) as result FROM pipe_materials WHERE ");
    EXPECT_EQ(schema->deleteSQL(std::nullopt, Variant("")), "DELETE FROM pipe_materials WHERE ");
}

TEST(TableSchema, CountWithoutAndWithCondition) {
    EXPECT_EQ(pipeMaterials()->countSQL(), "SELECT Count(id) as result FROM pipe_materials");
    EXPECT_EQ(pipeMaterials()->countSQL(Variant("name='x'")),
              "SELECT Count(id) as result FROM pipe_materials WHERE name='x'");
}

TEST(TableSchema, DeleteByIdAndCondition) {
    EXPECT_EQ(pipeMaterials()->deleteSQL(Variant(Long{7}), Variant("name='x'")),
              "DELETE FROM pipe_materials WHERE id = 7 AND name='x'");
}

TEST(TableSchema, DeleteWithoutArgumentsDeletesEveryRow) {
    EXPECT_EQ(pipeMaterials()->deleteSQL(), "DELETE FROM pipe_materials");
}

TEST(TableSchema, InsertUsesTheColumnsAndASpaceBeforeTheEnd) {
    EXPECT_EQ(pipeMaterials()->insertSQL(pvcValues),
              "INSERT INTO pipe_materials (name,rugosidade) VALUES ('PVC',150 );");
}

TEST(TableSchema, InsertWithFieldsUsesThoseFields) {
    EXPECT_EQ(pipeMaterials()->insertSQL(BoundedArray<Variant>::of({"9", "'PE'"}),
                                         BoundedArray<Variant>::of({"id", "name"})),
              "INSERT INTO pipe_materials (id,name) VALUES (9,'PE' );");
}

TEST(TableSchema, Update) {
    EXPECT_EQ(pipeMaterials()->updateSQL(pvcValues, Variant(Long{7})),
              "UPDATE pipe_materials SET name = 'PVC',rugosidade = 150 WHERE id = 7");
}

TEST(TableSchema, UpdateReadsValuesAtTheColumnsIndexes) {
    const auto schema = makeTableSchema("t", BoundedArray<Variant>::of({"a", "b"}, 0), "id");
    EXPECT_EQ(schema->updateSQL(BoundedArray<Variant>::of({"1", "2", "3"}, 0), Variant("5")),
              "UPDATE t SET a = 1,b = 2 WHERE id = 5");
    EXPECT_RAISES(schema->updateSQL(pvcValues, Variant("5")), rt::SubscriptOutOfRange);
}

TEST(TableSchema, UpdateWithTooFewValuesRaises9) {
    EXPECT_RAISES(pipeMaterials()->updateSQL(BoundedArray<Variant>::of({"'PVC'"}), Variant(Long{7})),
                  rt::SubscriptOutOfRange);
}

TEST(TableSchema, UpdateCounterIsSixteenBits) {
    BoundedArray<Variant> columns(32767, 32767);
    columns(32767) = "a";
    BoundedArray<Variant> values(32767, 32767);
    values(32767) = "1";
    EXPECT_RAISES(makeTableSchema("t", columns, "id")->updateSQL(values, Variant("1")), rt::Overflow);
}

TEST(TableSchema, CopyDataText) {
    EXPECT_EQ(pipeMaterials()->copyDataSQL(1, 2),
              "INSERT INTO pipe_materials(name,rugosidade,id) SELECT name,rugosidade,2 FROM  pipe_materials "
              "WHERE id=1;");
    EXPECT_EQ(pipeMaterials()->copyDataSQL(-1, -20),
              "INSERT INTO pipe_materials(name,rugosidade,id) SELECT name,rugosidade,-20 FROM  "
              "pipe_materials WHERE id=-1;");
}

TEST(TableSchema, BeforeInitColumnsAreATypeMismatch) {
    TableSchema schema;
    EXPECT_EQ(schema.selectSQL(), "SELECT * FROM ;");
    EXPECT_EQ(schema.deleteSQL(), "DELETE FROM ");
    EXPECT_RAISES(schema.insertSQL(pvcValues), rt::TypeMismatch);
    EXPECT_RAISES(schema.updateSQL(pvcValues, Variant("1")), rt::TypeMismatch);
    EXPECT_RAISES(schema.copyDataSQL(1, 2), rt::TypeMismatch);
    EXPECT_EQ(schema.insertSQL(pvcValues, BoundedArray<Variant>::of({"x", "y"})),
              "INSERT INTO  (x,y) VALUES ('PVC',150 );");
}

TEST(TableSchema, NullValueRaises94) {
    EXPECT_RAISES(pipeMaterials()->insertSQL(BoundedArray<Variant>::of({Variant::null(), "1"})),
                  rt::InvalidUseOfNull);
}

TEST(TableSchema, InitReplacesTheDescription) {
    const auto schema = pipeMaterials();
    schema->init("tb_drop", BoundedArray<Variant>::of({"longitud", "carta_id"}), "carta_id");
    EXPECT_EQ(schema->selectSQL(std::nullopt, std::nullopt, Variant("carta_id=4")),
              "SELECT * FROM tb_drop WHERE carta_id=4;");
}

class TableSchemaCopy : public ::testing::Test {
protected:
    void SetUp() override {
        con.Open("Provider=SQLite;Data Source=" + folder.file("copy.db"));
        con.Execute(
            "CREATE TABLE pipe_materials (row_id INTEGER PRIMARY KEY, id INTEGER, name TEXT, rugosidade "
            "INTEGER)");
        con.Execute("INSERT INTO pipe_materials (id,name,rugosidade) VALUES (1,'PVC',150)");
        con.Execute("INSERT INTO pipe_materials (id,name,rugosidade) VALUES (1,'PE',140)");
        con.Execute("INSERT INTO pipe_materials (id,name,rugosidade) VALUES (3,'Steel',120)");
    }

    Long countWhere(const std::string& condition) {
        return con.Execute(pipeMaterials()->countSQL(Variant(condition)))->Fields("result").toLong();
    }

    caudalis::testing::TemporaryFolder folder;
    Connection con;
};

TEST_F(TableSchemaCopy, CopiesEveryRowOfTheKeyWithTheDataUnchanged) {
    pipeMaterials()->copyData(con, 1, 2);
    EXPECT_EQ(countWhere("id=1"), 2);
    EXPECT_EQ(countWhere("id=2"), 2);
    EXPECT_EQ(countWhere("id=2 AND name='PVC' AND rugosidade=150"), 1);
    EXPECT_EQ(countWhere("id=2 AND name='PE' AND rugosidade=140"), 1);
    EXPECT_EQ(countWhere("id=3"), 1);
}

TEST_F(TableSchemaCopy, CopyOfAKeyWithoutRowsAddsNothing) {
    pipeMaterials()->copyData(con, 9, 2);
    EXPECT_EQ(countWhere("1=1"), 3);
}

TEST_F(TableSchemaCopy, CopyPassesEngineErrorsOn) {
    const auto schema = makeTableSchema("missing_table", BoundedArray<Variant>::of({"a"}), "id");
    EXPECT_RAISES(schema->copyData(con, 1, 2), rt::DatabaseEngine);
}

TEST_F(TableSchemaCopy, StatementsRunOnTheEngine) {
    const auto schema = pipeMaterials();
    con.Execute(schema->insertSQL(BoundedArray<Variant>::of({"4", "'Iron'", "100"}),
                                  BoundedArray<Variant>::of({"id", "name", "rugosidade"})));
    con.Execute(
        schema->updateSQL(BoundedArray<Variant>::of({"'Cast iron'", sqlDouble(110.0)}), Variant(Long{4})));
    const auto rs =
        con.Execute(schema->selectSQL(Variant(Long{4}), BoundedArray<Variant>::of({"name", "rugosidade"})));
    ASSERT_FALSE(rs->EOF_());
    EXPECT_EQ(rs->Fields("id").toLong(), 4);
    EXPECT_EQ(rs->Fields("name").toString(), "Cast iron");
    EXPECT_EQ(rs->Fields("rugosidade").toLong(), 110);
    con.Execute(schema->deleteSQL(Variant(Long{4})));
    EXPECT_EQ(countWhere("id=4"), 0);
}
