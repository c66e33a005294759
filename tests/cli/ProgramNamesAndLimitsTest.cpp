#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <string>
#include <thread>

#include "CliErrors.hpp"
#include "ProgramRun.hpp"

// The built program refuses names that the databases' statements cannot carry, handles every
// documented maximum and says clearly when one is passed, and leaves no scratch files behind
// when it is interrupted.
using namespace caudalis::cli;
using namespace caudalis::cli::clitest;

namespace {

constexpr const char* refusal = "may not contain ?, an apostrophe or a control character";

std::string nozzleRows(const std::string& brand, const std::string& model, int count) {
    std::string rows;
    for (int i = 1; i <= count; ++i) {
        rows += brand + "," + model + ",N" + std::to_string(i) + ",0.0125,0.5,50,300,0.1,0.3\n";
    }
    return rows;
}

/// Readings lines "amount distance", all valid, `count` of them.
std::string readingLines(int count) {
    std::string lines;
    for (int i = 1; i <= count; ++i) {
        lines += std::to_string(50 + i % 7) + " " + std::to_string(i) + "\n";
    }
    return lines;
}

/// A design of `outlets` outlets every metre in spans of 100, with or without an end gun.
std::string designWithOutlets(long outlets, bool endGun) {
    std::string spans;
    for (long left = outlets; left > 0; left -= 100) {
        spans += std::string(spans.empty() ? "" : ",") +
                 "{\"length_m\": " + std::to_string(std::min(left, 100L)) +
                 ", \"diameter_mm\": 168.3, \"outlet_spacing_cm\": 100, \"end_elevation_m\": 50}";
    }
    return "{\"name\": \"Long\", \"inlet_pressure_kpa\": 220, \"design_flow_lps\": 500, \"roughness_c\": "
           "140, "
           "\"centre_elevation_m\": 50, \"revolution_time_h\": 12, \"spans\": [" +
           spans + "]," + (endGun ? "\"end_gun\": {\"ring_width_m\": 20}," : "") +
           "\"nozzle_selection\": {\"tolerance\": 0.15}}";
}

class ProgramNamesAndLimitsTest : public ProgramTest {
protected:
    /// Whether a scratch file of a catalogue import is in the folder.
    bool holdsImportScratch() const {
        for (const auto& entry : std::filesystem::directory_iterator(folder.path())) {
            if (entry.path().filename().string().starts_with("catalogue.db.")) {
                return true;
            }
        }
        return false;
    }
};

}  // namespace

TEST_F(ProgramNamesAndLimitsTest, ChartNamesWithAMarkAQuoteOrAControlCharacterAreRefused) {
    const auto before = databases();
    for (const std::string name : {"\"a?b\"", "\"Farmer's\"", "\"$(printf 'a\\tb')\""}) {
        SCOPED_TRACE(name);
        expectFailure(run("design " + example("designs/small.json") + " --save " + name), ExitCode::BadInput,
                      refusal);
    }
    expectFailure(run("design " + example("designs/small.json") + " --save \"$(printf 'a\\tb')\""),
                  ExitCode::BadInput, "chart name \"a\\x09b\" " + std::string(refusal));
    EXPECT_EQ(databases(), before);
}

TEST_F(ProgramNamesAndLimitsTest, EvaluationNamesWithAMarkAreRefused) {
    const auto before = databases();
    expectFailure(run("evaluate " + example("evaluations/north-2024.txt") +
                      " --gauge-diameter 0.1 --name \"a?b\" --save"),
                  ExitCode::BadInput, "evaluation name \"a?b\" " + std::string(refusal));
    EXPECT_EQ(databases(), before);
}

TEST_F(ProgramNamesAndLimitsTest, CatalogueNamesWithAMarkAreRefusedBeforeAnythingIsImported) {
    const auto before = databases();
    for (const auto& [row, field] :
         {std::pair{"Nimbra,NX,a?b,0.0125,0.5,50,300,0.1,0.3\n", "nozzle \"a?b\""},
          std::pair{"Nimbra,c?d,N1,0.0125,0.5,50,300,0.1,0.3\n", "model \"c?d\""},
          std::pair{"N?mbra,NX,N1,0.0125,0.5,50,300,0.1,0.3\n", "brand \"N?mbra\""}}) {
        SCOPED_TRACE(row);
        const auto csv = write("names.csv", nozzleRows("Nimbra", "NX", 2) + row);
        expectFailure(run("catalogue import " + quoted(csv)), ExitCode::BadInput,
                      "line 3: " + std::string(field) + " " + refusal);
    }
    EXPECT_EQ(databases(), before);
}

