#include <gtest/gtest.h>

#include <fmt/format.h>
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
    EXPECT_EQ(figures["amounts"], "ml");
    EXPECT_TRUE(figures["left_out"].empty());
    const auto& together = figures["together"];
    // About 75 ml in a 0.1 m gauge: 75 / 7.854 = 9.5 mm.
    EXPECT_NEAR(together["mean_depth_mm"].get<double>(), 9.5, 0.5);
    EXPECT_LT(together["low_quarter_mean_mm"].get<double>(), together["mean_depth_mm"].get<double>());
    ASSERT_EQ(figures["lines"].size(), 2u);
    EXPECT_EQ(figures["lines"][1]["figures"]["collectors"], 39);
    expectPercent(together["cu_hh_percent"]);
    expectPercent(together["du_lq_percent"]);
    expectPercent(together["cu_moving_average_percent"]);
    expectPercent(figures["lines_mean"]["cu_hh_percent"]);
    EXPECT_GT(together["scheduling_coefficient_5_percent"].get<double>(), 1);
    EXPECT_GE(together["scheduling_coefficient_1_percent"].get<double>(),
              together["scheduling_coefficient_5_percent"].get<double>());
    EXPECT_GT(together["mean_over_low_quarter_mean"].get<double>(), 1);
    EXPECT_TRUE(figures["comparison"].is_null());
    // The can at 230 m of the first line caught 30 % less.
    ASSERT_EQ(figures["outliers"].size(), 1u);
    EXPECT_EQ(figures["outliers"][0]["line"], 1);
    EXPECT_DOUBLE_EQ(figures["outliers"][0]["distance_m"].get<double>(), 230);
    EXPECT_LT(figures["outliers"][0]["deviation_percent"].get<double>(), -20);
}

TEST_F(ProgramEvaluateTest, InvalidReadingsAreLeftOut) {
    const auto result = run("evaluate " + example("evaluations/hillside-2024.txt") + " --gauge-diameter 0.1");
    ASSERT_EQ(result.exitCode, 0) << result.err;
    EXPECT_NE(result.out.find("Readings                        49 (48 counted, 1 left out)"),
              std::string::npos);
    EXPECT_NE(result.out.find("left out: line 1 -1 at 65 m, not a valid reading"), std::string::npos);
    EXPECT_NE(result.out.find("Collectors more than 20 % off the mean: 1"), std::string::npos);
    EXPECT_NE(result.out.find("CU Heermann-Hein (%)"), std::string::npos);
    EXPECT_EQ(result.out.find("Lines' mean"), std::string::npos);
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
        (*figures)["outliers"][0].erase("file");
        (*figures)["outliers"][0].erase("file_line");
        (*figures).erase("collectors");
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
                  "readings file " + empty + ": holds no readings");
    const auto invalid = write("invalid.txt", "-1 5\n3 0\n");
    expectFailure(run("evaluate " + quoted(invalid) + " --gauge-diameter 0.1 --save"), ExitCode::BadInput,
                  "no reading counts");
    expectFailure(run("evaluate " + quoted(invalid) + " --gauge-diameter 150"), ExitCode::Usage,
                  "--gauge-diameter: must be a diameter in metres");
    EXPECT_EQ(databases(), before);
}

namespace {

/// Two lines of collectors every 3 m (east, west) catching 10 mm, 6 mm from 57 to 63 m.
std::string dipReadings() {
    std::string csv = "line,collector,distance_m,depth_mm,flag\n";
    for (const char* line : {"east", "west"}) {
        for (int i = 1; i <= 32; ++i) {
            const int r = 3 * i;
            csv += std::string(line) + "," + std::to_string(i) + "," + std::to_string(r) + "," +
                   (r >= 57 && r <= 63 ? "6" : "10") + ",\n";
        }
    }
    return csv;
}

}  // namespace

