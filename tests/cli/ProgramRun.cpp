#include "ProgramRun.hpp"

#include <sys/wait.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <sstream>

#include "SampleNozzles.hpp"
#include "caudalis/db/Connection.hpp"

namespace caudalis::cli::clitest {

std::string readFile(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    std::ostringstream content;
    content << file.rdbuf();
    return content.str();
}

void ProgramTest::SetUp() {
    const auto init = run("init .");
    ASSERT_EQ(init.exitCode, 0) << init.err;
}

Outcome ProgramTest::run(const std::string& arguments, const std::string& environment) const {
    const auto out = folder.path() / ".stdout";
    const auto err = folder.path() / ".stderr";
    const std::string command = "cd " + quoted(folder.path().string()) + " && " + environment + " " +
                                quoted(CAUDALIS_CLI_EXECUTABLE) + " " + arguments + " >" +
                                quoted(out.string()) + " 2>" + quoted(err.string()) + " </dev/null";
    const int status = std::system(command.c_str());
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, readFile(out), readFile(err)};
}

std::string ProgramTest::write(const std::string& name, const std::string& content) const {
    std::ofstream(folder.path() / name, std::ios::binary) << content;
    return file(name);
}

std::string ProgramTest::example(const std::string& relative) {
    return quoted(sourcePath("examples/" + relative));
}

void ProgramTest::execute(const std::string& database, const std::string& sql) const {
    Connection connection("Provider=SQLite;Data Source=" + file(database));
    connection.Open();
    connection.Execute(sql);
    connection.Close();
}

std::string ProgramTest::databases() const {
    return readFile(folder.path() / "project.db") + readFile(folder.path() / "catalogue.db");
}

void expectFailure(const Outcome& outcome, int exitCode, const std::string& fragment) {
    EXPECT_EQ(outcome.exitCode, exitCode) << outcome.err;
    EXPECT_EQ(outcome.err.rfind("caudalis: ", 0), 0u) << outcome.err;
    EXPECT_NE(outcome.err.find(fragment), std::string::npos) << outcome.err;
    EXPECT_EQ(std::count(outcome.err.begin(), outcome.err.end(), '\n'), 1) << outcome.err;
}

}  // namespace caudalis::cli::clitest
