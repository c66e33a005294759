#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <fstream>
#include <map>
#include <regex>
#include <string>
#include <vector>

#include "ScratchDatabase.hpp"

using caudalis::testing::ScratchDatabase;
using caudalis::testing::TextRow;

namespace {

using Columns = std::vector<std::string>;

const char* const kProjectSchema = "data/schema/project.sql";
const char* const kCatalogueSchema = "data/schema/catalogue.sql";
const char* const kPipeMaterials = "data/sample/pipe-materials.sql";

std::string declaredType(ScratchDatabase& db, const std::string& table, const std::string& column) {
    const auto found =
        db.rows("SELECT type FROM pragma_table_info('" + table + "') WHERE name = '" + column + "'");
    return found.empty() ? "missing" : found.front().front();
}

bool isGeneratedKey(ScratchDatabase& db, const std::string& table, const std::string& column) {
    return db.integer("SELECT pk FROM pragma_table_info('" + table + "') WHERE name = '" + column + "'") ==
               1 &&
           declaredType(db, table, column) == "INTEGER";
}

std::vector<TextRow> everyRowOf(ScratchDatabase& db, const std::string& table) {
    return db.rows("SELECT * FROM " + table + " ORDER BY 1");
}

std::string lowerCase(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return text;
}

/// Tables of a schema file with their column declarations ("name type ..."), names in lower
/// case, read from the "CREATE TABLE IF NOT EXISTS name (" blocks.
std::map<std::string, std::vector<std::string>> declaredTables(const std::string& relativePath) {
    std::ifstream in(caudalis::testing::shippedFile(relativePath));
    const std::regex tableStart(R"(^CREATE TABLE IF NOT EXISTS (\w+) \($)");
    const std::regex column(R"(^\s+(\w+)\s+(.*?),?$)");
    std::map<std::string, std::vector<std::string>> tables;
    std::string line, current;
    std::smatch match;
    while (std::getline(in, line)) {
        if (std::regex_match(line, match, tableStart)) {
            current = lowerCase(match[1]);
        } else if (line.rfind(");", 0) == 0) {
            current.clear();
        } else if (!current.empty() && std::regex_match(line, match, column)) {
            tables[current].push_back(lowerCase(match[1]) + " " + lowerCase(match[2]));
        }
    }
    return tables;
}

/// Column names only, in order, of every table of a schema file.
std::map<std::string, std::vector<std::string>> declaredColumns(const std::string& relativePath) {
    auto tables = declaredTables(relativePath);
    for (auto& [table, columns] : tables) {
        for (auto& declaration : columns) {
            declaration = declaration.substr(0, declaration.find(' '));
        }
    }
    return tables;
}

class ProjectSchema : public ::testing::Test {
protected:
    void SetUp() override { db.load(kProjectSchema); }
    ScratchDatabase db;
};

class CatalogueSchema : public ::testing::Test {
protected:
    void SetUp() override { db.load(kCatalogueSchema); }
    ScratchDatabase db;
};

}  // namespace

TEST_F(ProjectSchema, HasEveryTableWithItsColumnsInOrder) {
    EXPECT_EQ(db.columnsOf("tb_cartas"), (Columns{"id_carta", "nome", "boost", "id_sistema"}));
    EXPECT_EQ(db.columnsOf("tb_aspersores"),
              (Columns{"id_aspersores", "tramo", "saida", "id_aspersor", "id_carta"}));
    EXPECT_EQ(db.columnsOf("tb_reguladores"),
              (Columns{"id_carta", "tramo", "pression", "caudal_max", "caudal_min", "installed"}));
    EXPECT_EQ(db.columnsOf("tb_indicadores"),
              (Columns{"id_indicadores", "id_carta", "numero_horas", "numero_obturadas"}));
    EXPECT_EQ(db.columnsOf("tb_pluviometria"), (Columns{"id_pluviometria", "id_carta", "distCentro1",
                                                        "distCentro2", "Dmoj1", "Dmoj2", "k", "a"}));
    EXPECT_EQ(db.columnsOf("tb_drop"),
              (Columns{"longitud", "diametro", "pipe_material_id", "installed", "carta_id"}));
    EXPECT_EQ(db.columnsOf("pipe_materials"), (Columns{"id", "name", "rugosidade"}));
    EXPECT_EQ(db.columnsOf("pivot_evaluations"),
              (Columns{"id", "name", "pluviometer_diameter", "first_samples", "second_samples"}));
}

TEST_F(ProjectSchema, GeneratedKeysAreIntegerPrimaryKeys) {
    EXPECT_TRUE(isGeneratedKey(db, "tb_cartas", "id_carta"));
    EXPECT_TRUE(isGeneratedKey(db, "tb_aspersores", "id_aspersores"));
    EXPECT_TRUE(isGeneratedKey(db, "tb_indicadores", "id_indicadores"));
    EXPECT_TRUE(isGeneratedKey(db, "tb_pluviometria", "id_pluviometria"));
    EXPECT_TRUE(isGeneratedKey(db, "pipe_materials", "id"));
    EXPECT_TRUE(isGeneratedKey(db, "pivot_evaluations", "id"));
    EXPECT_EQ(db.integer("SELECT count(*) FROM pragma_table_info('tb_drop') WHERE pk > 0"), 0);
    EXPECT_EQ(db.integer("SELECT count(*) FROM pragma_table_info('tb_reguladores') WHERE pk > 0"), 0);
}

