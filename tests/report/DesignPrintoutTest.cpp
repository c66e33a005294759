// The design printout field by field on the shipped examples, in SI and US customary units.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <sstream>

#include <nlohmann/json.hpp>

#include "SampleNozzles.hpp"
#include "caudalis/catalogue/Aspersor.hpp"
#include "caudalis/design/DesignFile.hpp"
#include "caudalis/design/DesignRunner.hpp"
#include "caudalis/design/InMemoryNozzleSource.hpp"
#include "caudalis/design/PipePressures.hpp"
#include "caudalis/design/SpeedTable.hpp"
#include "caudalis/report/DesignPrintout.hpp"
#include "caudalis/report/JsonReport.hpp"
#include "caudalis/report/TextReport.hpp"

using namespace caudalis;
using namespace caudalis::design;

namespace {

DesignDescription load(const std::string& name) {
    return DesignFile::load(caudalis::testing::sourcePath("examples/designs/" + name + ".json"));
}

DesignResult run(const DesignDescription& description) {
    InMemoryNozzleSource source(caudalis::testing::sampleCatalogue(),
                                caudalis::testing::sampleWettedDiameters());
    return DesignRunner().run(description, source);
}

DesignResult run(const std::string& name) {
    return run(load(name));
}

std::string fixed(double value, int decimals) {
    char buffer[64];
    std::snprintf(buffer, sizeof buffer, "%.*f", decimals, value);
    return buffer;
}

/// The cells of the table row whose first cell is `key`.
std::vector<std::string> rowOf(const ReportSection& section, const std::string& key) {
    for (const auto& block : section.blocks) {
        if (const auto* table = std::get_if<ReportTable>(&block)) {
            for (const auto& row : table->rows) {
                if (!row.empty() && row.front() == key) {
                    return row;
                }
            }
        }
    }
    ADD_FAILURE() << "no row " << key << " in " << section.heading;
    return {};
}

std::size_t outletIndex(const DesignResult& result, const std::string& label) {
    for (std::size_t i = 0; i < result.outlets.size(); ++i) {
        const auto& o = result.outlets[i];
        if ((o.place == OutletPlace::EndGun
                 ? "gun"
                 : std::to_string(o.span) + "-" + std::to_string(o.number)) == label) {
            return i;
        }
    }
    ADD_FAILURE() << "no outlet " << label;
    return 0;
}

class RealisticPrintout : public ::testing::Test {
protected:
    // The realistic machine on a heavier soil than its file's (Kostiakov k 12.5, a 0.55), so that
    // the runoff check has something to find.
    static void SetUpTestSuite() {
        auto description = load("realistic");
        description.pluviometryCheck->kostiakov = KostiakovDescription{12.5, 0.55};
        result = new DesignResult(run(description));
    }
    static void TearDownTestSuite() { delete result; }
    static DesignResult* result;
};
DesignResult* RealisticPrintout::result = nullptr;

}  // namespace

