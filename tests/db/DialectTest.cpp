#include <gtest/gtest.h>

#include <filesystem>

#include "ErrorMatchers.hpp"
#include "TemporaryFolder.hpp"
#include "caudalis/db/Connection.hpp"
#include "caudalis/db/ConnectionSettings.hpp"
#include "caudalis/db/DatabaseErrors.hpp"
#include "caudalis/db/JetStatement.hpp"
#include "caudalis/db/SqlText.hpp"
#include "caudalis/db/SqliteDialect.hpp"

using namespace caudalis;
namespace rt = caudalis::RuntimeError;

namespace {

/// Rewrites with a resolver that names files by their position of first use.
std::string rewrite(const std::string& sql, std::vector<std::string>* files = nullptr) {
    const SqliteDialect dialect([files](const std::string& path) {
        if (files != nullptr) {
            files->push_back(path);
        }
        return std::string("file_schema");
    });
    return dialect.rewrite(JetStatement(sql));
}

}  // namespace

TEST(ConnectionSettings, ProviderAndDataSourceWithoutRegardToCaseOrBlanks) {
    const auto settings = ConnectionSettings::parse("  PROVIDER = SQLite ; data SOURCE =  /tmp/a b.db ;");
    EXPECT_EQ(settings.provider(), "sqlite");
    EXPECT_EQ(settings.dataSource(), "/tmp/a b.db");
    EXPECT_EQ(settings.value("Provider"), "SQLite");
    EXPECT_FALSE(settings.value("User ID"));
}

TEST(ConnectionSettings, BarePathAndMemoryUseTheDefaultEngine) {
    EXPECT_EQ(ConnectionSettings::parse("/data/project.db").provider(), "sqlite");
    EXPECT_EQ(ConnectionSettings::parse(" /data/my project.db ").dataSource(), "/data/my project.db");
    EXPECT_EQ(ConnectionSettings::parse(":memory:").dataSource(), ":memory:");
}

TEST(ConnectionSettings, QuotedValuesMayHoldSemicolons) {
    const auto settings = ConnectionSettings::parse("Provider=PostgreSQL;Password='a;b';Host=\"x\"");
    EXPECT_EQ(settings.provider(), "postgresql");
    EXPECT_EQ(settings.value("password"), "a;b");
    EXPECT_EQ(settings.value("HOST"), "x");
    EXPECT_FALSE(settings.dataSource());
}

TEST(JetStatement, SplitsLiteralsQuotedAndBracketedNames) {
    const JetStatement statement("SELECT 'it''s', \"q\" FROM [c:\\x y.db].T;");
    const auto& segments = statement.segments();
    ASSERT_EQ(segments.size(), 7u);
    EXPECT_EQ(segments[1].kind, JetSqlSegment::Kind::Text);
    EXPECT_EQ(segments[1].text, "'it''s'");
    EXPECT_EQ(segments[3].kind, JetSqlSegment::Kind::QuotedName);
    EXPECT_EQ(segments[5].kind, JetSqlSegment::Kind::BracketedName);
    EXPECT_EQ(segments[5].text, "[c:\\x y.db]");
    EXPECT_EQ(segments[6].text, ".T;");
}

TEST(JetStatement, SingleStatementChecks) {
    EXPECT_NO_THROW(JetStatement("SELECT 1;  ; \n").requireSingleStatement());
    EXPECT_NO_THROW(JetStatement("SELECT 'a;b'").requireSingleStatement());
    EXPECT_RAISES(JetStatement("SELECT 1; SELECT 2").requireSingleStatement(),
                  DatabaseError::CharactersAfterStatement);
    EXPECT_RAISES(JetStatement("SELECT 1; 'x'").requireSingleStatement(),
                  DatabaseError::CharactersAfterStatement);
    EXPECT_RAISES(JetStatement(" ; ").requireSingleStatement(), DatabaseError::InvalidStatement);
}

TEST(SqliteDialect, IdentityBecomesTheLastRowid) {
    EXPECT_EQ(rewrite("Select @@IDENTITY as id;"), "Select last_insert_rowid() as id;");
    EXPECT_EQ(rewrite("select @@identity AS id"), "select last_insert_rowid() AS id");
}

TEST(SqliteDialect, TruthValuesBecomeNumbers) {
    EXPECT_EQ(rewrite("VALUES (true,FALSE,True)"), "VALUES (1,0,1)");
    EXPECT_EQ(rewrite("SELECT is_true, true_value, falsehood FROM t"),
              "SELECT is_true, true_value, falsehood FROM t");
}

TEST(SqliteDialect, DatesBecomeTextLiterals) {
    EXPECT_EQ(rewrite("WHERE d = #2024-03-01#"), "WHERE d = '2024-03-01'");
    EXPECT_EQ(rewrite("VALUES (##)"), "VALUES ('')");
    EXPECT_EQ(rewrite("x # y"), "x # y");
}

TEST(SqliteDialect, LiteralsAndNamesAreNeverTouched) {
    EXPECT_EQ(rewrite("SELECT 'true @@IDENTITY #1#', [true], \"false\" FROM t"),
              "SELECT 'true @@IDENTITY #1#', [true], \"false\" FROM t");
    EXPECT_EQ(rewrite("SELECT 'it''s true' , true"), "SELECT 'it''s true' , 1");
}

