#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "MachineFixtures.hpp"
#include "caudalis/core/Statics.hpp"
#include "caudalis/hydraulics/PivotWrapper.hpp"
#include "caudalis/hydraulics/ReguladorPression.hpp"

using namespace caudalis;
using namespace caudalis::testing;

// A machine of several hundred outlets over a given ground profile, computed with sprinklers
// chosen from a fine catalogue, to check the physical trends of the march.
namespace {

constexpr int spanCount = 8;
constexpr int outletsPerSpan = 28;

pivot machineOver(const std::vector<Double>& endHeights) {
    std::vector<tramo> spans;
    for (int i = 1; i <= spanCount; ++i) {
        spans.push_back(makeSpan(i, 56, 168, 200));
    }
    pivot machine = makePivot(spans, endHeights, 100);
    machine.presion = 350;
    machine.caudal = 45;
    machine.rugosidad = 135;
    return machine;
}

CollectionRef fineCatalogue() {
    auto catalogue = Collection::create();
    for (int i = 0; i < 90; ++i) {
        catalogue->Add(Variant(makeNozzle("n", 0.0002 * std::pow(1.08, i), 0.5, 50, 500)));
    }
    return catalogue;
}

pivot computed(const pivot& machine, const CollectionRef& regulators = nullptr) {
    auto strategy = std::make_shared<RecordingStrategy>();
    strategy->tolerance = 0.05;
    auto wrapper = Statics::application()->newPivotWrapper(machine, strategy);
    wrapper->setAvaillableAspersores(fineCatalogue());
    if (regulators) {
        wrapper->aplicaReguladores(regulators);
    }
    wrapper->calculate();
    pivot result;
    wrapper->update(result);
    return result;
}

std::vector<saida> outletsOf(const pivot& machine) {
    std::vector<saida> outlets;
    for (const auto& span : machine.Tramos) {
        for (const auto& outlet : span.Saidas) {
            outlets.push_back(outlet);
        }
    }
    return outlets;
}

}  // namespace

TEST(MarchTrends, OnFlatGroundPressureFallsWithFriction) {
    const auto outlets = outletsOf(computed(machineOver(std::vector<Double>(spanCount, 100))));
    ASSERT_EQ(outlets.size(), static_cast<std::size_t>(spanCount * outletsPerSpan));
    for (std::size_t i = 1; i < outlets.size(); ++i) {
        EXPECT_LT(outlets[i].pressao_real, outlets[i - 1].pressao_real) << i;
        EXPECT_LT(outlets[i].pressao_ideal, outlets[i - 1].pressao_ideal) << i;
    }
}

TEST(MarchTrends, RisingGroundLowersPressureAndFallingGroundRaisesIt) {
    std::vector<Double> rising, falling;
    for (int i = 1; i <= spanCount; ++i) {
        rising.push_back(100 + 2.0 * i);
        falling.push_back(100 - 2.0 * i);
    }
    const auto flat = outletsOf(computed(machineOver(std::vector<Double>(spanCount, 100))));
    const auto up = outletsOf(computed(machineOver(rising)));
    const auto down = outletsOf(computed(machineOver(falling)));
    for (std::size_t i = 0; i < flat.size(); ++i) {
        EXPECT_LT(up[i].pressao_real, flat[i].pressao_real) << i;
        EXPECT_GT(down[i].pressao_real, flat[i].pressao_real) << i;
        EXPECT_LT(down[i].cota, up[i].cota) << i;
    }
    // Near the end of the machine the flow is small: falling ground gains more than friction costs.
    const std::size_t last = down.size() - 1;
    EXPECT_GT(down[last].pressao_real, down[last - 1].pressao_real);
}

TEST(MarchTrends, DeliveredFlowsFollowTheRequiredOnesAndAddUpToTheTotal) {
    const pivot result = computed(machineOver(std::vector<Double>(spanCount, 100)));
    double total = 0;
    int fitted = 0;
    for (const auto& outlet : outletsOf(result)) {
        total += outlet.caudal_do_aspersor;
        if (outlet.obj_aspersor) {
            ++fitted;
            EXPECT_NEAR(outlet.caudal_do_aspersor / outlet.caudal, 1.0, 0.05 + 1e-12);
        }
    }
    EXPECT_GT(fitted, spanCount * outletsPerSpan - 5);
    EXPECT_NEAR(total, result.caudaDaCartaAssociada, 1e-9);
    EXPECT_NEAR(result.caudaDaCartaAssociada, result.caudal, 0.05 * result.caudal);
}

TEST(MarchTrends, RegulatedSpansActAtTheirSetting) {
    std::vector<Double> hills;
    for (int i = 1; i <= spanCount; ++i) {
        hills.push_back(100 + 6 * std::sin(i));
    }
    auto regulators = Collection::create();
    regulators->Add(Variant(makeReguladorPression(3, 140, 0, 0, true)));
    regulators->Add(Variant(makeReguladorPression(6, 120, 0, 0, true)));
    const pivot result = computed(machineOver(hills), regulators);
    for (int i = 1; i <= spanCount; ++i) {
        for (const auto& outlet : result.Tramos(i).Saidas) {
            if (i == 3) {
                EXPECT_EQ(outlet.pressao_actuante, 140);
            } else if (i == 6) {
                EXPECT_EQ(outlet.pressao_actuante, 120);
            } else {
                EXPECT_EQ(outlet.pressao_actuante, outlet.pressao_real);
            }
        }
    }
    EXPECT_GT(result.Tramos(3).Saidas(1).pressao_real, 140);
}

TEST(MarchTrends, SpanConditionsChainFromEntryToExit) {
    const pivot result = computed(machineOver(std::vector<Double>(spanCount, 100)));
    EXPECT_EQ(result.Tramos(1).entry_conditions.pressao, 350);
    for (int i = 2; i <= spanCount; ++i) {
        EXPECT_EQ(result.Tramos(i).entry_conditions, result.Tramos(i - 1).exit_condition);
        EXPECT_EQ(result.Tramos(i).ideal_entry_conditions, result.Tramos(i - 1).ideal_exit_conditions);
        EXPECT_LT(result.Tramos(i).perdaDeCargaIdeal, result.Tramos(i - 1).perdaDeCargaIdeal);
    }
}
