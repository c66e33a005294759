#include <gtest/gtest.h>

#include "MachineFixtures.hpp"
#include "caudalis/core/Statics.hpp"
#include "caudalis/hydraulics/Drops.hpp"
#include "caudalis/hydraulics/PipeMaterials.hpp"
#include "caudalis/hydraulics/PivotWrapper.hpp"
#include "caudalis/hydraulics/ReguladorPression.hpp"
#include "caudalis/machine/Pivots.hpp"
#include "caudalis/machine/Types.hpp"

using namespace caudalis;

TEST(HydraulicsStatics, DropsAndPipeMaterialsAreTheSharedInstances) {
    Statics one;
    Statics two;
    EXPECT_EQ(one.Drops(), two.Drops());
    EXPECT_EQ(one.Drops(), Drops::shared());
    EXPECT_EQ(one.PipeMaterials(), two.PipeMaterials());
    EXPECT_EQ(one.PipeMaterials(), PipeMaterials::shared());
}

TEST(HydraulicsStatics, FactoriesMakeANewObjectOnEveryCall) {
    const auto statics = Statics::application();
    EXPECT_NE(statics->newReguladorPression(1, 100, 0, 0, true),
              statics->newReguladorPression(1, 100, 0, 0, true));
    const auto strategy = std::make_shared<caudalis::testing::RecordingStrategy>();
    const auto first = statics->newPivotWrapper(pivot{}, strategy);
    const auto second = statics->newPivotWrapper(pivot{}, strategy);
    EXPECT_NE(first, second);
    EXPECT_EQ(first->strategy(), strategy);
}

TEST(HydraulicsStatics, NewPivotWrapperPassesInitialisationErrorsOn) {
    pivot machine;
    machine.caudal = 1;
    Pivots::shared()->setEndGun(machine, Types::gunInstance()->newGun(0));
    try {
        Statics::application()->newPivotWrapper(machine, std::make_shared<CalculosStrategy>());
        FAIL() << "nothing raised";
    } catch (const Error& error) {
        EXPECT_EQ(error.number(), RuntimeError::Overflow);
    }
}
