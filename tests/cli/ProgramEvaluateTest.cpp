#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "CliErrors.hpp"
#include "ProgramRun.hpp"
#include "SampleNozzles.hpp"
#include "caudalis/db/Connection.hpp"

// The built program evaluates the shipped catch-can readings and stores evaluations.
using namespace caudalis::cli;
using namespace caudalis::cli::clitest;

namespace {

class ProgramEvaluateTest : public ProgramTest {
protected:
    nlohmann::json evaluate(const std::string& arguments) {
        const auto result = run("evaluate " + arguments + " --json");
        EXPECT_EQ(result.exitCode, 0) << result.err;
        return nlohmann::json::parse(result.out);
    }

    /// name|diameter|first|second of every stored evaluation.
    std::string storedEvaluations() const {
        caudalis::Connection connection("Provider=SQLite;Data Source=" + file("project.db"));
        connection.Open();
        std::string rows;
        const auto found = connection.Execute(
            "SELECT name, pluviometer_diameter, first_samples, second_samples FROM pivot_evaluations ORDER "
            "BY id");
        for (; !found->EOF_(); found->MoveNext()) {
            for (const char* field : {"name", "pluviometer_diameter", "first_samples", "second_samples"}) {
                const auto value = found->Fields(field);
                rows += (value.isNull() ? std::string("null") : value.toString()) + "|";
            }
            rows += "\n";
        }
        return rows;
    }
};

void expectPercent(const nlohmann::json& value) {
    ASSERT_TRUE(value.is_number());
    EXPECT_GT(value.get<double>(), 0);
    EXPECT_LE(value.get<double>(), 100);
}

}  // namespace

TEST_F(ProgramEvaluateTest, TwoPassesInOneFile) {
    const auto figures = evaluate(example("evaluations/north-2024.txt") + " --gauge-diameter 0.1");
    EXPECT_EQ(figures["name"], "north-2024");
    EXPECT_EQ(figures["readings"], 78);
    EXPECT_TRUE(figures["left_out"].empty());
    // About 75 ml in a 0.1 m gauge: 75 / 7.854 = 9.5 mm.
    EXPECT_NEAR(figures["mean_depth_mm"].get<double>(), 9.5, 0.5);
    EXPECT_LT(figures["low_quarter_mean_depth_mm"].get<double>(), figures["mean_depth_mm"].get<double>());
    EXPECT_TRUE(figures["second_pass_mean_depth_mm"].is_number());
    expectPercent(figures["cu_heermann_hein_percent"]);
    expectPercent(figures["du_low_quarter_percent"]);
    // The can at 230 m of the first pass caught 30 % less.
    ASSERT_EQ(figures["flagged"].size(), 1u);
    EXPECT_EQ(figures["flagged"][0]["pass"], 1);
    EXPECT_DOUBLE_EQ(figures["flagged"][0]["distanceFromCenter"].get<double>(), 230);
    EXPECT_LT(figures["flagged"][0]["deviation_percent"].get<double>(), -20);
}

TEST_F(ProgramEvaluateTest, InvalidReadingsAreLeftOut) {
    const auto result = run("evaluate " + example("evaluations/hillside-2024.txt") + " --gauge-diameter 0.1");
    ASSERT_EQ(result.exitCode, 0) << result.err;
    EXPECT_NE(result.out.find("Readings                        49 (48 valid, 1 left out)"),
              std::string::npos);
    EXPECT_NE(result.out.find("left out: -1 at 65 m"), std::string::npos);
    EXPECT_NE(result.out.find("Mean depth, second pass         n/a"), std::string::npos);
    EXPECT_NE(result.out.find("Readings more than 20 % off the mean: 1"), std::string::npos);
    EXPECT_NE(result.out.find("Uniformity CU (Heermann-Hein)"), std::string::npos);
    EXPECT_EQ(result.err, "caudalis: warning: 1 invalid readings left out\n");
}

TEST_F(ProgramEvaluateTest, PassesInTwoFilesGiveTheSameFigures) {
    const auto text = readFile(sourcePath("examples/evaluations/north-2024.txt"));
    const auto blank = text.find("\n\n");
    const auto first = write("first.txt", text.substr(0, blank + 1));
    const auto second = write("second.txt", text.substr(blank + 2));
    auto apart = evaluate(quoted(first) + " " + quoted(second) + " --gauge-diameter 0.1 --name north-2024");
    auto together = evaluate(example("evaluations/north-2024.txt") + " --gauge-diameter 0.1");
    for (auto* figures : {&apart, &together}) {
        (*figures)["flagged"][0].erase("file");
        (*figures)["flagged"][0].erase("line");
    }
    EXPECT_EQ(apart, together);
}

TEST_F(ProgramEvaluateTest, SavedEvaluationHoldsEveryReading) {
    const auto two = write("two.txt", "125.5 37\n0 40\n\n-1 50\n");
    const auto saved = run("evaluate " + quoted(two) + " --gauge-diameter 0.15 --name 'Field 7' --save");
    ASSERT_EQ(saved.exitCode, 0) << saved.err;
    EXPECT_NE(saved.err.find("caudalis: evaluation \"Field 7\" stored with id 1\n"), std::string::npos);
    EXPECT_EQ(storedEvaluations(), "Field 7|0.15|125.5 37\r\n0 40|-1 50|\n");

    const auto before = databases();
    expectFailure(run("evaluate " + quoted(two) + " --gauge-diameter 0.15 --name 'Field 7' --save"),
                  ExitCode::BadInput, "an evaluation named \"Field 7\" already exists");
    expectFailure(run("evaluate " + quoted(two) + " --gauge-diameter 0.15 --name \"Farmer's\" --save"),
                  ExitCode::BadInput,
                  "evaluation name \"Farmer's\" may not contain ?, an apostrophe or a control character");
    EXPECT_EQ(databases(), before);
}

TEST_F(ProgramEvaluateTest, BadReadingsNameTheFileAndLine) {
    const auto before = databases();
    expectFailure(run("evaluate none.txt --gauge-diameter 0.1 --save"), ExitCode::BadInput,
                  "cannot open readings file none.txt: No such file or directory");
    const auto doubled = write("doubled.txt", "10 5\n10  6\n");
    expectFailure(run("evaluate " + quoted(doubled) + " --gauge-diameter 0.1 --save"), ExitCode::BadInput,
                  doubled + " line 2: \"10  6\" is not a reading");
    const auto comma = write("comma.txt", "10,5 6\n");
    expectFailure(run("evaluate " + quoted(comma) + " --gauge-diameter 0.1"), ExitCode::BadInput,
                  comma + " line 1: \"10,5 6\" is not a reading");
    const auto three = write("three.txt", "1 5\n\n2 6\n\n3 7\n");
    expectFailure(run("evaluate " + quoted(three) + " --gauge-diameter 0.1"), ExitCode::BadInput,
                  "holds 3 groups of readings");
    const auto empty = write("empty.txt", "\n\n");
    expectFailure(run("evaluate " + quoted(empty) + " --gauge-diameter 0.1"), ExitCode::BadInput,
                  "readings file " + empty + " holds no readings");
    const auto invalid = write("invalid.txt", "-1 5\n3 0\n");
    expectFailure(run("evaluate " + quoted(invalid) + " --gauge-diameter 0.1 --save"), ExitCode::BadInput,
                  "no valid readings");
    expectFailure(run("evaluate " + quoted(invalid) + " --gauge-diameter 150"), ExitCode::Usage,
                  "--gauge-diameter: must be a diameter in metres");
    EXPECT_EQ(databases(), before);
}