TEST_F(ProjectSchema, ColumnTypesFitTheValuesWritten) {
    EXPECT_EQ(declaredType(db, "tb_cartas", "nome"), "TEXT");
    EXPECT_EQ(declaredType(db, "tb_cartas", "boost"), "REAL");
    EXPECT_EQ(declaredType(db, "tb_reguladores", "installed"), "INTEGER");
    EXPECT_EQ(declaredType(db, "tb_reguladores", "pression"), "REAL");
    EXPECT_EQ(declaredType(db, "tb_indicadores", "numero_horas"), "REAL");
    EXPECT_EQ(declaredType(db, "tb_indicadores", "numero_obturadas"), "INTEGER");
    EXPECT_EQ(declaredType(db, "tb_drop", "installed"), "INTEGER");
    EXPECT_EQ(declaredType(db, "tb_drop", "longitud"), "REAL");
    EXPECT_EQ(declaredType(db, "pipe_materials", "rugosidade"), "INTEGER");
    EXPECT_EQ(declaredType(db, "pivot_evaluations", "pluviometer_diameter"), "REAL");
    EXPECT_EQ(declaredType(db, "pivot_evaluations", "first_samples"), "TEXT");
}

TEST_F(ProjectSchema, OwnerColumnsAreIndexed) {
    const auto indexed = [this](const std::string& table, const std::string& column) {
        return db.integer("SELECT count(*) FROM pragma_index_list('" + table +
                          "') AS l, pragma_index_info(l.name) AS i WHERE i.name = '" + column + "'");
    };
    EXPECT_EQ(indexed("tb_cartas", "id_sistema"), 1);
    EXPECT_EQ(indexed("tb_aspersores", "id_carta"), 1);
    EXPECT_EQ(indexed("tb_reguladores", "id_carta"), 1);
    EXPECT_EQ(indexed("tb_indicadores", "id_carta"), 1);
    EXPECT_EQ(indexed("tb_pluviometria", "id_carta"), 1);
    EXPECT_EQ(indexed("tb_drop", "carta_id"), 1);
}

TEST_F(ProjectSchema, ChartNameIsRequiredButNeedNotBeUniqueWithinASystem) {
    EXPECT_NE(db.tryExecute("INSERT INTO tb_cartas (nome,boost,id_sistema) values( null,1.5, 7);"), "");
    db.execute("INSERT INTO tb_cartas (nome,boost,id_sistema) values( 'A',1.5, 7);");
    db.execute("INSERT INTO tb_cartas (nome,boost,id_sistema) values( 'A',null, 7);");
    EXPECT_EQ(db.integer("SELECT count(*) FROM tb_cartas WHERE nome='A' AND id_sistema=7"), 2);
}

TEST_F(ProjectSchema, GeneratedKeysAreNotReusedAfterADelete) {
    db.execute("INSERT INTO tb_cartas (nome,boost,id_sistema) values( 'A',0, 1);");
    db.execute("INSERT INTO tb_cartas (nome,boost,id_sistema) values( 'B',0, 1);");
    db.execute("DELETE FROM tb_cartas WHERE id_carta=2");
    db.execute("INSERT INTO tb_cartas (nome,boost,id_sistema) values( 'C',0, 1);");
    EXPECT_EQ(db.lastInsertedId(), 3);
}

TEST_F(ProjectSchema, LoadingTheSchemaAgainKeepsTheRows) {
    db.execute("INSERT INTO tb_cartas (nome,boost,id_sistema) values( 'A',2.5, 3);");
    db.execute(
        "INSERT INTO tb_drop (longitud,diametro,pipe_material_id,installed,carta_id) VALUES (1,2,3,1,1 );");
    const auto charts = everyRowOf(db, "tb_cartas");
    db.load(kProjectSchema);
    EXPECT_EQ(everyRowOf(db, "tb_cartas"), charts);
    EXPECT_EQ(everyRowOf(db, "tb_drop").size(), 1u);
}

TEST_F(ProjectSchema, PipeMaterialsLoadWithWholeNumberCoefficients) {
    db.load(kPipeMaterials);
    const auto materials = db.rows(
        "SELECT id, name, rugosidade, typeof(rugosidade) FROM pipe_materials "
        "ORDER BY id asc");
    ASSERT_EQ(materials.size(), 5u);
    const std::vector<TextRow> expected{{"1", "PVC", "150", "integer"},
                                        {"2", "Polyethylene", "140", "integer"},
                                        {"3", "Rubber hose", "135", "integer"},
                                        {"4", "Aluminium", "130", "integer"},
                                        {"5", "Galvanised steel", "120", "integer"}};
    EXPECT_EQ(materials, expected);
}