TEST_F(RealisticPrintout, EveryOutletFieldInSi) {
    const UnitText si{Units(UnitSystem::SI)};
    const auto section = DesignPrintout::outlets(*result, si);
    const auto i = outletIndex(*result, "7-19");
    const auto& row = result->outlets[i];
    const auto& o = row.outlet;
    const auto cells = rowOf(section, "7-19");
    ASSERT_EQ(cells.size(), 18U);
    EXPECT_EQ(cells[1], fixed(o.distanciaAoPivot, 2));                    // distance m
    EXPECT_EQ(cells[2], fixed(o.cota, 2));                                // ground m
    EXPECT_EQ(cells[3], fixed(result->analysis.pipePressuresKpa[i], 1));  // pipe kPa
    EXPECT_EQ(cells[4], fixed(o.pressao_real, 1));                        // after the drop
    EXPECT_EQ(cells[5], fixed(o.pressao_actuante, 1));                    // acting
    EXPECT_EQ(cells[6], fixed(o.caudal, 4));                              // required l/s
    EXPECT_EQ(cells[7], fixed(o.caudal_do_aspersor, 4));                  // delivered l/s
    EXPECT_EQ(cells[11], o.obj_aspersor->marca().nome + " " + o.obj_aspersor->modelo().nome);
    EXPECT_EQ(cells[12], o.obj_aspersor->nome());
    EXPECT_EQ(cells[16], fixed(row.depthMm, 2));
    // Polyethylene drops 19 mm x 2.5 m (no height given) behind 103 kPa regulators of no named
    // model; the pipe pressure is above the pressure after the drop.
    EXPECT_EQ(cells[13], "-");
    EXPECT_EQ(cells[14], "Polyethylene 19.0 mm x 2.50 m");
    EXPECT_EQ(cells[15], "103.0 kPa");
    EXPECT_GT(result->analysis.pipePressuresKpa[i], o.pressao_real);
    const auto gun = rowOf(section, "gun");
    EXPECT_EQ(gun[2], "-") << "the end gun has no ground elevation of its own";
}

TEST_F(RealisticPrintout, SpansAndGroundByHand) {
    const UnitText si{Units(UnitSystem::SI)};
    const auto spans = rowOf(DesignPrintout::spans(*result, si), "2");
    const auto& span = result->spans[1].span;
    EXPECT_EQ(spans[1], "Span 2 (54.9 m)");
    EXPECT_EQ(spans[3], "-") << "no outside diameter in the file";
    EXPECT_EQ(spans[4], "168.3");
    EXPECT_EQ(spans[5], "275.0");
    EXPECT_EQ(spans[7], "140");
    EXPECT_EQ(spans[8], fixed(span.entry_conditions.pressao, 1));
    EXPECT_EQ(spans[9], fixed(span.entry_conditions.caudal, 3));
    EXPECT_EQ(spans[10], fixed(span.exit_condition.pressao, 1));
    EXPECT_EQ(spans[11], fixed(span.exit_condition.caudal, 3));
    // Span 2 climbs from 112.6 m to 113.5 m: gain 0.90 m, worth 9 kPa of the pressure drop.
    EXPECT_EQ(spans[13], "0.90");
    EXPECT_EQ(spans[12], fixed(span.entry_conditions.pressao - span.exit_condition.pressao - 9.0, 1));
    // The ground: 112.0 m at the pivot, highest 113.5 m at the end of span 2 (109.8 m), lowest
    // 110.9 m at the end of span 5.
    const auto& elevation = result->analysis.elevation;
    EXPECT_DOUBLE_EQ(elevation.atPivotM, 112.0);
    EXPECT_NEAR(elevation.highestM, 113.5, 1e-9);
    EXPECT_NEAR(elevation.highestAtM, 109.8, 1e-9);
    EXPECT_NEAR(elevation.lowestM, 110.9, 1e-9);
}