TEST_F(ProgramEvaluateTest, CsvReadingsWithCrewFlagsInFeetAndInches) {
    const auto csv = write("crew.csv",
                           "line,collector,distance_ft,depth_in,flag\n"
                           "A,1,10,0.9,\nA,2,50,0.4,\nA,3,100,0.4,wind\nA,4,150,0.5,\nA,5,200,0.4,\n"
                           "A,6,250,0.45,\nA,7,330,0.3,\n");
    const auto figures = evaluate(quoted(csv) + " --inner-radius 5 --last-span-end 90");
    // Read in feet and inches, printed in them.
    EXPECT_EQ(figures["units"], "us");
    EXPECT_EQ(figures["amounts"], "in");
    EXPECT_EQ(figures["readings"], 7);
    ASSERT_EQ(figures["left_out"].size(), 2u);
    EXPECT_EQ(figures["left_out"][0]["reason"], "inside_inner_radius");
    EXPECT_EQ(figures["left_out"][1]["reason"], "crew");
    EXPECT_EQ(figures["left_out"][1]["crew_flag"], "wind");
    EXPECT_EQ(figures["lines"][0]["name"], "A");
    // 50, 150, 200, 250 ft counted (15.24 .. 76.2 m); 330 ft = 100.58 m is beyond the last span.
    EXPECT_EQ(figures["together"]["collectors"], 4);
    EXPECT_EQ(figures["end_gun_zone"]["collectors"], 1);
    EXPECT_NEAR(figures["end_gun_zone"]["mean_depth_in"].get<double>(), 0.3, 1e-9);
    // (0.4 * 15.24 + 0.5 * 45.72 + 0.4 * 60.96 + 0.45 * 76.2) / 198.12 in.
    const double mean = (0.4 * 15.24 + 0.5 * 45.72 + 0.4 * 60.96 + 0.45 * 76.2) / 198.12;
    EXPECT_NEAR(figures["together"]["mean_depth_in"].get<double>(), mean, 1e-9);
    EXPECT_NEAR(figures["collectors"][1]["distance_ft"].get<double>(), 50, 1e-9);
    const auto inSI = evaluate(quoted(csv) + " --inner-radius 5 --last-span-end 90 --units si");
    EXPECT_EQ(inSI["amounts"], "mm");
    EXPECT_NEAR(inSI["together"]["mean_depth_mm"].get<double>(), mean * 25.4, 1e-9);

    const auto bad = write("bad.csv", "distance_m,volume_ml\n10,abc\n");
    expectFailure(run("evaluate " + quoted(bad) + " --gauge-diameter 0.1"), ExitCode::BadInput,
                  "readings file " + bad + " line 2, column 2 (volume_ml): \"abc\" is not a number");
}

TEST_F(ProgramEvaluateTest, MeasuredBesideDesignedFindsTheDip) {
    const auto csv = write("dip.csv", dipReadings());
    const auto figures =
        evaluate(quoted(csv) + " --inner-radius 10 --timer 50 --design " + example("designs/small.json"));
    const auto& comparison = figures["comparison"];
    ASSERT_TRUE(comparison.is_object());
    // The design gives no wetted diameter; the catalogue's for the model fitted is taken, not the
    // 12 m default.
    EXPECT_EQ(comparison["wetted_diameter_from"], "the catalogue's Rotaflux RX Spinner");
    EXPECT_DOUBLE_EQ(comparison["wetted_diameter_m"].get<double>(), 15);
    EXPECT_TRUE(comparison["outlets_resolved"].get<bool>());
    // The outlet at 60 m is outlet 4 of span 2 (spans of 48 m, outlets every 3 m).
    EXPECT_EQ(comparison["outlets"][0]["span"], 2);
    EXPECT_EQ(comparison["outlets"][0]["outlet"], 4);
    EXPECT_LT(comparison["outlets"][0]["estimated_percent"].get<double>(), -30);
    EXPECT_EQ(comparison["spans"][0]["span"], 2);
    // The last span ends at 96 m; the designed depth at a 50 % timer is twice the 100 % one.
    EXPECT_DOUBLE_EQ(figures["last_span_end_m"].get<double>(), 96);
    const auto full = evaluate(quoted(csv) + " --design " + example("designs/small.json"));
    EXPECT_NEAR(figures["expected_depth_mm"].get<double>(), 2 * full["expected_depth_mm"].get<double>(),
                1e-9);
    EXPECT_NEAR(
        figures["applied_percent_of_expected"].get<double>(),
        100 * figures["together"]["mean_depth_mm"].get<double>() / figures["expected_depth_mm"].get<double>(),
        1e-9);

    const auto text = run("evaluate " + quoted(csv) + " --design " + example("designs/small.json") +
                          " --wetted-diameter 3");
    ASSERT_EQ(text.exitCode, 0) << text.err;
    EXPECT_NE(text.out.find("wetted diameter 3 m from --wetted-diameter"), std::string::npos);
    EXPECT_NE(text.out.find("collectors 3 m apart cannot single out outlets of a 3 m wetted diameter"),
              std::string::npos);
}

