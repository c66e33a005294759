// Runs the statement sequences with which the library writes and reads its databases against
// the shipped schemas. The texts are those the library builds, with the two dialect features
// the SQLite layer adapts written the SQLite way: the last generated key is read with
// last_insert_rowid(), and the catalogue is attached under a schema name instead of being
// named by its path.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "ScratchDatabase.hpp"

using caudalis::testing::ScratchDatabase;
using caudalis::testing::TextRow;

namespace {

const char* const kLastIdentity = "Select last_insert_rowid() as id;";

class ProjectStatements : public ::testing::Test {
protected:
    void SetUp() override {
        db.load("data/schema/project.sql");
        db.load("data/sample/pipe-materials.sql");
    }

    /// The statements of a save of a new chart named `name` of system 7; returns its id.
    std::string insertChart(const std::string& name) {
        db.execute("BEGIN TRANSACTION;");
        EXPECT_EQ(db.integer("SELECT COUNT(*) as numero_existentes_con_este_id FROM tb_cartas where "
                             "id_carta=0 AND id_sistema=7;"),
                  0);
        EXPECT_EQ(db.integer("SELECT count(*) as numero_cartas_com_mesmo_nome FROM tb_cartas WHERE "
                             "id_sistema=7  AND nome='" +
                             name + "';"),
                  0);
        db.execute("INSERT INTO tb_cartas (nome,boost,id_sistema) values( '" + name + "',1.5, 7);");
        const auto id =
            db.integer("SELECT id_carta FROM tb_cartas  WHERE nome='" + name + "' AND id_sistema=7;");
        return std::to_string(id);
    }

    /// The statements that rewrite a chart's child rows, ending the transaction.
    void saveContents(const std::string& id) {
        db.execute("DELETE FROM tb_aspersores WHERE id_carta=" + id + ";");
        db.execute("INSERT INTO tb_aspersores (tramo,saida,id_aspersor,id_carta) values (1,1,5," + id + ");");
        db.execute("INSERT INTO tb_aspersores (tramo,saida,id_aspersor,id_carta) values (1,2,7," + id + ");");
        db.execute("DELETE FROM tb_indicadores WHERE id_carta=" + id + ";");
        db.execute("INSERT INTO tb_indicadores (id_carta ,numero_horas,numero_obturadas) values (" + id +
                   ",22.5,3);");
        db.execute("DELETE FROM tb_pluviometria WHERE id_carta=" + id + ";");
        db.execute("INSERT INTO tb_pluviometria (id_carta,distCentro1,distCentro2,Dmoj1,Dmoj2,k,a) values (" +
                   id + ",100.5,300,25.5,30,0.8,12.25);");
        db.execute("DELETE FROM tb_reguladores WHERE id_carta=" + id);
        db.execute(
            "INSERT INTO tb_reguladores (id_carta,tramo,pression,caudal_max,caudal_min,installed) "
            "VALUES (" +
            id + ",2,103.4,1.2,0.1,true);");
        db.execute("DELETE FROM tb_drop WHERE carta_id=" + id);
        db.execute(
            "INSERT INTO tb_drop (longitud,diametro,pipe_material_id,installed,carta_id) VALUES "
            "(2.5,19,2,false," +
            id + " );");
        db.execute("COMMIT;");
    }

    std::size_t rowsOfChart(const std::string& table, const std::string& id) {
        const std::string key = table == "tb_drop" ? "carta_id" : "id_carta";
        return db.rows("SELECT * FROM " + table + " WHERE " + key + "=" + id).size();
    }

    ScratchDatabase db{"project.db"};
};

}  // namespace

TEST_F(ProjectStatements, SavingANewChartWritesEveryTable) {
    const auto id = insertChart("Norte");
    EXPECT_EQ(id, "1");
    saveContents(id);
    EXPECT_EQ(db.rows("SELECT nome,boost from tb_cartas WHERE id_carta=1;"),
              (std::vector<TextRow>{{"Norte", "1.5"}}));
    EXPECT_EQ(
        db.rows("SELECT id_indicadores,numero_horas,numero_obturadas FROM tb_indicadores WHERE id_carta=1;"),
        (std::vector<TextRow>{{"1", "22.5", "3"}}));
    EXPECT_EQ(db.rows("SELECT id_pluviometria,distCentro1,distCentro2,Dmoj1,Dmoj2,k,a FROM tb_Pluviometria "
                      "WHERE id_carta=1;"),
              (std::vector<TextRow>{{"1", "100.5", "300.0", "25.5", "30.0", "0.8", "12.25"}}));
    EXPECT_EQ(
        db.rows(
            "SELECT tramo,pression,caudal_max,caudal_min,installed FROM tb_reguladores WHERE id_carta=1;"),
        (std::vector<TextRow>{{"2", "103.4", "1.2", "0.1", "1"}}));
    EXPECT_EQ(db.rows("SELECT * FROM tb_drop WHERE carta_id=1;"),
              (std::vector<TextRow>{{"2.5", "19.0", "2", "0", "1"}}));
    EXPECT_EQ(db.rows("SELECT * FROM pipe_materials WHERE id = 2;"),
              (std::vector<TextRow>{{"2", "Polyethylene", "140"}}));
}

