#include <gtest/gtest.h>

#include <regex>
#include <set>
#include <sstream>

#include <nlohmann/json.hpp>

#include "ProgramRun.hpp"

// A design written in US customary units prints no SI figure anywhere: not in the printout's
// verdict, summary and tables, the JSON keys, the CSV header and values, the HTML report, nor a
// stored chart's printout. The shipped quarter-mile example and a machine of the tests' own
// (with a runoff check, whose findings carry figures) are scanned.
using namespace caudalis::cli::clitest;

namespace {

/// The SI units a reader could meet: after a number ("198.1 m"), between brackets ("(mm)"),
/// alone as a column heading ("pipe kPa") or ending a key ("depth_mm").
const std::regex& siUnit() {
    static const std::regex pattern(R"((\d\s?(mm/h|m/h|m3/h|mm|cm|kPa|l/s|L/s|ha|m2|m)(?![A-Za-z0-9/_]))|)"
                                    R"((\((mm/h|m/h|mm|cm|kPa|l/s|ha|m2|m)\))|)"
                                    R"(((^|[\s"])(mm/h|mm|kPa|l/s|ha)(?=[\s",<]))|)"
                                    R"((_(mm|kpa|lps|cm|ha|m2|mm_h|m)(?![A-Za-z0-9_])))");
    return pattern;
}

/// Every SI unit found in `text`, with a little of what surrounds it.
std::set<std::string> siUnitsIn(const std::string& text) {
    std::set<std::string> found;
    for (auto it = std::sregex_iterator(text.begin(), text.end(), siUnit()); it != std::sregex_iterator();
         ++it) {
        const auto at = static_cast<std::size_t>(it->position());
        found.insert(text.substr(at > 20 ? at - 20 : 0, it->length() + 40));
    }
    return found;
}

/// `text` without the given names (a catalogue's nozzle names, "#6 (1.19 mm)", are names, not
/// figures the program prints) and without the embedded plotting library and style sheet.
std::string withoutNames(std::string text, const std::set<std::string>& names) {
    for (const auto& name : names) {
        for (auto at = text.find(name); at != std::string::npos; at = text.find(name, at)) {
            text.replace(at, name.size(), "NOZZLE");
        }
    }
    for (const auto& [open, close] : {std::pair<std::string, std::string>{"<script>\n/*!", "</script>"},
                                      std::pair<std::string, std::string>{"<style>", "</style>"}}) {
        const auto start = text.find(open);
        if (start != std::string::npos) {
            text.erase(start, text.find(close, start) - start);
        }
    }
    return text;
}

class ProgramUnitsTest : public ProgramTest {
protected:
    void SetUp() override {
        ProgramTest::SetUp();
        const auto listed = run("catalogue list --json");
        ASSERT_EQ(listed.exitCode, 0) << listed.err;
        for (const auto& nozzle : nlohmann::json::parse(listed.out)) {
            nozzleNames.insert(nozzle["nome"].get<std::string>());
        }
        ASSERT_FALSE(nozzleNames.empty());
    }

    /// Runs the command and expects it to succeed; returns what it printed.
    std::string output(const std::string& arguments) const {
        const auto result = run(arguments);
        EXPECT_EQ(result.exitCode, 0) << arguments << "\n" << result.err;
        return result.out;
    }

    void expectNoSI(const std::string& what, const std::string& text) const {
        EXPECT_FALSE(text.empty()) << what;
        const auto found = siUnitsIn(withoutNames(text, nozzleNames));
        EXPECT_TRUE(found.empty()) << what << " prints SI units:\n"
                                   << [&found] {
                                          std::string lines;
                                          for (const auto& f : found) {
                                              lines += "  ..." + f + "...\n";
                                          }
                                          return lines;
                                      }();
    }

    /// Every output of a design run in US units, and the printout of the chart it stores.
    void expectEveryOutputInUS(const std::string& design) {
        const auto csv = file("outlets.csv");
        const auto html = file("report.html");
        expectNoSI("text", output("design " + design + " --csv " + quoted(csv) + " --report " + quoted(html) +
                                  " --save stored"));
        expectNoSI("CSV", readFile(csv));
        expectNoSI("HTML", readFile(html));
        expectNoSI("JSON", output("design " + design + " --json"));
        const auto id = chartId("stored");
        expectNoSI("chart show", output("chart show " + id));
        expectNoSI("chart show --units us", output("chart show " + id + " --units us"));
    }

    /// The id of the stored chart named `name`, as `chart list` gives it.
    std::string chartId(const std::string& name) const {
        std::istringstream lines(output("chart list"));
        std::string system;
        std::string id;
        std::string named;
        for (std::string line; std::getline(lines, line);) {
            std::istringstream(line) >> system >> id >> named;
            if (named == name) {
                return id;
            }
        }
        ADD_FAILURE() << "no chart " << name;
        return "0";
    }

    std::set<std::string> nozzleNames;
};

}  // namespace

TEST_F(ProgramUnitsTest, TheScanFindsSIInAnSIPrintout) {
    const auto design = example("designs/us-quarter-mile.json");
    EXPECT_FALSE(siUnitsIn(withoutNames(output("design " + design + " --units si"), nozzleNames)).empty());
    EXPECT_FALSE(siUnitsIn(output("design " + design + " --units si --json")).empty());
    EXPECT_EQ(siUnitsIn("At P-650 (650 ft) the peak application rate of 1.69 in/h").size(), 0u);
    for (const char* leak : {"At P-650 (198.1 m) the", "rate of 42.9 mm/h", "depth_mm,",
                             "\"pipe_pressure_kpa\":", "pipe kPa ", "(m)"}) {
        EXPECT_EQ(siUnitsIn(leak).size(), 1u) << leak;
    }
}

