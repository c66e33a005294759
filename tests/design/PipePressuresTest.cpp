#include <gtest/gtest.h>

#include <cmath>

#include "MachineFixtures.hpp"
#include "caudalis/core/Statics.hpp"
#include "caudalis/design/PipePressures.hpp"
#include "caudalis/hydraulics/Drops.hpp"
#include "caudalis/hydraulics/PivotWrapper.hpp"
#include "caudalis/machine/Pivots.hpp"
#include "caudalis/machine/Types.hpp"

using namespace caudalis;
using namespace caudalis::design;
using namespace caudalis::testing;

namespace {

/// Two spans rising and falling, an overhang and an end gun, computed with one nozzle on every
/// outlet and a 3 m drop hose installed.
struct ComputedMachine {
    pivot machine;
    Drop drop = Drops::shared()->newDrop(20, 3, PipeMaterial{1, "hose", 140});

    ComputedMachine() {
        pivot start = makePivot({makeSpan(1, 50, 168, 500), makeSpan(2, 40, 141, 500)}, {101, 99}, 100);
        start.presion = 300;
        start.caudal = 30;
        start.rugosidad = 140;
        Pivots::shared()->setOverhangSpan(start, makeSpan(3, 20, 127, 500));
        Pivots::shared()->setEndGun(start, Types::gunInstance()->newGun(25));
        auto strategy = std::make_shared<RecordingStrategy>();
        strategy->fixedNozzle = makeNozzle("n", 0.08, 0.5, 1, 600);
        const auto wrapper = Statics::application()->newPivotWrapper(start, strategy);
        wrapper->setDrop(drop);
        wrapper->installDrop();
        wrapper->calculate();
        wrapper->update(machine);
    }
};

}  // namespace

TEST(PipePressures, AreThePressureAfterTheDropPlusTheDropLoss) {
    const ComputedMachine computed;
    const auto pressures = PipePressures::of(computed.machine);
    ASSERT_EQ(pressures.size(), 10U + 8U + 4U + 1U);
    std::size_t i = 0;
    const auto expectSpan = [&](const tramo& span) {
        for (Long j = 1; j <= span.Saidas.count(); ++j, ++i) {
            const auto& outlet = span.Saidas(j);
            ASSERT_GT(outlet.pressao_real, 0);
            const double loss = Drops::shared()->PressureLoss(computed.drop, outlet.caudal);
            EXPECT_NEAR(pressures[i], outlet.pressao_real + loss, 1e-9) << "outlet " << i;
        }
    };
    expectSpan(computed.machine.Tramos(1));
    expectSpan(computed.machine.Tramos(2));
    expectSpan(computed.machine.tramoVOladizo);
    EXPECT_DOUBLE_EQ(pressures.back(), computed.machine.tramoVOladizo.exit_condition.pressao);
}

TEST(PipePressures, FirstOutletByHand) {
    // 300 kPa at the inlet; the first 5 m climb 5 x slope m, the slope (tangent of asin(1 / 50))
    // of 1 m gained along a 50 m span being 1 / sqrt(2499), which costs 50 / sqrt(2499) = 1.0002 kPa; they
    // lose 5 x 10 x J(q, 168 mm, C 140) to friction, q being the settled inflow (all the nozzles give).
    const ComputedMachine computed;
    const auto& span = computed.machine.Tramos(1);
    const double q = span.entry_conditions.caudal;
    EXPECT_EQ(span.entry_conditions.pressao, 300);
    const double friction = 5 * 10.0 * 1.21e10 * std::pow(q / 140, 1.852) * std::pow(168.0, -4.87);
    EXPECT_NEAR(PipePressures::ofSpan(span, 140).front(), 300 - 50 / std::sqrt(2499.0) - friction, 1e-9);
}