TEST_F(ProgramEvaluateTest, StoredFiguresAreListedAndShown) {
    const auto csv = write("dip.csv", dipReadings());
    const auto saved = run("evaluate " + quoted(csv) + " --name 'East 2025' --save");
    ASSERT_EQ(saved.exitCode, 0) << saved.err;
    EXPECT_EQ(saved.err, "caudalis: evaluation \"East 2025\" stored with id 1\n");
    const auto figures = evaluate(quoted(csv));
    const auto list = run("evaluate list");
    ASSERT_EQ(list.exitCode, 0) << list.err;
    EXPECT_NE(list.out.find(fmt::format("     1  East 2025                       {:>8.1f}{:>8.1f}",
                                        figures["together"]["cu_hh_percent"].get<double>(),
                                        figures["together"]["du_lq_percent"].get<double>())),
              std::string::npos)
        << list.out;
    const auto shown = run("evaluate show 1 --json");
    ASSERT_EQ(shown.exitCode, 0) << shown.err;
    const auto stored = nlohmann::json::parse(shown.out);
    EXPECT_EQ(stored["name"], "East 2025");
    EXPECT_EQ(stored["first_line_readings"], 32);
    EXPECT_EQ(stored["second_line_readings"], 32);
    bool found = false;
    for (const auto& figure : stored["figures"]) {
        if (figure["scope"] == "line west" && figure["figure"] == "cu_hh_percent") {
            EXPECT_DOUBLE_EQ(figure["value"].get<double>(),
                             figures["lines"][1]["figures"]["cu_hh_percent"].get<double>());
            found = true;
        }
    }
    EXPECT_TRUE(found);
    const auto text = run("evaluate show 1");
    EXPECT_NE(text.out.find("Evaluation 1: East 2025"), std::string::npos);
    // Labelled figures with their units, under the crew's line names.
    EXPECT_NE(text.out.find("32 on line east, 32 on line west"), std::string::npos) << text.out;
    EXPECT_NE(text.out.find("Line west:\n"), std::string::npos) << text.out;
    EXPECT_NE(text.out.find(fmt::format("  {:<32}{:.2f}\n", "Mean depth (mm)",
                                        figures["together"]["mean_depth_mm"].get<double>())),
              std::string::npos)
        << text.out;
    EXPECT_NE(text.out.find("Scheduling coefficient 5 %"), std::string::npos);
    EXPECT_EQ(text.out.find("mean_depth_mm"), std::string::npos) << text.out;
    expectFailure(run("evaluate show 7"), ExitCode::BadInput, "holds no evaluation 7");
}

TEST_F(ProgramEvaluateTest, OneTestOfThePublishedSheet) {
    // The 14 published tests of tests/data/field (DOI 10.5281/zenodo.18495332), 80 mm collectors.
    const auto sheet =
        std::string(CAUDALIS_SOURCE_DIR) + "/tests/data/field/pivot-catch-cans-vicosa-2025.csv";
    const auto figures = evaluate(quoted(sheet) + " --test QT_2 --gauge-diameter 0.08");
    ASSERT_EQ(figures["lines"].size(), 2u);
    EXPECT_EQ(figures["lines"][0]["name"], "A");
    EXPECT_NEAR(figures["lines"][0]["figures"]["cu_hh_percent"].get<double>(), 90.344077, 0.5e-4);
    EXPECT_NEAR(figures["lines"][1]["figures"]["cu_hh_percent"].get<double>(), 88.762901, 0.5e-4);
    EXPECT_NEAR(figures["lines_mean"]["cu_hh_percent"].get<double>(), 89.553489, 0.5e-4);
    // The printout names the test as well as the sheet.
    const auto printout = run("evaluate " + quoted(sheet) + " --test QT_2 --gauge-diameter 0.08");
    EXPECT_NE(printout.out.find("Field evaluation: pivot-catch-cans-vicosa-2025 QT_2\n"), std::string::npos)
        << printout.out;
    expectFailure(run("evaluate " + quoted(sheet) + " --gauge-diameter 0.08"), ExitCode::BadInput,
                  "holds 14 tests (QT_2, QT_3, Q0_E03");
    const auto text = write("r.txt", "10 5\n");
    expectFailure(run("evaluate " + quoted(text) + " --gauge-diameter 0.1 --test QT_2"), ExitCode::Usage,
                  "--test selects one test of a CSV readings file with a test column");
}

TEST_F(ProgramEvaluateTest, InitAddsTheFiguresTableToAnOlderProject) {
    execute("project.db", "DROP TABLE pivot_evaluation_figures");
    const auto csv = write("dip.csv", dipReadings());
    expectFailure(run("evaluate " + quoted(csv) + " --save"), ExitCode::BadInput,
                  "has no table pivot_evaluation_figures (it predates stored figures): run caudalis init");
    expectFailure(run("evaluate list"), ExitCode::BadInput, "has no table pivot_evaluation_figures");
    const auto init = run("init .");
    ASSERT_EQ(init.exitCode, 0) << init.err;
    EXPECT_NE(init.out.find("already there, missing side tables added"), std::string::npos) << init.out;
    EXPECT_EQ(run("evaluate " + quoted(csv) + " --save").exitCode, 0);
    EXPECT_NE(
        run("init .").out.find("project database: " + file("project.db") + " (already there, left as it was"),
        std::string::npos);
}

