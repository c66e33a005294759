#include <gtest/gtest.h>

#include <algorithm>

#include "SampleNozzles.hpp"
#include "caudalis/design/DesignChecks.hpp"
#include "caudalis/design/DesignFile.hpp"
#include "caudalis/design/DesignRunner.hpp"
#include "caudalis/design/InMemoryNozzleSource.hpp"
#include "caudalis/design/PlausibilityChecks.hpp"
#include "caudalis/design/StarvedRegulators.hpp"
#include "caudalis/design/Uniformity.hpp"

using namespace caudalis;
using namespace caudalis::design;

namespace {

DesignDescription example(const std::string& name) {
    return DesignFile::load(caudalis::testing::sourcePath("examples/designs/" + name + ".json"));
}

DesignResult run(const DesignDescription& design) {
    InMemoryNozzleSource source(caudalis::testing::sampleCatalogue());
    return DesignRunner().run(design, source);
}

const Finding* findingOf(const DesignResult& result, const std::string& code) {
    const auto found = std::find_if(result.findings.begin(), result.findings.end(),
                                    [&](const Finding& f) { return f.code == code; });
    return found == result.findings.end() ? nullptr : &*found;
}

bool hasFinding(const std::vector<Finding>& findings, const std::string& code) {
    return std::any_of(findings.begin(), findings.end(), [&](const Finding& f) { return f.code == code; });
}

/// Regulators of `pressure` on every fixed span of the design.
void regulateEverySpan(DesignDescription& design, double pressure) {
    design.regulators.clear();
    for (std::size_t i = 1; i <= design.spans.size(); ++i) {
        design.regulators.push_back(
            RegulatorDescription{static_cast<int>(i), pressure, 0, 0, true, std::nullopt});
    }
}

}  // namespace

TEST(DesignChecks, ACleanDesignHasNoWarning) {
    const auto result = run(example("small"));
    EXPECT_FALSE(result.has(Severity::Error));
    EXPECT_FALSE(result.has(Severity::Warning));
    EXPECT_FALSE(result.fails(true));
}

TEST(DesignChecks, StarvedRegulatorsAreReportedPerSpan) {
    auto design = example("small");
    regulateEverySpan(design, 200);  // the pipe holds at most 220 kPa, less than 200 + 35
    const auto result = run(design);
    const auto* finding = findingOf(result, "regulator-starved");
    ASSERT_NE(finding, nullptr);
    EXPECT_EQ(finding->severity, Severity::Warning);
    EXPECT_NE(finding->message.find("less than the 200.0 kPa rating plus the 35.0 kPa margin"),
              std::string::npos)
        << finding->message;
    for (const auto& row : result.outlets) {
        if (row.regulated) {
            EXPECT_TRUE(row.starvedRegulator);
        }
    }
    EXPECT_TRUE(result.fails(true));
    EXPECT_FALSE(result.fails(false));
    // With a rating the pipe can feed, no regulator starves.
    regulateEverySpan(design, 100);
    EXPECT_EQ(findingOf(run(design), "regulator-starved"), nullptr);
}

TEST(DesignChecks, PsiTypedAsKpaEndsInNegativePipePressure) {
    auto design = example("realistic");
    design.inletPressureKpa = 35;
    regulateEverySpan(design, 103);
    const auto result = run(design);
    const auto* negative = findingOf(result, "pipe-pressure-negative");
    ASSERT_NE(negative, nullptr);
    EXPECT_EQ(negative->severity, Severity::Error);
    EXPECT_NE(findingOf(result, "regulator-starved"), nullptr);
    EXPECT_EQ(result.findings.front().severity, Severity::Error);
    EXPECT_TRUE(result.fails(false));
}

TEST(DesignChecks, EmptyOutletsDischargeAndUniformity) {
    auto design = example("small");
    design.nozzleSelection.tolerance = 0.005;
    design.checks.minimumUniformityPercent = 99.95;
    const auto result = run(design);
    EXPECT_NE(findingOf(result, "outlets-without-nozzle"), nullptr);
    EXPECT_NE(findingOf(result, "discharge-off"), nullptr);
    EXPECT_NE(findingOf(result, "low-uniformity"), nullptr);
    // The nearest size fills the same outlets, each flagged.
    design.nozzleSelection.whenNoneFits = NoFitPolicy::NearestSize;
    const auto nearest = run(design);
    EXPECT_EQ(findingOf(nearest, "outlets-without-nozzle"), nullptr);
    const auto* flagged = findingOf(nearest, "nearest-size");
    ASSERT_NE(flagged, nullptr);
    EXPECT_EQ(flagged->severity, Severity::Note);
    EXPECT_TRUE(std::any_of(nearest.outlets.begin(), nearest.outlets.end(),
                            [](const OutletResult& r) { return r.reason == ChoiceReason::NearestSize; }));
}