TEST_F(ProjectStatements, SavingTwiceLeavesOneRowPerSprinklerAndOneIndicatorAndPluviometryRow) {
    const auto id = insertChart("Norte");
    saveContents(id);
    db.execute("BEGIN TRANSACTION;");
    EXPECT_EQ(db.integer("SELECT COUNT(*) as numero_existentes_con_este_id FROM tb_cartas where id_carta=" +
                         id + " AND id_sistema=7;"),
              1);
    db.execute("UPDATE tb_cartas set nome='Norte', boost=2.5  WHERE id_sistema=7 AND id_carta = " + id);
    saveContents(id);
    EXPECT_EQ(rowsOfChart("tb_aspersores", id), 2u);
    EXPECT_EQ(rowsOfChart("tb_indicadores", id), 1u);
    EXPECT_EQ(rowsOfChart("tb_pluviometria", id), 1u);
    EXPECT_EQ(rowsOfChart("tb_reguladores", id), 1u);
    EXPECT_EQ(rowsOfChart("tb_drop", id), 1u);
    EXPECT_EQ(db.integer("SELECT max(id_aspersores) FROM tb_aspersores"), 4);
}

TEST_F(ProjectStatements, RenamingAChartToTheNameOfAnotherChartOfTheSystemIsAccepted) {
    saveContents(insertChart("Norte"));
    saveContents(insertChart("Sul"));
    db.execute("UPDATE tb_cartas set nome='Norte', boost=0  WHERE id_sistema=7 AND id_carta = 2");
    EXPECT_EQ(db.rows("SELECT nome,id_carta FROM tb_cartas WHERE id_sistema=7;"),
              (std::vector<TextRow>{{"Norte", "1"}, {"Norte", "2"}}));
}

TEST_F(ProjectStatements, ARolledBackInsertionLeavesNothing) {
    insertChart("Norte");
    db.execute("ROLLBACK;");
    EXPECT_EQ(db.integer("SELECT count(*) as result FROM tb_cartas WHERE id_sistema=7"), 0);
}

TEST_F(ProjectStatements, ANullBoostIsStored) {
    db.execute("INSERT INTO tb_cartas (nome,boost,id_sistema) values( 'Norte',null, 7);");
    EXPECT_EQ(db.rows("SELECT nome,boost from tb_cartas WHERE id_carta=1;"),
              (std::vector<TextRow>{{"Norte", "NULL"}}));
}

TEST_F(ProjectStatements, DestroyingAChartRemovesItsRowsOnly) {
    saveContents(insertChart("Norte"));
    saveContents(insertChart("Sul"));
    db.execute("BEGIN TRANSACTION;");
    for (const char* table : {"tb_indicadores", "tb_pluviometria", "tb_reguladores", "tb_aspersores"}) {
        db.execute(std::string("DELETE FROM ") + table + " WHERE id_carta=1");
    }
    db.execute("DELETE FROM tb_drop WHERE carta_id=1");
    db.execute("DELETE FROM tb_cartas WHERE id_carta=1");
    db.execute("COMMIT;");
    for (const char* table :
         {"tb_cartas", "tb_indicadores", "tb_pluviometria", "tb_reguladores", "tb_aspersores", "tb_drop"}) {
        EXPECT_EQ(rowsOfChart(table, "1"), 0u) << table;
        EXPECT_EQ(rowsOfChart(table, "2"), table == std::string("tb_aspersores") ? 2u : 1u) << table;
    }
}

TEST_F(ProjectStatements, ASystemWithoutChartsHasNone) {
    EXPECT_EQ(db.integer("SELECT count(*) as result FROM tb_cartas WHERE id_sistema=9"), 0);
    EXPECT_TRUE(db.rows("SELECT nome,id_carta FROM tb_cartas WHERE id_sistema=9;").empty());
    EXPECT_TRUE(db.rows("SELECT nome,boost from tb_cartas WHERE id_carta=42;").empty());
}

TEST_F(ProjectStatements, DropRowsCopyToAnotherChart) {
    saveContents(insertChart("Norte"));
    db.execute(
        "INSERT INTO tb_drop(longitud,diametro,pipe_material_id,installed,carta_id) SELECT "
        "longitud,diametro,pipe_material_id,installed,2 FROM  tb_drop WHERE carta_id=1;");
    EXPECT_EQ(db.rows("SELECT longitud,diametro,pipe_material_id,installed FROM tb_drop WHERE carta_id=2;"),
              (std::vector<TextRow>{{"2.5", "19.0", "2", "0"}}));
}

