#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include "SampleNozzles.hpp"

// Runs the built `caudalis` program and checks what a user sees on bad input: one line on
// stderr starting with "caudalis: " that names the file or field, and the exit code.
namespace {

struct Outcome {
    int exitCode;
    std::string out;
    std::string err;
};

std::string readFile(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    std::ostringstream content;
    content << file.rdbuf();
    return content.str();
}

class ExecutableTest : public ::testing::Test {
protected:
    std::filesystem::path folder =
        std::filesystem::temp_directory_path() / ("caudalis-cli-" + std::to_string(::getpid()));

    void SetUp() override { std::filesystem::create_directories(folder); }
    void TearDown() override { std::filesystem::remove_all(folder); }

    std::string write(const std::string& name, const std::string& content) {
        const auto path = folder / name;
        std::ofstream(path, std::ios::binary) << content;
        return path.string();
    }

    Outcome run(const std::string& arguments) {
        const auto out = folder / "stdout";
        const auto err = folder / "stderr";
        const std::string command = std::string("'") + CAUDALIS_CLI_EXECUTABLE + "' " + arguments + " >'" +
                                    out.string() + "' 2>'" + err.string() + "'";
        const int status = std::system(command.c_str());
        return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, readFile(out), readFile(err)};
    }

    /// A copy of the small example with `from` replaced by `to`.
    std::string smallWith(const std::string& from, const std::string& to) {
        auto text = readFile(caudalis::cli::clitest::sourcePath("examples/designs/small.json"));
        const auto at = text.find(from);
        EXPECT_NE(at, std::string::npos) << from;
        text.replace(at, from.size(), to);
        return write("design.json", text);
    }
};

}  // namespace

TEST_F(ExecutableTest, MissingDesignFile) {
    const auto result = run("design '" + (folder / "nowhere.json").string() + "' --catalogue c.db");
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.err, "caudalis: cannot open design file " + (folder / "nowhere.json").string() +
                              ": No such file or directory\n");
    EXPECT_TRUE(result.out.empty());
}

TEST_F(ExecutableTest, MalformedJson) {
    const auto path = write("broken.json", "{\n  \"name\": \"x\",\n  \"spans\": [\n}");
    const auto result = run("design '" + path + "' --catalogue c.db");
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.err.rfind("caudalis: " + path + ": malformed JSON: parse error at line 4, column 1", 0),
              0u)
        << result.err;
    EXPECT_EQ(std::count(result.err.begin(), result.err.end(), '\n'), 1);
}

TEST_F(ExecutableTest, WrongType) {
    const auto result = run("design '" + smallWith("\"design_flow_lps\": 8", "\"design_flow_lps\": \"8\"") +
                            "' --catalogue c.db");
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.err, "caudalis: design_flow_lps must be a number\n");
}

TEST_F(ExecutableTest, NegativeLength) {
    const auto result =
        run("design '" +
            smallWith("\"length_m\": 48, \"diameter_mm\": 114.3, \"outlet_spacing_cm\": 300, "
                      "\"end_elevation_m\": 51.0",
                      "\"length_m\": -48, \"diameter_mm\": 114.3, \"outlet_spacing_cm\": 300, "
                      "\"end_elevation_m\": 51.0") +
            "' --catalogue c.db");
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.err, "caudalis: spans[1].length_m must be > 0\n");
}

TEST_F(ExecutableTest, ValidDesignReachesTheCatalogue) {
    const auto result =
        run("design '" + caudalis::cli::clitest::sourcePath("examples/designs/realistic.json") +
            "' --catalogue c.db");
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.err, "caudalis: catalogue database support is not built yet\n");
}

TEST_F(ExecutableTest, UsageErrors) {
    for (const char* arguments :
         {"", "design", "frobnicate", "design x.json", "design x.json --catalogue c --max-passes -3",
          "design x.json --catalogue c --plot out.gif", "design x.json --catalogue c --nope"}) {
        SCOPED_TRACE(arguments);
        const auto result = run(arguments);
        EXPECT_EQ(result.exitCode, 2);
        EXPECT_EQ(result.err.rfind("caudalis: ", 0), 0u) << result.err;
        EXPECT_EQ(std::count(result.err.begin(), result.err.end(), '\n'), 1) << result.err;
    }
}

TEST_F(ExecutableTest, VersionAndHelp) {
    EXPECT_EQ(run("--version").out, CAUDALIS_TEST_VERSION "\n");
    const auto help = run("--help");
    EXPECT_EQ(help.exitCode, 0);
    EXPECT_NE(help.out.find("design"), std::string::npos);
}