TEST_F(ProgramEvaluateTest, UsageErrors) {
    const auto text = write("r.txt", "10 5\n");
    expectFailure(run("evaluate " + quoted(text)), ExitCode::Usage,
                  "readings in the text form are volumes in ml: give --gauge-diameter");
    const auto csv = write("r.csv", "distance_m,depth_mm\n5,1\n");
    expectFailure(run("evaluate " + quoted(csv) + " " + quoted(text) + " --gauge-diameter 0.1"),
                  ExitCode::Usage,
                  "a CSV readings file holds both radial lines (a line column): give it alone");
    expectFailure(run("evaluate"), ExitCode::Usage, "evaluate needs a readings file, or list or show ID");
    expectFailure(run("evaluate " + quoted(csv) + " --timer 0"), ExitCode::Usage, "--timer");
}

TEST_F(ProgramEvaluateTest, TheShippedCrewSheetPointsAtItsLowOutlet) {
    const auto figures =
        evaluate(example("evaluations/small-2025.csv") + " --gauge-diameter 0.1 --inner-radius 10 --design " +
                 example("designs/small.json"));
    EXPECT_EQ(figures["lines"][1]["name"], "west");
    ASSERT_EQ(figures["left_out"].size(), 7u);
    EXPECT_EQ(figures["left_out"][6]["crew_flag"], "tipped");
    // The text names the crew's lines, not their numbers.
    const auto text =
        run("evaluate " + example("evaluations/small-2025.csv") + " --gauge-diameter 0.1 --inner-radius 10");
    EXPECT_NE(text.out.find("left out: line west collector"), std::string::npos) << text.out;
    EXPECT_EQ(text.out.find("left out: line 2"), std::string::npos) << text.out;
    EXPECT_EQ(figures["comparison"]["outlets"][0]["span"], 2);
    EXPECT_EQ(figures["comparison"]["outlets"][0]["outlet"], 4);
    EXPECT_EQ(figures["end_gun_zone"]["collectors"], 4);
}

TEST_F(ProgramEvaluateTest, ReportIsOnePageWithThePlotAndEveryFigure) {
    const auto html = file("small-2025.html");
    const auto result = run("evaluate " + example("evaluations/small-2025.csv") +
                            " --gauge-diameter 0.1 --inner-radius 10 --design " +
                            example("designs/small.json") + " --report " + quoted(html));
    ASSERT_EQ(result.exitCode, 0) << result.err;
    EXPECT_NE(result.out.find("Field evaluation: small-2025"), std::string::npos)
        << "the text is printed too";
    const auto page = readFile(html);
    EXPECT_EQ(page.rfind("<!DOCTYPE html>", 0), 0u);
    EXPECT_NE(page.find("<title>Field evaluation: small-2025</title>"), std::string::npos);
    EXPECT_NE(page.find("caudalisPlot(\"plot-1\", {\"x\":\"distance from the centre (m)\""),
              std::string::npos);
    EXPECT_NE(page.find("\"label\":\"designed, timer 100 %\""), std::string::npos);
    EXPECT_NE(page.find("\"style\":\"band\""), std::string::npos);
    for (const char* expected :
         {"<th>line east</th>", "<th>line west</th>", "<th>lines&#39; mean</th>",
          "<th>both lines together</th>", "<th>end-gun zone</th>", "Mean depth / expected (%)",
          "struck out by the crew (tipped)", "Measured beside designed", "<td>2-4</td>"}) {
        EXPECT_NE(page.find(expected), std::string::npos) << expected;
    }
    // The figures are those the JSON gives.
    const auto figures =
        evaluate(example("evaluations/small-2025.csv") + " --gauge-diameter 0.1 --inner-radius 10 --design " +
                 example("designs/small.json"));
    const auto cu = fmt::format("<td>CU Heermann-Hein (%)</td><td class=\"num\">{:.1f}</td>",
                                figures["lines"][0]["figures"]["cu_hh_percent"].get<double>());
    EXPECT_NE(page.find(cu), std::string::npos) << cu;

    expectFailure(run("evaluate " + example("evaluations/small-2025.csv") +
                      " --gauge-diameter 0.1 --report /nonexistent/r.html"),
                  ExitCode::BadInput, "cannot write HTML report file /nonexistent/r.html");
}
