#include <gtest/gtest.h>

#include <fstream>

#include "ErrorMatchers.hpp"
#include "SampleNozzles.hpp"
#include "ServiceDatabases.hpp"
#include "TestEngine.hpp"
#include "caudalis/design/DesignFile.hpp"
#include "caudalis/design/DesignRunner.hpp"
#include "caudalis/design/TextFile.hpp"
#include "caudalis/fieldtests/FieldTestService.hpp"
#include "caudalis/project/ChartService.hpp"
#include "caudalis/project/ServiceError.hpp"

// The field-test service on real databases of each engine: readings evaluated alone, over a
// design file and over a stored chart, stored, listed and read back.
using namespace caudalis;
using namespace caudalis::fieldtests;
using namespace caudalis::testing;

namespace {

class FieldTests : public ServiceTest {
protected:
    FieldTestService service() const { return databases.fieldTestService(); }

    static EvaluationRequest smallTest() {
        EvaluationRequest request;
        request.readingsPaths = {sourcePath("examples/evaluations/small-2025.csv")};
        request.gaugeDiameterM = 0.1;
        request.innerRadiusM = 10;
        return request;
    }

    static FieldTestService::DesignLookup noDesign() {
        return [] { return std::optional<DesignReference>(); };
    }
};

TEST_P(FieldTests, TheNameIsTheFilesAndTheTestsUnlessOneIsGiven) {
    auto request = smallTest();
    EXPECT_EQ(FieldTestService::nameOf(request), "small-2025");
    request.test = "B";
    EXPECT_EQ(FieldTestService::nameOf(request), "small-2025 B");
    request.name = "Field 7";
    EXPECT_EQ(FieldTestService::nameOf(request), "Field 7");
}

TEST_P(FieldTests, ReadingsAloneAreEvaluatedStoredListedAndShown) {
    const auto fieldTests = service();
    const auto found = fieldTests.evaluate(smallTest(), noDesign(), true);
    const auto& outcome = found.outcome;
    EXPECT_EQ(outcome.name, "small-2025");
    EXPECT_FALSE(outcome.design.has_value());
    EXPECT_FALSE(outcome.comparison.has_value());
    EXPECT_GT(outcome.result.readings, 0);
    EXPECT_TRUE(fieldTests.list().empty());

    const auto id = fieldTests.save(found);
    const auto listed = fieldTests.list();
    ASSERT_EQ(listed.size(), 1u);
    EXPECT_EQ(listed[0].id, id);
    EXPECT_EQ(listed[0].name, "small-2025");
    ASSERT_TRUE(listed[0].cuHeermannHein.has_value());
    const auto shown = fieldTests.show(id);
    EXPECT_EQ(shown.evaluation.name, "small-2025");
    EXPECT_FALSE(shown.figures.empty());

    EXPECT_NE(raisedMessage<project::InputError>([&] {
                  fieldTests.evaluate(smallTest(), noDesign(), true);
              }).find("small-2025"),
              std::string::npos);
    EXPECT_EQ(fieldTests.evaluate(smallTest(), noDesign(), false).outcome.name, "small-2025");
    EXPECT_NE(
        raisedMessage<project::InputError>([&] { fieldTests.show(id + 1); }).find("holds no evaluation"),
        std::string::npos);
}

TEST_P(FieldTests, ReadingsAreComparedWithADesignFileAndWithTheSameDesignStored) {
    const auto fieldTests = service();
    const auto designPath = sourcePath("examples/designs/small.json");
    const auto overFile = fieldTests.evaluate(
        smallTest(),
        [&] { return std::optional(fieldTests.designFile(designPath, 1000, 100, std::nullopt)); }, false);
    ASSERT_TRUE(overFile.outcome.design.has_value());
    ASSERT_TRUE(overFile.outcome.comparison.has_value());
    EXPECT_EQ(overFile.outcome.design->designPath, designPath);
    EXPECT_GT(overFile.outcome.design->expectedDepthMm, 0);
    EXPECT_FALSE(overFile.outcome.comparison->collectors.empty());

    auto charts = databases.chartService();
    const auto result = design::DesignRunner(design::DesignOptions{})
                            .run(design::DesignFile::load(designPath), *databases.nozzles());
    const auto id = charts.store(result, design::readTextFile(designPath, "design file"), "Small", 1);
    const auto overChart = fieldTests.evaluate(
        smallTest(), [&] { return std::optional(fieldTests.storedChart(id, 100, std::nullopt)); }, false);
    ASSERT_TRUE(overChart.outcome.design.has_value());
    EXPECT_EQ(overChart.outcome.design->designPath, "stored chart " + std::to_string(id));
    EXPECT_DOUBLE_EQ(overChart.outcome.design->expectedDepthMm, overFile.outcome.design->expectedDepthMm);
    EXPECT_EQ(overChart.outcome.comparison->collectors.size(),
              overFile.outcome.comparison->collectors.size());

    const auto halfTimer = fieldTests.designFile(designPath, 1000, 50, 15.0);
    EXPECT_DOUBLE_EQ(halfTimer.expectedDepthMm, 2 * overFile.outcome.design->expectedDepthMm);
    EXPECT_EQ(halfTimer.wettedDiameterFrom, "--wetted-diameter");
}

TEST_P(FieldTests, ABadReadingsFileIsNamed) {
    const auto bad = databases.folder().file("bad.csv");
    std::ofstream(bad) << "line,distance_m,volume_ml\neast,3,1\n";
    auto request = smallTest();
    request.readingsPaths = {bad};
    EXPECT_NE(raisedMessage<project::InputError>([&] {
                  service().evaluate(request, noDesign(), false);
              }).find("readings file"),
              std::string::npos);
}

INSTANTIATE_TEST_SUITE_P(Engines, FieldTests, caudalis::testing::allEngines(),
                         caudalis::testing::EngineNamer());

}  // namespace