TEST(DesignChecks, OutletsNeedingLessThanTheSmallestNozzleArePlugged) {
    const auto result = run(example("realistic"));
    const auto* plugged = findingOf(result, "outlets-plugged");
    ASSERT_NE(plugged, nullptr);
    EXPECT_EQ(plugged->severity, Severity::Note);
    for (const auto& row : result.outlets) {
        if (!row.outlet.obj_aspersor) {
            EXPECT_EQ(row.reason, ChoiceReason::BelowSmallestNozzle);
        }
    }
}

TEST(DesignChecks, NozzleOutsideItsRatedRangeAndTooManyOutlets) {
    auto result = run(example("small"));
    const Units si;
    EXPECT_FALSE(hasFinding(DesignChecks::check(result, si), "nozzle-out-of-range"));
    result.outlets[3].outlet.pressao_actuante = 900;  // as a chart made elsewhere might have it
    const auto findings = DesignChecks::check(result, si);
    EXPECT_TRUE(hasFinding(findings, "nozzle-out-of-range"));
    result.outlets.resize(32768, result.outlets.front());
    EXPECT_TRUE(hasFinding(DesignChecks::check(result, si), "too-many-outlets"));
    result.outlets.resize(32767);
    EXPECT_FALSE(hasFinding(DesignChecks::check(result, si), "too-many-outlets"));
    // The end gun counts as one outlet, as the design file counts it.
    auto gun = result.outlets.front();
    gun.place = OutletPlace::EndGun;
    result.outlets.push_back(gun);
    const auto withGun = DesignChecks::check(result, si);
    const auto tooMany = std::find_if(withGun.begin(), withGun.end(),
                                      [](const Finding& f) { return f.code == "too-many-outlets"; });
    ASSERT_NE(tooMany, withGun.end());
    EXPECT_EQ(tooMany->message,
              "the machine has 32768 outlets (the end gun counting as one), more than the 32767 its outlet "
              "numbers can address");
}

TEST(DesignChecks, MessagesFollowTheUnitsAsked) {
    auto design = example("small");
    regulateEverySpan(design, 200);
    InMemoryNozzleSource source(caudalis::testing::sampleCatalogue());
    DesignOptions options;
    options.units = UnitSystem::US;
    const auto result = DesignRunner(options).run(design, source);
    const auto* finding = findingOf(result, "regulator-starved");
    ASSERT_NE(finding, nullptr);
    EXPECT_NE(finding->message.find("29.0 psi rating plus the 5.1 psi margin"), std::string::npos)
        << finding->message;
}

TEST(DesignChecks, AMachineThatAppliesNoWaterHasNoUniformity) {
    auto result = run(example("small"));
    result.summary.uniformityCoefficient.reset();
    const auto findings = DesignChecks::check(result, Units());
    const auto low = std::find_if(findings.begin(), findings.end(),
                                  [](const Finding& f) { return f.code == "low-uniformity"; });
    ASSERT_NE(low, findings.end());
    EXPECT_EQ(low->message, "the uniformity cannot be computed: the machine applies no water");
}

TEST(DesignChecks, StarvedRegulatorsGiveTheFiguresOfThePipePressure) {
    // 43 psi typed as kPa at the inlet, 103 kPa regulators on every span: the march lets every
    // regulated outlet act at 103 kPa on a pipe of far less.
    auto design = example("realistic");
    design.inletPressureKpa = 43;
    regulateEverySpan(design, 103);
    const auto result = run(design);
    const auto* finding = findingOf(result, "figures-at-pipe-pressure");
    ASSERT_NE(finding, nullptr);
    EXPECT_EQ(finding->severity, Severity::Warning);
    EXPECT_NE(finding->message.find("delivered flow, depth per revolution, CU, DU"), std::string::npos)
        << finding->message;
    ASSERT_FALSE(result.figuresAtPipePressure.empty());
    long reworked = 0;
    double delivered = 0;
    for (const auto& row : result.outlets) {
        delivered += row.outlet.caudal_do_aspersor;
        if (!row.regulatorKpa) {
            continue;
        }
        // No outlet acts above the pipe pressure, nor above its regulator's rating.
        EXPECT_LE(row.outlet.pressao_actuante, std::max(0.0, row.outlet.pressao_real) + 1e-9);
        EXPECT_LE(row.outlet.pressao_actuante, *row.regulatorKpa);
        reworked += row.outlet.pressao_actuante < *row.regulatorKpa ? 1 : 0;
    }
    EXPECT_GT(reworked, 100);
    EXPECT_NE(result.figuresAtPipePressure.front().find(std::to_string(reworked) + " outlets"),
              std::string::npos);
    // The summary's delivered flow is the outlets' flows, no longer the march's total.
    EXPECT_NEAR(result.summary.computedFlowLps, delivered, 1e-9);
    // The library's record keeps the march as it is: its regulated outlets act at the rating.
    EXPECT_DOUBLE_EQ(result.machine.Tramos(2).Saidas(1).pressao_actuante, 103);
}

