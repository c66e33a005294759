#pragma once

#include <filesystem>
#include <string>

#include <gtest/gtest.h>

#include "SampleNozzles.hpp"
#include "TemporaryFolder.hpp"

namespace caudalis::cli::clitest {

using caudalis::testing::sourcePath;

/// What a run of the built program left.
struct Outcome {
    int exitCode = -1;
    std::string out;
    std::string err;
};

/// The whole content of a file ("" when it cannot be read).
std::string readFile(const std::filesystem::path& path);

/// Runs the built `caudalis` program in a temporary folder that holds a project and a
/// catalogue database made by `caudalis init` (project.db, catalogue.db).
class ProgramTest : public ::testing::Test {
protected:
    void SetUp() override;

    /// Runs `caudalis <arguments>` (shell words) in the folder, with `environment`
    /// ("NAME=value ...") added to its environment.
    Outcome run(const std::string& arguments, const std::string& environment = "") const;
    /// Writes a file into the folder and returns its path.
    std::string write(const std::string& name, const std::string& content) const;
    std::string file(const std::string& name) const { return folder.file(name); }
    /// A shell word for a path.
    static std::string quoted(const std::string& path) { return "'" + path + "'"; }
    /// The path of a shipped example, as a shell word.
    static std::string example(const std::string& relative);
    /// Runs an SQL statement on a database file of the folder.
    void execute(const std::string& database, const std::string& sql) const;
    /// The contents of both databases, to compare before and after a failing command.
    std::string databases() const;

    caudalis::testing::TemporaryFolder folder;
};

/// Expects the run to have failed with `exitCode` and one line on stderr starting with
/// "caudalis: " and holding `fragment`.
void expectFailure(const Outcome& outcome, int exitCode, const std::string& fragment);

}  // namespace caudalis::cli::clitest
