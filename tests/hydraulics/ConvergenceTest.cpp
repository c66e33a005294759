#include <gtest/gtest.h>

#include "MachineFixtures.hpp"
#include "caudalis/core/Statics.hpp"
#include "caudalis/hydraulics/PivotWrapper.hpp"
#include "caudalis/hydraulics/ReguladorPression.hpp"

using namespace caudalis;
using namespace caudalis::testing;

// One outlet acting at a regulated pressure of 1, so that its nozzle gives exactly `a`; with no
// design inflow the first pass changes the discharge by exactly that flow.
namespace {

std::size_t passesWithNozzleFlow(double a) {
    pivot machine = makePivot({makeSpan(1, 5, 168, 500)}, {0});
    machine.caudal = 0;
    auto strategy = std::make_shared<RecordingStrategy>();
    strategy->fixedNozzle = makeNozzle("tiny", a, 0.5, 0.5, 2);
    auto wrapper = Statics::application()->newPivotWrapper(machine, strategy);
    auto regulators = Collection::create();
    regulators->Add(Variant(makeReguladorPression(1, 1, 0, 0, true)));
    wrapper->aplicaReguladores(regulators);
    wrapper->calculate();
    EXPECT_EQ(wrapper->totalComputedDischarge(), a);
    return strategy->calls.size();
}

}  // namespace

TEST(Convergence, AChangeOfExactlyOneHundredThousandthStops) {
    ASSERT_EQ(1e-5 - 0.0, 1e-5);
    EXPECT_EQ(passesWithNozzleFlow(1e-5), 1U);
}

TEST(Convergence, AChangeJustAboveOneHundredThousandthTakesAnotherPass) {
    EXPECT_EQ(passesWithNozzleFlow(1.00001e-5), 2U);
}