TEST_F(ProgramUnitsTest, TheShippedUSDesignPrintsNoSIFigure) {
    expectEveryOutputInUS(example("designs/us-quarter-mile.json"));
}

TEST_F(ProgramUnitsTest, AUSDesignWithARunoffCheckPrintsNoSIFigure) {
    expectEveryOutputInUS(quoted(sourcePath("tests/cli/designs/us-sandy-half-mile.json")));
}

TEST_F(ProgramUnitsTest, AUSVerdictStatesTheRunoffInFeetAndInches) {
    const auto text = output("design " + quoted(sourcePath("tests/cli/designs/us-sandy-half-mile.json")));
    EXPECT_NE(text.find("At P-700 (700 ft) the peak application rate of "), std::string::npos) << text;
    EXPECT_NE(text.find(" in/h exceeds the soil's intake: "), std::string::npos) << text;
    EXPECT_NE(text.find("Potential runoff from "), std::string::npos) << text;
}

TEST_F(ProgramUnitsTest, TheCsvLabelsEveryMeasureWithItsUnit) {
    const auto us = file("us.csv");
    const auto si = file("si.csv");
    output("design " + example("designs/us-quarter-mile.json") + " --csv " + quoted(us));
    output("design " + example("designs/us-quarter-mile.json") + " --csv " + quoted(si) + " --units si");
    const auto usTable = readFile(us);
    const auto siTable = readFile(si);
    EXPECT_EQ(usTable.rfind("span,outlet,place,distanciaAoPivot_ft,cota_ft,caudal_gpm,pressao_ideal_psi,", 0),
              0u)
        << usTable.substr(0, 300);
    EXPECT_NE(usTable.find(",depth_in,ideal_depth_in,pipe_pressure_psi,nozzle_in,nozzle_inch_128ths\n"),
              std::string::npos);
    EXPECT_NE(siTable.find(",depth_mm,ideal_depth_mm,pipe_pressure_kpa,nozzle_mm,nozzle_inch_128ths\n"),
              std::string::npos);
    // The first outlet's pipe pressure, in psi in one and kPa in the other.
    const auto field = [](const std::string& table, int column) {
        auto row = table.substr(table.find('\n') + 1);
        row = row.substr(0, row.find('\n'));
        std::size_t start = 0;
        for (int i = 0; i < column; ++i) {
            start = row.find(',', start) + 1;
        }
        return std::stod(row.substr(start, row.find(',', start) - start));
    };
    EXPECT_NEAR(field(siTable, 18), field(usTable, 18) * 6.894757, 1e-6);
    EXPECT_LT(field(usTable, 18), 60);
}

namespace {

/// Two radial lines of collectors every 10 ft from 20 ft to 1150 ft, depths in inches, one
/// collector struck out by the crew.
std::string usReadings() {
    std::string sheet = "line,collector,distance_ft,depth_in,flag\n";
    for (int line = 1; line <= 2; ++line) {
        for (int feet = 20, n = 1; feet <= 1150; feet += 10, ++n) {
            const double depth = 0.36 + 0.02 * ((n * 7 + line) % 5) - 0.01 * (n % 3);
            sheet += std::to_string(line) + "," + std::to_string(n) + "," + std::to_string(feet) + "," +
                     std::to_string(depth) + (n == 40 ? ",wind\n" : ",\n");
        }
    }
    return sheet;
}

}  // namespace

TEST_F(ProgramUnitsTest, EvaluatePrintsReadingsInFeetAndInchesInUSUnits) {
    const auto sheet = quoted(write("us-test.csv", usReadings()));
    const auto html = file("evaluation.html");
    const auto design = " --design " + example("designs/us-quarter-mile.json");
    const auto text = output("evaluate " + sheet + design + " --report " + quoted(html));
    expectNoSI("evaluate", text);
    EXPECT_NE(text.find("Mean depth (in)"), std::string::npos) << text;
    EXPECT_NE(text.find("depths in in"), std::string::npos) << text;
    expectNoSI("evaluate --report", readFile(html));
    const auto json = output("evaluate " + sheet + design + " --json");
    expectNoSI("evaluate --json", json);
    const auto document = nlohmann::json::parse(json);
    EXPECT_EQ(document["units"], "us");
    EXPECT_NEAR(document["together"]["mean_depth_in"].get<double>(), 0.38, 0.03);
    EXPECT_NEAR(document["collectors"][0]["distance_ft"].get<double>(), 20, 1e-9);
    const auto si = output("evaluate " + sheet + " --units si");
    EXPECT_NE(si.find("Mean depth (mm)"), std::string::npos) << si;
    EXPECT_FALSE(siUnitsIn(si).empty());
}

TEST_F(ProgramUnitsTest, ChartShowPrintsInTheUnitsAsked) {
    output("design " + example("designs/small.json") + " --save small");
    const auto si = output("chart show " + chartId("small"));
    const auto us = output("chart show " + chartId("small") + " --units us");
    EXPECT_NE(si.find("pipe kPa"), std::string::npos) << si;
    EXPECT_NE(us.find("pipe psi"), std::string::npos) << us;
    EXPECT_NE(us.find("distance ft"), std::string::npos) << us;
    EXPECT_EQ(us.find("kPa"), std::string::npos) << us;
}
