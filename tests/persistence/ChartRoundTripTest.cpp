#include <gtest/gtest.h>

#include "ChartFixture.hpp"
#include "MachineFixtures.hpp"
#include "caudalis/charts/MountedAspersor.hpp"
#include "caudalis/core/Factories.hpp"
#include "caudalis/core/Statics.hpp"
#include "caudalis/db/Connection.hpp"
#include "caudalis/hydraulics/Drops.hpp"
#include "caudalis/hydraulics/PipeMaterials.hpp"
#include "caudalis/hydraulics/PivotWrapper.hpp"
#include "caudalis/hydraulics/ReguladorPression.hpp"
#include "caudalis/machine/CoordenadasSaidas.hpp"
#include "caudalis/machine/Pivots.hpp"
#include "caudalis/machine/Types.hpp"

using namespace caudalis;
using namespace caudalis::testing;

namespace {

/// A design run on a machine of three spans, an overhang and an end gun, with sprinklers
/// chosen from the sample catalogue as read from its database.
class ChartRoundTrip : public ::testing::TestWithParam<TestEngine>, public ChartFixture {
protected:
    ChartRoundTrip() : ChartFixture(GetParam()) {
        pivot machine =
            makePivot({makeSpan(1, 54, 168, 250), makeSpan(2, 54, 168, 250), makeSpan(3, 48, 141, 250)},
                      {101, 102.5, 101.5}, 100);
        machine.caudal = 12;
        machine.presion = 180;
        Pivots::shared()->setOverhangSpan(machine, makeSpan(4, 20, 127, 250));
        Pivots::shared()->setEndGun(machine, Types::gunInstance()->newGun(25));
        strategy->catalogue = catalogue;
        wrapper = Statics::application()->newPivotWrapper(machine, strategy);
        applyAccessories();
        wrapper->calculate();
        chart = wrapper->extractCarta();
        chart->transferAcessoriesFrom(*wrapper->carta());
        chart->setNome("Design run");
        chart->setEndGunBoost(35);
    }

    void applyAccessories() {
        wrapper->aplicaReguladores(regulatorsOf({makeReguladorPression(2, 140, 1.8, 0.05, true),
                                                 makeReguladorPression(3, 120.5, 1.2, 0.04, true)}));
        wrapper->setDrop(Drops::shared()->newDrop(22.5, 1.8, storedMaterial(3)));
        wrapper->installDrop();
        wrapper->setIndicadores(makeIndicadores(21.5, 2));
        wrapper->setPluviometriaCheck(checkOf(makePivotSample(80.25, 17.5, "near"),
                                              makePivotSample(170.5, 22.75, "far"),
                                              makeKostiakovParameters(0.075, 0.625)));
        wrapper->setEndGunBoost(35);
    }