TEST(DesignChecks, RegulatorsThePipeFeedsChangeNoFigure) {
    auto design = example("small");
    regulateEverySpan(design, 100);
    const auto result = run(design);
    EXPECT_TRUE(result.figuresAtPipePressure.empty());
    EXPECT_EQ(findingOf(result, "figures-at-pipe-pressure"), nullptr);
    EXPECT_DOUBLE_EQ(StarvedRegulators::actingPressure(103, 35), 35);
    EXPECT_DOUBLE_EQ(StarvedRegulators::actingPressure(103, 140), 103);
    EXPECT_DOUBLE_EQ(StarvedRegulators::actingPressure(103, -12), 0);
}

TEST(DesignChecks, FiguresOutsideTheirTypicalRangesAreFound) {
    // 20 kPa regulators and 4 l/s for the realistic machine's 57 ha: both typing mistakes.
    auto design = example("realistic");
    regulateEverySpan(design, 20);
    design.designFlowLps = 4;
    const auto result = run(design);
    const auto* rating = findingOf(result, "regulator-rating-unusual");
    ASSERT_NE(rating, nullptr);
    EXPECT_EQ(rating->severity, Severity::Warning);
    EXPECT_NE(rating->message.find("rated 20.0 kPa; regulators on pivots are rated 41.0 to 172.0 kPa"),
              std::string::npos)
        << rating->message;
    const auto* capacity = findingOf(result, "flow-per-area-unusual");
    ASSERT_NE(capacity, nullptr);
    EXPECT_EQ(capacity->severity, Severity::Warning);
    EXPECT_NE(capacity->message.find("0.07 l/s per ha irrigated, outside the usual 0.6 to 1.2: far enough"),
              std::string::npos)
        << capacity->message;
    // A US design reads the same findings in its own units.
    const auto us = PlausibilityChecks::check(result, Units(UnitSystem::US));
    const auto usCapacity = std::find_if(
        us.begin(), us.end(), [](const Finding& finding) { return finding.code == "flow-per-area-unusual"; });
    ASSERT_NE(usCapacity, us.end());
    EXPECT_NE(
        usCapacity->message.find("0.45 gpm per acre irrigated, outside the usual 3.85 to 7.7: far enough"),
        std::string::npos)
        << usCapacity->message;
    EXPECT_NE(us.front().message.find("rated 2.9 psi; regulators on pivots are rated 5.9 to 24.9 psi"),
              std::string::npos)
        << us.front().message;
    // No figure outside its range is given: a CU is 0 % or more, or none.
    EXPECT_TRUE(!result.summary.uniformityCoefficient || *result.summary.uniformityCoefficient >= 0);
    // The small example's 8 l/s on 2.9 ha is unusual, not a mistake: a note.
    const auto small = run(example("small"));
    const auto* note = findingOf(small, "flow-per-area-unusual");
    ASSERT_NE(note, nullptr);
    EXPECT_EQ(note->severity, Severity::Note);
    EXPECT_EQ(findingOf(small, "regulator-rating-unusual"), nullptr);
    EXPECT_EQ(findingOf(small, "depth-per-revolution-unusual"), nullptr);
}

TEST(DesignChecks, DepthPerRevolutionOutsideItsRange) {
    auto design = example("small");
    design.revolutionTimeH = 1;  // 12 h a revolution laid 11.9 mm: 1 h lays about 1 mm
    const auto result = run(design);
    const auto* depth = findingOf(result, "depth-per-revolution-unusual");
    ASSERT_NE(depth, nullptr);
    EXPECT_EQ(depth->severity, Severity::Warning) << depth->message;
    const auto us = PlausibilityChecks::check(result, Units(UnitSystem::US));
    const auto usDepth = std::find_if(us.begin(), us.end(), [](const Finding& finding) {
        return finding.code == "depth-per-revolution-unusual";
    });
    ASSERT_NE(usDepth, us.end());
    EXPECT_NE(usDepth->message.find(" in per revolution at 100 % timer, outside the usual 0.197 to 0.984"),
              std::string::npos)
        << usDepth->message;
    EXPECT_EQ(PlausibilityChecks::outside(PlausibilityChecks::depthPerRevolutionMm, 12, "x", "y"),
              std::nullopt);
    EXPECT_EQ(PlausibilityChecks::outside(PlausibilityChecks::depthPerRevolutionMm, 30, "x", "y")->severity,
              Severity::Note);
}

TEST(DesignChecks, ACuBelowZeroIsNoUniformity) {
    auto result = run(example("small"));
    // Every outlet dry but the last, which lays a great depth: the formula falls far below 0.
    std::vector<WaterDepthSample> samples;
    for (const auto& row : result.outlets) {
        samples.push_back(WaterDepthSample{0, row.outlet.distanciaAoPivot, false});
    }
    samples.back().depth = 1000;
    samples[samples.size() / 2].depth = 1;
    const auto depths = Uniformity::samples(samples);
    ASSERT_LT(*Uniformity::heermannHeinFormula(depths), 0);
    EXPECT_FALSE(Uniformity::heermannHein(depths));
    result.summary.uniformityCoefficient.reset();
    result.summary.uniformityBelowZero = true;
    const auto findings = DesignChecks::check(result, Units());
    EXPECT_TRUE(hasFinding(findings, "uniformity-below-zero"));
    EXPECT_FALSE(hasFinding(findings, "low-uniformity"));
}