TEST_F(ProjectSchema, PipeMaterialsLoadedTwiceAreNotDuplicated) {
    db.load(kPipeMaterials);
    const auto once = everyRowOf(db, "pipe_materials");
    db.load(kPipeMaterials);
    EXPECT_EQ(everyRowOf(db, "pipe_materials"), once);
}

TEST_F(CatalogueSchema, HasEveryTableWithItsColumnsInOrder) {
    EXPECT_EQ(db.columnsOf("marca"), (Columns{"id_marca", "nome"}));
    EXPECT_EQ(db.columnsOf("Modelos"), (Columns{"id_modelo", "id_marca", "modelo"}));
    EXPECT_EQ(db.columnsOf("Boquillas"), (Columns{"ID_Boquillas", "denominacion", "a", "b", "pmin", "pmax",
                                                  "qmin", "qmax", "id_modelo"}));
    EXPECT_EQ(db.columnsOf("model_wetted_diameters"), (Columns{"id_modelo", "wetted_diameter_m"}));
}

TEST_F(CatalogueSchema, AModelHasAtMostOneWettedDiameter) {
    db.execute("INSERT INTO model_wetted_diameters (id_modelo, wetted_diameter_m) VALUES (1, 14.5);");
    EXPECT_NE(
        db.tryExecute("INSERT INTO model_wetted_diameters (id_modelo, wetted_diameter_m) VALUES (1, 9);"),
        "");
    EXPECT_EQ(declaredType(db, "model_wetted_diameters", "wetted_diameter_m"), "REAL");
}

TEST_F(CatalogueSchema, GeneratedKeysAndNumericColumns) {
    EXPECT_TRUE(isGeneratedKey(db, "marca", "id_marca"));
    EXPECT_TRUE(isGeneratedKey(db, "Modelos", "id_modelo"));
    EXPECT_TRUE(isGeneratedKey(db, "Boquillas", "ID_Boquillas"));
    for (const char* column : {"a", "b", "pmin", "pmax", "qmin", "qmax"}) {
        EXPECT_EQ(declaredType(db, "Boquillas", column), "REAL") << column;
    }
}

TEST_F(CatalogueSchema, TableNamesMatchWithoutRegardToCase) {
    EXPECT_EQ(db.columnsOf("MARCA"), db.columnsOf("marca"));
    EXPECT_EQ(db.columnsOf("modelos"), db.columnsOf("Modelos"));
    EXPECT_EQ(db.columnsOf("boquillas"), db.columnsOf("Boquillas"));
}

TEST_F(CatalogueSchema, LoadingTheSchemaAgainKeepsTheRows) {
    db.execute("INSERT INTO marca (nome) VALUES ('A');");
    db.load(kCatalogueSchema);
    EXPECT_EQ(everyRowOf(db, "marca"), (std::vector<TextRow>{{"1", "A"}}));
}

TEST(SchemaFiles, EverySchemaFileLoadsIntoAnEmptyDatabase) {
    for (const char* file : {kProjectSchema, kCatalogueSchema}) {
        ScratchDatabase db;
        EXPECT_EQ(db.tryExecute("SELECT 1"), "");
        db.load(file);
        EXPECT_GT(db.integer("SELECT count(*) FROM sqlite_master WHERE type = 'table'"), 0) << file;
    }
}

TEST(SchemaFiles, PostgreSqlSchemasDeclareTheSameTablesAndColumns) {
    const auto project = declaredColumns(kProjectSchema);
    EXPECT_EQ(project.size(), 12u);
    EXPECT_EQ(declaredColumns("data/schema/project-postgresql.sql"), project);
    const auto catalogue = declaredColumns(kCatalogueSchema);
    EXPECT_EQ(catalogue.size(), 4u);
    EXPECT_EQ(declaredColumns("data/schema/catalogue-postgresql.sql"), catalogue);
}

TEST(SchemaFiles, PostgreSqlSchemasUseIdentityKeysBooleansAndDoubles) {
    auto tables = declaredTables("data/schema/project-postgresql.sql");
    const auto catalogue = declaredTables("data/schema/catalogue-postgresql.sql");
    tables.insert(catalogue.begin(), catalogue.end());
    const auto sqlite = declaredTables(kProjectSchema);
    int keys = 0;
    for (const auto& [table, columns] : tables) {
        for (const auto& declaration : columns) {
            const bool isKey = declaration.find("primary key") != std::string::npos;
            keys += isKey ? 1 : 0;
            EXPECT_TRUE(!isKey || declaration.find("integer generated by default as identity primary key") !=
                                      std::string::npos)
                << declaration;
            EXPECT_EQ(declaration.find("real"), std::string::npos) << declaration;
        }
    }
    EXPECT_EQ(keys, 10);
    EXPECT_EQ(tables["tb_reguladores"].back(), "installed boolean");
    EXPECT_EQ(tables["tb_drop"][3], "installed boolean");
    EXPECT_EQ(tables["tb_cartas"][2], "boost double precision");
    EXPECT_EQ(sqlite.at("tb_cartas")[2], "boost real");
}