TEST_F(ProgramNamesAndLimitsTest, InterruptedImportLeavesNoScratchFilesAndTheCatalogueAsItWas) {
    const auto before = databases();
    // Enough rows that the import is still running when the interrupt comes (about 1 s here).
    const auto csv = write("many.csv", nozzleRows("Nimbra", "NX", 200000));
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        if (chdir(folder.path().c_str()) == 0) {
            execl(CAUDALIS_CLI_EXECUTABLE, "caudalis", "catalogue", "import", csv.c_str(), nullptr);
        }
        _exit(127);
    }
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    while (!holdsImportScratch() && std::chrono::steady_clock::now() < deadline) {
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    ASSERT_TRUE(holdsImportScratch()) << "the import never started";
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    ASSERT_EQ(kill(child, SIGINT), 0);
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFSIGNALED(status)) << "the import ended before the interrupt (status " << status << ")";
    EXPECT_EQ(WTERMSIG(status), SIGINT);
    EXPECT_FALSE(holdsImportScratch());
    EXPECT_EQ(databases(), before);
}

TEST_F(ProgramNamesAndLimitsTest, EveryDocumentedNumberOfReadingsIsEvaluatedAndOneMoreIsRefused) {
    const auto most = write("most.txt", readingLines(32767));
    const auto evaluated = run("evaluate " + quoted(most) + " --gauge-diameter 0.1");
    EXPECT_EQ(evaluated.exitCode, 0) << evaluated.err;
    const auto split = write("split.txt", readingLines(16384) + "\n" + readingLines(16383));
    EXPECT_EQ(run("evaluate " + quoted(split) + " --gauge-diameter 0.1").exitCode, 0);
    const auto tooMany = write("too-many.txt", readingLines(32768));
    expectFailure(run("evaluate " + quoted(tooMany) + " --gauge-diameter 0.1"), ExitCode::BadInput,
                  "32768 readings, more than the 32767 an evaluation can hold");
    const auto tooManySplit = write("too-many-split.txt", readingLines(16384) + "\n" + readingLines(16384));
    expectFailure(run("evaluate " + quoted(tooManySplit) + " --gauge-diameter 0.1"), ExitCode::BadInput,
                  "32768 readings, more than the 32767 an evaluation can hold");
}

TEST_F(ProgramNamesAndLimitsTest, TheMostOutletsAreDesignedAndOneMoreIsRefused) {
    const auto most = write("most.json", designWithOutlets(32767, false));
    const auto designed = run("design " + quoted(most));
    EXPECT_EQ(designed.exitCode, 0) << designed.err;
    EXPECT_NE(designed.out.find("Sprinkler chart: Long"), std::string::npos);
    expectFailure(run("design " + quoted(write("over.json", designWithOutlets(32768, false)))),
                  ExitCode::BadInput, "spans have 32768 outlets in all, more than 32767");
    expectFailure(run("design " + quoted(write("over-gun.json", designWithOutlets(32767, true)))),
                  ExitCode::BadInput,
                  "spans and end_gun have 32768 outlets in all (the end gun counts as one), more than 32767");
}

// The chart tables carry a chart's id as a 16-bit number: the chart that gets id 32767 is
// stored, the next one is refused with the reason and leaves both databases as they were.
TEST_F(ProgramNamesAndLimitsTest, TheLastChartIdIsStoredAndThenChartsAreRefused) {
    const auto design = "design " + example("designs/small.json");
    ASSERT_EQ(run(design + " --save First").exitCode, 0);
    execute("project.db", "UPDATE sqlite_sequence SET seq = 32766 WHERE name = 'tb_cartas'");
    const auto last = run(design + " --save Last");
    ASSERT_EQ(last.exitCode, 0) << last.err;
    EXPECT_NE(last.err.find("with id 32767"), std::string::npos) << last.err;
    const auto before = databases();
    expectFailure(run(design + " --save Refused"), ExitCode::BadInput,
                  "the database's next chart id is beyond 32767, the largest the chart tables take; "
                  "nothing was stored");
    EXPECT_EQ(databases(), before);
}
