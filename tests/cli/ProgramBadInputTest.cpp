#include <gtest/gtest.h>

#include "CliErrors.hpp"
#include "ProgramRun.hpp"
#include "SampleNozzles.hpp"

// Bad input of every kind ends the built program with one line naming the file or field and a
// non-zero exit code, and leaves both databases byte for byte as they were.
using namespace caudalis::cli;
using namespace caudalis::cli::clitest;

namespace {

class ProgramBadInputTest : public ProgramTest {
protected:
    void SetUp() override {
        ProgramTest::SetUp();
        before = databases();
    }
    void TearDown() override { EXPECT_EQ(databases(), before) << "a failed command changed a database"; }

    /// A copy of the small example with `from` replaced by `to`, as a shell word.
    std::string smallWith(const std::string& from, const std::string& to) const {
        auto text = readFile(sourcePath("examples/designs/small.json"));
        const auto at = text.find(from);
        EXPECT_NE(at, std::string::npos) << from;
        text.replace(at, from.size(), to);
        return quoted(write("design.json", text));
    }

    std::string before;
};

const std::string saving = " --save Bad";

}  // namespace

TEST_F(ProgramBadInputTest, MissingDesignFile) {
    const auto result = run("design nowhere.json" + saving);
    EXPECT_EQ(result.err, "caudalis: cannot open design file nowhere.json: No such file or directory\n");
    EXPECT_EQ(result.exitCode, ExitCode::BadInput);
    EXPECT_TRUE(result.out.empty());
}

TEST_F(ProgramBadInputTest, MalformedJson) {
    const auto path = write("broken.json", "{\n  \"name\": \"x\",\n  \"spans\": [\n}");
    expectFailure(run("design " + quoted(path) + saving), ExitCode::BadInput,
                  path + ": malformed JSON: parse error at line 4, column 1");
}

TEST_F(ProgramBadInputTest, WrongType) {
    const auto result =
        run("design " + smallWith("\"design_flow_lps\": 8", "\"design_flow_lps\": \"8\"") + saving);
    EXPECT_EQ(result.err, "caudalis: design_flow_lps must be a number\n");
    EXPECT_EQ(result.exitCode, ExitCode::BadInput);
}

TEST_F(ProgramBadInputTest, NegativeLength) {
    const auto result = run("design " + smallWith("\"length_m\": 48", "\"length_m\": -48") + saving);
    EXPECT_EQ(result.err, "caudalis: spans[0].length_m must be > 0\n");
    EXPECT_EQ(result.exitCode, ExitCode::BadInput);
}

TEST_F(ProgramBadInputTest, UnknownBrandAndModel) {
    expectFailure(
        run("design " + smallWith("\"brand\": \"Rotaflux\"", "\"brand\": \"Acme\"") + saving),
        ExitCode::BadInput,
        "unknown brand \"Acme\" in catalogue catalogue.db (brands: Aquarion, Rotaflux, Nimbra, Vellora)");
    expectFailure(run("design " + smallWith("\"brand\": \"Rotaflux\"", "\"brand\": \"Nimbra\"") + saving),
                  ExitCode::BadInput,
                  "unknown model \"RX Spinner\" of brand \"Nimbra\" in catalogue catalogue.db");
    expectFailure(run("catalogue list --brand \"O'Neil\""), ExitCode::BadInput, "unknown brand \"O'Neil\"");
}

TEST_F(ProgramBadInputTest, DatabasesThatAreNotOurs) {
    write("notes.db", "not a database at all\n");
    expectFailure(run("design " + example("designs/small.json") + " --catalogue notes.db"),
                  ExitCode::BadInput,
                  "notes.db is not a Caudalis catalogue database (file is not a database)");
    expectFailure(run("design " + example("designs/small.json") + " --catalogue project.db"),
                  ExitCode::BadInput,
                  "project.db is not a Caudalis catalogue database (it has no table marca)");
    expectFailure(run("design " + example("designs/small.json") + " --save x --project catalogue.db"),
                  ExitCode::BadInput,
                  "catalogue.db is not a Caudalis project database (it has no table tb_cartas)");
    expectFailure(run("chart list --project notes.db"), ExitCode::BadInput,
                  "notes.db is not a Caudalis project");
    EXPECT_EQ(readFile(file("notes.db")), "not a database at all\n");
}

TEST_F(ProgramBadInputTest, MissingDatabasesAreNotCreated) {
    expectFailure(run("design " + example("designs/small.json") + " --catalogue other.db"),
                  ExitCode::BadInput,
                  "cannot open catalogue database other.db: no such file (caudalis init creates one)");
    expectFailure(run("evaluate " + example("evaluations/north-2024.txt") +
                      " --gauge-diameter 0.1 --save --project other.db"),
                  ExitCode::BadInput, "cannot open project database other.db");
    EXPECT_FALSE(std::filesystem::exists(file("other.db")));
}

TEST_F(ProgramBadInputTest, CatalogueWithoutNozzles) {
    const auto empty = quoted(file("empty.db"));
    execute("empty.db", "CREATE TABLE marca (id_marca INTEGER PRIMARY KEY, nome TEXT)");
    execute("empty.db",
            "CREATE TABLE Modelos (id_modelo INTEGER PRIMARY KEY, id_marca INTEGER, modelo TEXT)");
    execute("empty.db",
            "CREATE TABLE Boquillas (ID_Boquillas INTEGER PRIMARY KEY, denominacion TEXT, a REAL, b REAL, "
            "pmin REAL, pmax REAL, qmin REAL, qmax REAL, id_modelo INTEGER)");
    expectFailure(run("catalogue list --catalogue " + empty), ExitCode::BadInput,
                  "catalogue database " + file("empty.db") + " holds no nozzles");
    expectFailure(run("design " + example("designs/small.json") + " --catalogue " + empty),
                  ExitCode::BadInput,
                  "unknown brand \"Rotaflux\" in catalogue " + file("empty.db") + " (brands: none)");
}

TEST_F(ProgramBadInputTest, ChartNameWithAnApostrophe) {
    expectFailure(run("design " + example("designs/small.json") + " --save \"Farmer's\""), ExitCode::BadInput,
                  "chart name \"Farmer's\" may not contain ?, an apostrophe or a control character");
}

TEST_F(ProgramBadInputTest, DischargeThatNeverSettles) {
    const auto result = run("design " + example("designs/realistic.json") + " --max-passes 1" + saving);
    EXPECT_EQ(result.exitCode, ExitCode::NotSettled);
    EXPECT_EQ(result.err, "caudalis: the computation did not settle within 1 pass (--max-passes)\n");
}

TEST_F(ProgramBadInputTest, UsageErrors) {
    for (const char* arguments :
         {"", "design", "frobnicate", "design x.json --max-passes -3", "design x.json --plot out.gif",
          "design x.json --nope", "chart", "chart show", "chart show 40000", "catalogue", "catalogue import",
          "evaluate", "evaluate r.txt", "evaluate r.txt --gauge-diameter 150",
          "evaluate a b c --gauge-diameter 0.1", "design x.json --system 0 --save y"}) {
        SCOPED_TRACE(arguments);
        expectFailure(run(arguments), ExitCode::Usage, "");
    }
}

TEST_F(ProgramBadInputTest, VersionAndHelp) {
    EXPECT_EQ(run("--version").out, CAUDALIS_TEST_VERSION "\n");
    const auto help = run("--help");
    EXPECT_EQ(help.exitCode, 0);
    for (const char* command : {"init", "design", "evaluate", "catalogue", "chart"}) {
        EXPECT_NE(help.out.find(command), std::string::npos) << command;
    }
}