    std::shared_ptr<RecordingStrategy> strategy = std::make_shared<RecordingStrategy>();
    std::shared_ptr<PivotWrapper> wrapper;
    std::shared_ptr<CartaAspersores> chart;
};

TEST_P(ChartRoundTrip, TheDesignRunMountedSprinklersEverywhere) {
    EXPECT_GT(chart->mountedAspersores()->Count(), 60);
    EXPECT_TRUE(chart->hasMountedAspersorAt(CoordenadasSaidas::shared()->newEndGunCoordenadas()));
    EXPECT_TRUE(chart->hasMountedAspersorAt(CoordenadasSaidas::shared()->newTramoCoordenadas(4, 1)));
}

TEST_P(ChartRoundTrip, SavedAndLoadedChartHasTheSameContent) {
    saveAsNew(*chart);
    ASSERT_GT(chart->id(), 0);
    const auto loaded = load(static_cast<Integer>(chart->id()));

    EXPECT_EQ(loaded->id(), chart->id());
    EXPECT_EQ(loaded->getNome(), "Design run");
    EXPECT_EQ(loaded->getEndGunBoost(), 35);

    ASSERT_EQ(loaded->mountedAspersores()->Count(), chart->mountedAspersores()->Count());
    for (const Variant& entry : *chart->mountedAspersores()) {
        const auto original = entry.toObject<MountedAspersor>();
        const auto copy = loaded->mountedAspersorAt(original->saida());
        ASSERT_NE(copy, nullptr) << CoordenadasSaidas::shared()->ToString(original->saida());
        const auto& before = *original->Aspersor();
        const auto& after = *copy->Aspersor();
        EXPECT_EQ(after.id(), before.id());
        EXPECT_EQ(after.nome(), before.nome());
        EXPECT_EQ(after.a(), before.a());
        EXPECT_EQ(after.b(), before.b());
        EXPECT_EQ(after.pmin(), before.pmin());
        EXPECT_EQ(after.pmax(), before.pmax());
        EXPECT_EQ(after.qmin(), before.qmin());
        EXPECT_EQ(after.qmax(), before.qmax());
        EXPECT_EQ(after.modelo(), before.modelo());
    }

    const auto savedRegulators = chart->getReguladores();
    const auto loadedRegulators = loaded->getReguladores();
    ASSERT_EQ(loadedRegulators->Count(), 2);
    for (Long i = 1; i <= 2; ++i) {
        const auto before = savedRegulators->objectAt<ReguladorPression>(i);
        const auto after = loadedRegulators->objectAt<ReguladorPression>(i);
        EXPECT_EQ(after->tramo(), before->tramo());
        EXPECT_EQ(after->pression(), before->pression());
        EXPECT_EQ(after->maximum_caudal(), before->maximum_caudal());
        EXPECT_EQ(after->minimum_caudal(), before->minimum_caudal());
        EXPECT_EQ(after->installed(), before->installed());
    }

    EXPECT_EQ(loaded->getDrop(), chart->getDrop());
    EXPECT_TRUE(loaded->getDrop().p_installed);
    EXPECT_EQ(loaded->getDrop().pipe_material, (PipeMaterial{3, "Rubber hose", 135}));

    EXPECT_EQ(loaded->getIndicadores().horasRevolucao, 21.5);
    EXPECT_EQ(loaded->getIndicadores().numeroSaidasObturadas, 2);

    const PluviometryCheck check = loaded->getPluviometriaCheck();
    EXPECT_EQ(check.firstSample, makePivotSample(80.25, 17.5, "first_sample"));
    EXPECT_EQ(check.secondSample, makePivotSample(170.5, 22.75, "second_sample"));
    EXPECT_EQ(check.kostiakov, makeKostiakovParameters(0.075, 0.625));
}

TEST_P(ChartRoundTrip, TheLoadedChartMountsTheSameSprinklersOnTheMachine) {
    saveAsNew(*chart);
    const auto loaded = load(static_cast<Integer>(chart->id()));
    pivot machine;
    wrapper->update(machine);
    auto again = Statics::application()->newPivotWrapper(machine, std::make_shared<RecordingStrategy>());
    loaded->mountAsperoresOn(*again);
    pivot mounted;
    again->update(mounted);
    const auto coordinates = CoordenadasSaidas::shared();
    for (Integer span = 1; span <= 3; ++span) {
        const auto& outlets = mounted.Tramos(span).Saidas;
        for (Long outlet = outlets.lbound(); outlet <= outlets.ubound(); ++outlet) {
            const auto expected = chart->mountedAspersorAt(
                coordinates->newTramoCoordenadas(span, static_cast<Integer>(outlet)));
            const auto& sprinkler = outlets(outlet).obj_aspersor;
            EXPECT_EQ(sprinkler ? sprinkler->id() : 0, expected ? expected->Aspersor()->id() : 0);
        }
    }
    ASSERT_NE(mounted.endGun.saida.obj_aspersor, nullptr);
    EXPECT_EQ(mounted.endGun.saida.obj_aspersor->id(),
              chart->mountedAspersorAt(coordinates->newEndGunCoordenadas())->Aspersor()->id());
}

INSTANTIATE_TEST_SUITE_P(Engines, ChartRoundTrip, allEngines(), EngineNamer());

}  // namespace