TEST_F(RealisticPrintout, DepthTimerAndRunoffAgree) {
    const auto& s = result->summary;
    const auto& a = result->analysis;
    ASSERT_TRUE(a.depths.has_value());
    // Volume over area: Q x 3600 x 20 h / area.
    EXPECT_NEAR(a.depths->volumeOverAreaMm, s.computedFlowLps * 3600 * 20 / s.irrigatedAreaM2, 1e-12);
    EXPECT_NEAR(a.depths->volumeOverAreaMm, 6.0, 0.05);
    EXPECT_NEAR(a.depths->distanceWeightedMeanMm, *s.depthMm, 1e-9) << "the uniformity figures' mean";
    // Timer: 50 % doubles the revolution time and the depth; the end tower is at 7 x 54.9 m.
    EXPECT_DOUBLE_EQ(a.speeds.tempoH100, 20);
    EXPECT_DOUBLE_EQ(a.speeds.velocidades(5).tempoDeUmaVolta, 40);
    EXPECT_NEAR(a.speeds.velocidades(5).dotacao, 2 * a.depths->volumeOverAreaMm, 1e-12);
    EXPECT_NEAR(a.speeds.velocidades(10).velocidadeLinear, 2 * 3.14159265358979 * 384.3 / 20, 1e-9);
    // Runoff at the check points from the peak rates of the summary and k 12.5, a 0.55.
    ASSERT_EQ(a.runoffAtCheckPoints.size(), 2U);
    const RunoffCheck check(KostiakovParameters{12.5, 0.55}, 20);
    const auto expected = check.at(395, 14, s.peakRates[1].rateMmH);
    EXPECT_EQ(a.runoffAtCheckPoints[1].code, "P-395");
    EXPECT_DOUBLE_EQ(a.runoffAtCheckPoints[1].estimate.runoffMm, expected.runoffMm);
    EXPECT_NEAR(a.runoffAtCheckPoints[1].estimate.appliedMm, a.depths->volumeOverAreaMm, 1e-9);
    EXPECT_FALSE(a.runoffAlongMachine.empty());
    // The profile of the overlapping patterns gives its own CU, labelled apart.
    ASSERT_TRUE(a.profileUniformityCoefficient.has_value());
    EXPECT_GT(*a.profileUniformityCoefficient, 50);
    EXPECT_LT(*a.profileUniformityCoefficient, *s.uniformityCoefficient);
}

TEST_F(RealisticPrintout, TextHoldsEverySectionAndTheVerdict) {
    std::ostringstream out;
    TextReport::write(out, *result);
    const auto text = out.str();
    for (const char* expected :
         {"Verdict", "runoff-at-check-point", "Summary", "Depth per revolution (volume over area)",
          "CU Heermann-Hein, application profile", "Spans", "Outlets", "pipe kPa", "after drop kPa",
          "nozzle /128 in", "Timer settings", "Runoff", "minutes under water"}) {
        EXPECT_NE(text.find(expected), std::string::npos) << expected;
    }
    EXPECT_NE(text.find(fixed(result->analysis.depths->volumeOverAreaMm, 2) + " mm"), std::string::npos);
    EXPECT_EQ(text.find("-1--1"), std::string::npos);
}

TEST_F(RealisticPrintout, UsCustomaryUnits) {
    const UnitText us{Units(UnitSystem::US)};
    const auto i = outletIndex(*result, "7-19");
    const auto& o = result->outlets[i].outlet;
    const auto cells = rowOf(DesignPrintout::outlets(*result, us), "7-19");
    EXPECT_EQ(cells[1], fixed(o.distanciaAoPivot / 0.3048, 1));                      // ft
    EXPECT_EQ(cells[3], fixed(result->analysis.pipePressuresKpa[i] / 6.894757, 2));  // psi
    EXPECT_EQ(cells[7], fixed(o.caudal_do_aspersor / 0.0630902, 3));                 // gpm
    EXPECT_EQ(cells[16], fixed(result->outlets[i].depthMm / 25.4, 3));               // in
    auto inUs = *result;
    inUs.design.units = UnitSystem::US;
    std::ostringstream out;
    TextReport::write(out, inUs);
    for (const char* expected :
         {"pipe psi", "required gpm", "distance ft", "Irrigated area", "acre", "ft/h"}) {
        EXPECT_NE(out.str().find(expected), std::string::npos) << expected;
    }
}