TEST_F(ProjectStatements, MountedSprinklersJoinTheAttachedCatalogue) {
    ScratchDatabase catalogue{"catalogue.db"};
    catalogue.load("data/schema/catalogue.sql");
    catalogue.load("data/sample/catalogue-data.sql");
    saveContents(insertChart("Norte"));
    db.execute("ATTACH DATABASE '" + catalogue.file().string() + "' AS catalogue;");
    const auto rows = db.rows(
        "SELECT tb_a.id_aspersores,tb_a.tramo,tb_a.saida,b.ID_Boquillas, b.denominacion, b.a, b.b,b.pmin, "
        "b.pmax,b.qmin, b.qmax,modelos.id_modelo as modelos_id_modelo,modelos.id_marca as "
        "modelos_id_marca,modelos.modelo as modelos_modelo,marca.id_marca as marca_id_marca, marca.nome as "
        "marca_nome FROM (((tb_aspersores as tb_a INNER JOIN catalogue.Boquillas AS b ON "
        "tb_a.id_aspersor=b.ID_Boquillas ) INNER JOIN catalogue.Modelos ON b.id_modelo=modelos.id_modelo) "
        "INNER JOIN catalogue.Marca ON modelos.id_marca=marca.id_marca) WHERE tb_a.id_carta=1;");
    ASSERT_EQ(rows.size(), 2u);
    EXPECT_EQ(rows[0][3], "5");
    EXPECT_EQ(rows[1][3], "7");
    EXPECT_EQ(rows[0][13], "LDN-360 Spray");
    EXPECT_EQ(rows[0][15], "Aquarion");
}

TEST_F(ProjectStatements, EvaluationsAreInsertedUpdatedFoundAndDeleted) {
    db.execute(
        "INSERT INTO pivot_evaluations (name,pluviometer_diameter,first_samples,second_samples) VALUES "
        "('Ensaio 1',null,'125.5 37\r\n0 40',null );");
    EXPECT_EQ(db.integer(kLastIdentity), 1);
    EXPECT_EQ(db.rows("SELECT * FROM pivot_evaluations WHERE id=1;"),
              (std::vector<TextRow>{{"1", "Ensaio 1", "NULL", "125.5 37\r\n0 40", "NULL"}}));
    db.execute(
        "UPDATE pivot_evaluations SET name = 'Ensaio 1',pluviometer_diameter = 0.2,first_samples = "
        "'125.5 37',second_samples = '3 12' WHERE id = 1");
    EXPECT_EQ(db.rows("SELECT id,name FROM pivot_evaluations;"), (std::vector<TextRow>{{"1", "Ensaio 1"}}));
    EXPECT_EQ(db.real("SELECT * FROM (SELECT pluviometer_diameter FROM pivot_evaluations WHERE id = 1)"),
              0.2);
    EXPECT_EQ(db.integer("SELECT Count(id) as result FROM pivot_evaluations WHERE name='Ensaio 1'"), 1);
    EXPECT_EQ(db.integer("SELECT Count(id) as result FROM pivot_evaluations WHERE name='none'"), 0);
    db.execute("DELETE FROM pivot_evaluations WHERE id = 1");
    EXPECT_TRUE(db.rows("SELECT id,name FROM pivot_evaluations;").empty());
}

TEST(CatalogueStatements, SavingANewBrandModelAndNozzleInsertsOneRowEach) {
    ScratchDatabase db{"catalogue.db"};
    db.load("data/schema/catalogue.sql");
    db.execute("PRAGMA foreign_keys = ON;");
    db.execute("BEGIN TRANSACTION;");
    db.execute("INSERT INTO marca (nome) VALUES ('Nova');");
    const auto brand = std::to_string(db.integer(kLastIdentity));
    db.execute("INSERT INTO Modelos (Modelo,ID_Marca) VALUES ('N1'," + brand + ");");
    const auto model = std::to_string(db.integer(kLastIdentity));
    db.execute(
        "INSERT INTO Boquillas (denominacion,pmin,pmax,a,b,qmin,qmax,id_modelo)VALUES "
        "('#10',50,300,0.01,0.5,0.0707,0.173," +
        model + ");");
    db.execute("COMMIT;");
    EXPECT_EQ(
        db.rows("SELECT modelos.modelo, marca.nome, b.denominacion FROM ((Boquillas AS b INNER JOIN Modelos "
                "ON b.id_modelo=modelos.id_modelo) INNER JOIN Marca ON modelos.id_marca=marca.id_marca)"),
        (std::vector<TextRow>{{"N1", "Nova", "#10"}}));
}

TEST(CatalogueStatements, ANozzleOfAModelKnownOnlyByItsIdIsAccepted) {
    ScratchDatabase db{"catalogue.db"};
    db.load("data/schema/catalogue.sql");
    db.execute("PRAGMA foreign_keys = ON;");
    db.execute(
        "INSERT INTO Boquillas (denominacion,pmin,pmax,a,b,qmin,qmax,id_modelo)VALUES "
        "('#12',50,300,0.01,0.5,0.0707,0.173,5);");
    EXPECT_EQ(db.integer("SELECT count(*) FROM Boquillas WHERE id_modelo=5"), 1);
}