TEST(SqliteDialect, BracketedFilePathBecomesTheAttachedSchema) {
    std::vector<std::string> files;
    EXPECT_EQ(rewrite("SELECT * FROM [/data/my catalogue.db].Boquillas AS b", &files),
              "SELECT * FROM file_schema.Boquillas AS b");
    EXPECT_EQ(files, std::vector<std::string>{"/data/my catalogue.db"});
}

TEST(SqliteDialect, BracketedNamesThatAreNotFilesStay) {
    std::vector<std::string> files;
    EXPECT_EQ(rewrite("SELECT [Modelos].id, [a.db] FROM [Modelos]", &files),
              "SELECT [Modelos].id, [a.db] FROM [Modelos]");
    EXPECT_TRUE(files.empty());
    EXPECT_TRUE(SqliteDialect::namesDatabaseFile("catalogue.db"));
    EXPECT_TRUE(SqliteDialect::namesDatabaseFile("C:\\data\\cat"));
    EXPECT_FALSE(SqliteDialect::namesDatabaseFile("Boquillas"));
}

class AttachedCatalogue : public ::testing::Test {
protected:
    void SetUp() override {
        std::filesystem::create_directories(folder.path() / "catalogue folder");
        Connection catalogue(cataloguePath);
        catalogue.Open();
        catalogue.Execute("CREATE TABLE Marca (id_marca INTEGER PRIMARY KEY, nome TEXT)");
        catalogue.Execute(
            "CREATE TABLE Modelos (id_modelo INTEGER PRIMARY KEY, id_marca INTEGER, modelo TEXT)");
        catalogue.Execute(
            "CREATE TABLE Boquillas (ID_Boquillas INTEGER PRIMARY KEY, denominacion TEXT, id_modelo "
            "INTEGER)");
        catalogue.Execute("INSERT INTO Marca (nome) VALUES ('Nelson')");
        catalogue.Execute("INSERT INTO Modelos (id_marca, modelo) VALUES (1, 'R3000')");
        catalogue.Execute("INSERT INTO Boquillas (denominacion, id_modelo) VALUES ('#14', 1)");
        catalogue.Execute("INSERT INTO Boquillas (denominacion, id_modelo) VALUES ('#16', 1)");
        project.Open("Provider=SQLite;Data Source=" + folder.file("project.db"));
        project.Execute(
            "CREATE TABLE tb_aspersores (id_aspersores INTEGER PRIMARY KEY, tramo INTEGER, saida INTEGER, "
            "id_aspersor INTEGER, id_carta INTEGER)");
        project.Execute("INSERT INTO tb_aspersores (tramo,saida,id_aspersor,id_carta) values (1,2,2,5);");
        project.Execute("INSERT INTO tb_aspersores (tramo,saida,id_aspersor,id_carta) values (1,3,1,6);");
    }

    caudalis::testing::TemporaryFolder folder;
    const std::string cataloguePath = folder.file("catalogue folder/sprinklers catalogue.db");
    Connection project;
};

TEST_F(AttachedCatalogue, NestedJoinAcrossTwoFiles) {
    const std::string prefix = "[" + cataloguePath + "].";
    const auto tables = BoundedArray<Variant>::of(
        {"tb_aspersores as tb_a", prefix + "Boquillas AS b" + " ON tb_a.id_aspersor=b.ID_Boquillas ",
         prefix + "Modelos ON b.id_modelo=modelos.id_modelo",
         prefix + "Marca ON modelos.id_marca=marca.id_marca"},
        0);
    const std::string sql =
        "SELECT tb_a.id_aspersores,tb_a.tramo,tb_a.saida,b.denominacion,modelos.modelo as "
        "modelos_modelo, marca.nome as marca_nome FROM " +
        innerJoin(tables) + " WHERE tb_a.id_carta=5;";
    for (int run = 0; run < 2; ++run) {
        const auto rs = project.Execute(sql);
        ASSERT_FALSE(rs->EOF_());
        EXPECT_EQ(rs->Fields("saida").toLong(), 2);
        EXPECT_EQ(rs->Fields("denominacion").toString(), "#16");
        EXPECT_EQ(rs->Fields("MODELOS_MODELO").toString(), "R3000");
        EXPECT_EQ(rs->Fields("marca_nome").toString(), "Nelson");
        rs->MoveNext();
        EXPECT_TRUE(rs->EOF_());
    }
}

TEST_F(AttachedCatalogue, MissingCatalogueFileRaisesAndIsNotCreated) {
    const std::string missing = folder.file("no catalogue.db");
    EXPECT_RAISES(project.Execute("SELECT * FROM [" + missing + "].Boquillas"), rt::DatabaseEngine);
    EXPECT_FALSE(std::filesystem::exists(missing));
}

TEST_F(AttachedCatalogue, DialectFeaturesRunOnTheEngine) {
    project.Execute("CREATE TABLE flags (id INTEGER PRIMARY KEY, installed INTEGER, day TEXT, note TEXT)");
    project.Execute(
        "INSERT INTO flags (installed, day, note) VALUES (true, #2024-03-01#, 'true #x# @@IDENTITY');");
    EXPECT_EQ(lastIdentity(project).toLong(), 1);
    const auto rs = project.Execute("SELECT * FROM flags WHERE installed = true");
    ASSERT_FALSE(rs->EOF_());
    EXPECT_TRUE(rs->Fields("installed").toBoolean());
    EXPECT_EQ(rs->Fields("day").toString(), "2024-03-01");
    EXPECT_EQ(rs->Fields("note").toString(), "true #x# @@IDENTITY");
    EXPECT_TRUE(project.Execute("SELECT * FROM flags WHERE installed = false")->EOF_());
}