TEST(HillyPrintout, OutsideDiametersDropsAndRegulators) {
    const auto result = run("hilly");
    const UnitText si{Units(UnitSystem::SI)};
    const auto span = rowOf(DesignPrintout::spans(result, si), "3");
    EXPECT_EQ(span[3], "147.3");
    EXPECT_EQ(span[4], "141.3");
    EXPECT_EQ(span[14], "140.0");
    const auto cells = rowOf(DesignPrintout::outlets(result, si), "2-5");
    EXPECT_EQ(cells[13], "1.20");
    EXPECT_EQ(cells[14], "Polyethylene 19.0 mm x 3.50 m");
    EXPECT_EQ(cells[15], "Vellora PR-20 140.0 kPa");
    const auto i = outletIndex(result, "2-5");
    EXPECT_GT(result.analysis.pipePressuresKpa[i], result.outlets[i].outlet.pressao_real)
        << "the drop costs pressure";
    const auto us = rowOf(DesignPrintout::outlets(result, UnitText(Units(UnitSystem::US))), "2-5");
    EXPECT_EQ(us[13], fixed(1.2 / 0.3048, 1));
    EXPECT_EQ(us[15], "Vellora PR-20 " + fixed(140 / 6.894757, 2) + " psi");
    // Without a Kostiakov law the runoff check says why it was not made.
    EXPECT_TRUE(std::any_of(result.findings.begin(), result.findings.end(),
                            [](const Finding& f) { return f.code == "runoff-not-checked"; }));
}

TEST(DesignPrintoutFindings, UnknownWettedDiametersAreNamed) {
    InMemoryNozzleSource source(caudalis::testing::sampleCatalogue());
    const auto result = DesignRunner().run(
        DesignFile::load(caudalis::testing::sourcePath("examples/designs/small.json")), source);
    EXPECT_FALSE(result.analysis.modelsWithoutWettedDiameter.empty());
    EXPECT_TRUE(result.analysis.profile.empty());
    EXPECT_TRUE(std::any_of(result.findings.begin(), result.findings.end(),
                            [](const Finding& f) { return f.code == "wetted-diameter-unknown"; }));
}

/// Writes back as JSON text what a walk over a document hands it.
class TextVisitor final : public JsonVisitor {
public:
    std::string written;

    void null() override { value("null"); }
    void boolean(bool v) override { value(v ? "true" : "false"); }
    void integer(long long v) override { value(std::to_string(v)); }
    void real(double v) override {
        char buffer[32];
        std::snprintf(buffer, sizeof buffer, "%.17g", v);
        value(buffer);
    }
    void text(const std::string& v) override { value(nlohmann::json(v).dump()); }
    void beginObject(std::size_t) override { open('{'); }
    void key(const std::string& name) override {
        separate();
        written += nlohmann::json(name).dump() + ":";
        first_ = true;
    }
    void endObject() override { close('}'); }
    void beginArray(std::size_t) override { open('['); }
    void endArray() override { close(']'); }

private:
    void separate() {
        if (!first_) {
            written += ',';
        }
        first_ = false;
    }
    void value(const std::string& v) {
        separate();
        written += v;
    }
    void open(char bracket) {
        separate();
        written += bracket;
        first_ = true;
    }
    void close(char bracket) {
        written += bracket;
        first_ = false;
    }
    bool first_ = true;
};

TEST_F(RealisticPrintout, AWalkOverTheJsonHandsOverTheSameDocumentAsItsText) {
    for (const auto system : {UnitSystem::SI, UnitSystem::US}) {
        TextVisitor visitor;
        JsonReport::visit(*result, Units(system), visitor);
        EXPECT_EQ(nlohmann::json::parse(visitor.written),
                  nlohmann::json::parse(JsonReport::text(*result, Units(system))));
    }
}

TEST_F(RealisticPrintout, JsonHoldsTheNewFields) {
    const auto json = JsonReport::text(*result);
    for (const char* expected :
         {"\"pipe_pressure_kpa\"", "\"nozzle_size\"", "\"inch_128ths\"", "\"friction_loss_kpa\"",
          "\"elevation_gain_m\"", "\"outside_diameter_mm\"", "\"speed_table\"", "\"volume_over_area_mm\"",
          "\"runoff_mm\"", "\"profile_cu_heermann_hein_percent\"", "\"highest_at_m\""}) {
        EXPECT_NE(json.find(expected), std::string::npos) << expected;
    }
}
