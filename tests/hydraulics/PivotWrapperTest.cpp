#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <vector>

#include "ErrorMatchers.hpp"
#include "MachineFixtures.hpp"
#include "caudalis/charts/CartaAspersores.hpp"
#include "caudalis/charts/MountedAspersor.hpp"
#include "caudalis/core/Factories.hpp"
#include "caudalis/core/Statics.hpp"
#include "caudalis/hydraulics/Drops.hpp"
#include "caudalis/hydraulics/PivotApplier.hpp"
#include "caudalis/hydraulics/PivotWrapper.hpp"
#include "caudalis/hydraulics/ReguladorPression.hpp"
#include "caudalis/machine/CoordenadasSaidas.hpp"
#include "caudalis/machine/Pivots.hpp"
#include "caudalis/machine/Types.hpp"

using namespace caudalis;
using namespace caudalis::testing;

namespace {

pivot twoSpanMachine() {
    pivot machine = makePivot({makeSpan(1, 50, 168, 500), makeSpan(2, 40, 141, 500)}, {101, 99}, 100);
    machine.presion = 300;
    machine.caudal = 30;
    machine.rugosidad = 140;
    return machine;
}

pivot withOverhangAndGun(pivot machine) {
    Pivots::shared()->setOverhangSpan(machine, makeSpan(3, 20, 127, 500));
    Pivots::shared()->setEndGun(machine, Types::gunInstance()->newGun(25));
    return machine;
}

std::shared_ptr<PivotWrapper> wrap(const pivot& machine, const std::shared_ptr<CalculosStrategy>& strategy) {
    return Statics::application()->newPivotWrapper(machine, strategy);
}

pivot contentsOf(const PivotWrapper& wrapper) {
    pivot copy;
    wrapper.update(copy);
    return copy;
}

}  // namespace

TEST(PivotWrapper, FreshWrapperAlreadyHoldsIdealValues) {
    auto wrapper = wrap(twoSpanMachine(), std::make_shared<RecordingStrategy>());
    const pivot machine = contentsOf(*wrapper);
    EXPECT_GT(machine.Tramos(1).Saidas(1).caudal, 0);
    EXPECT_EQ(machine.Tramos(1).ideal_entry_conditions.pressao, 300);
    EXPECT_GT(machine.Tramos(1).perdaDeCargaIdeal, 0);
    EXPECT_EQ(machine.caudaDaCartaAssociada, 0);
    EXPECT_EQ(machine.Tramos(1).Saidas(1).pressao_real, 0);
}

TEST(PivotWrapper, WrapperKeepsItsOwnCopy) {
    pivot machine = twoSpanMachine();
    auto wrapper = wrap(machine, std::make_shared<RecordingStrategy>());
    machine.presion = 1;
    EXPECT_EQ(contentsOf(*wrapper).presion, 300);
    EXPECT_EQ(machine.Tramos(1).Saidas(1).caudal, 0);
}

TEST(PivotWrapper, AllEmptySprinklersConvergeInTwoPassesWithTotalZero) {
    auto strategy = std::make_shared<RecordingStrategy>();
    auto wrapper = wrap(twoSpanMachine(), strategy);
    wrapper->calculate();
    const Long outlets = wrapper->numeroTotalDeSaidas();
    EXPECT_EQ(outlets, 18);
    EXPECT_EQ(strategy->calls.size(), static_cast<std::size_t>(2 * outlets));
    EXPECT_EQ(wrapper->totalComputedDischarge(), 0);
}

TEST(PivotWrapper, DoNothingStrategyGivesFlowZeroAndAccessoriesFail) {
    auto wrapper = wrap(twoSpanMachine(), std::make_shared<CalculosStrategy>());
    wrapper->compute(*wrapper->strategy(), Drops::shared()->createNull());
    EXPECT_EQ(wrapper->totalComputedDischarge(), 0);
    EXPECT_EQ(wrapper->saidaAt(3).caudal_do_aspersor, 0);
    EXPECT_FALSE(wrapper->saidaAt(3).over_pressure);
    EXPECT_RAISES(wrapper->setEndGunBoost(10), RuntimeError::ObjectNotSet);
    EXPECT_RAISES(wrapper->getIndicadores(), RuntimeError::ObjectNotSet);
    EXPECT_EQ(wrapper->getDrop(), Drop{});
}

TEST(PivotWrapper, ComputeAloneCallsNeitherBeforeNorAfter) {
    auto strategy = std::make_shared<RecordingStrategy>();
    strategy->fixedNozzle = makeNozzle("n", 0.02, 0.5);
    auto wrapper = wrap(twoSpanMachine(), strategy);
    wrapper->compute(*strategy, Drops::shared()->createNull());
    EXPECT_EQ(strategy->beforeCalls, 0);
    EXPECT_EQ(strategy->afterCalls, 0);
    wrapper->calculate();
    EXPECT_EQ(strategy->beforeCalls, 1);
    EXPECT_EQ(strategy->afterCalls, 1);
}

TEST(PivotWrapper, ComputeAsksTheStoredStrategyNotTheArgument) {
    auto stored = std::make_shared<RecordingStrategy>();
    RecordingStrategy other;
    auto wrapper = wrap(twoSpanMachine(), stored);
    wrapper->compute(other, Drops::shared()->createNull());
    EXPECT_TRUE(other.calls.empty());
    EXPECT_FALSE(stored->calls.empty());
}

TEST(PivotWrapper, ConvergesWhenTheDischargeSettles) {
    auto strategy = std::make_shared<RecordingStrategy>();
    strategy->fixedNozzle = makeNozzle("n", 0.1, 0.5);
    auto wrapper = wrap(twoSpanMachine(), strategy);
    wrapper->calculate();
    const std::size_t outlets = 18;
    ASSERT_EQ(strategy->calls.size() % outlets, 0U);
    const std::size_t passes = strategy->calls.size() / outlets;
    EXPECT_GE(passes, 2U);
    // The discharge of the last two passes differs by at most 1e-5.
    double last = 0, previous = 0;
    for (std::size_t i = 0; i < outlets; ++i) {
        const auto& lastCall = strategy->calls[(passes - 1) * outlets + i];
        const auto& previousCall = strategy->calls[(passes - 2) * outlets + i];
        last += lastCall.chosen->calculate(lastCall.outlet.pressao_actuante);
        previous += previousCall.chosen->calculate(previousCall.outlet.pressao_actuante);
    }
    EXPECT_NEAR(last, wrapper->totalComputedDischarge(), 1e-9);
    EXPECT_LE(std::fabs(last - previous), 1e-5);
}

TEST(PivotWrapper, OverhangWithoutFixedSpansMarchesOnlyTheOverhang) {
    pivot machine;
    machine.presion = 200;
    machine.caudal = 5;
    machine.rugosidad = 140;
    tramo overhang = makeSpan(1, 20, 127, 500);
    overhang.site = Types::placementsInstance()->newPlacement(0, 0, 20);
    Pivots::shared()->setOverhangSpan(machine, overhang);
    auto strategy = std::make_shared<RecordingStrategy>();
    strategy->fixedNozzle = makeNozzle("n", 0.02, 0.5);
    auto wrapper = wrap(machine, strategy);
    wrapper->calculate();
    const pivot result = contentsOf(*wrapper);
    EXPECT_DOUBLE_EQ(result.tramoVOladizo.Saidas(1).distanciaAoPivot, 5.0);
    EXPECT_EQ(result.tramoVOladizo.entry_conditions.pressao, 200);
    EXPECT_NEAR(wrapper->totalComputedDischarge(), 4 * 0.02 * std::sqrt(200.0), 1e-2);
}

TEST(PivotWrapper, PipePressureMayGoNegativeButRealPressureIsClamped) {
    pivot machine = makePivot({makeSpan(1, 60, 50, 300)}, {40}, 0);
    machine.presion = 20;
    machine.caudal = 10;
    machine.rugosidad = 140;
    auto strategy = std::make_shared<RecordingStrategy>();
    strategy->fixedNozzle = makeNozzle("n", 0.01, 0.5);
    auto wrapper = wrap(machine, strategy);
    wrapper->calculate();
    const pivot result = contentsOf(*wrapper);
    EXPECT_LT(result.Tramos(1).exit_condition.pressao, 0);
    EXPECT_LT(result.Tramos(1).Saidas(20).pressao_ideal, 0);
    for (const auto& outlet : result.Tramos(1).Saidas) {
        EXPECT_GE(outlet.pressao_real, 0);
    }
    EXPECT_EQ(result.Tramos(1).Saidas(20).pressao_real, 0);
}

TEST(PivotWrapper, RegulatedSpanActsAtTheSettingEvenAboveTheAvailablePressure) {
    auto strategy = std::make_shared<RecordingStrategy>();
    strategy->fixedNozzle = makeNozzle("n", 0.02, 0.5);
    auto wrapper = wrap(twoSpanMachine(), strategy);
    auto regulators = Collection::create();
    regulators->Add(Variant(makeReguladorPression(2, 900, 0, 0, true)));
    wrapper->aplicaReguladores(regulators);
    wrapper->calculate();
    const pivot result = contentsOf(*wrapper);
    for (const auto& outlet : result.Tramos(2).Saidas) {
        EXPECT_EQ(outlet.pressao_actuante, 900);
        EXPECT_LT(outlet.pressao_real, 900);
        EXPECT_TRUE(outlet.over_pressure);
        EXPECT_DOUBLE_EQ(outlet.caudal_do_aspersor, 0.02 * std::sqrt(900.0));
    }
    EXPECT_EQ(result.Tramos(1).Saidas(1).pressao_actuante, result.Tramos(1).Saidas(1).pressao_real);
}

TEST(PivotWrapper, EndGunActsAtTheLastExitPressurePlusTheBoost) {
    auto strategy = std::make_shared<RecordingStrategy>();
    strategy->fixedNozzle = makeNozzle("n", 0.02, 0.5);
    auto wrapper = wrap(withOverhangAndGun(twoSpanMachine()), strategy);
    wrapper->calculate();
    pivot result = contentsOf(*wrapper);
    EXPECT_EQ(result.endGun.saida.pressao_real, result.tramoVOladizo.exit_condition.pressao);
    EXPECT_EQ(result.endGun.saida.pressao_actuante, result.endGun.saida.pressao_real);
    wrapper->setEndGunBoost(150);
    wrapper->calculate();
    result = contentsOf(*wrapper);
    EXPECT_EQ(result.endGun.saida.pressao_actuante, result.tramoVOladizo.exit_condition.pressao + 150);
}

TEST(PivotWrapper, GetPressaoCaudalAtGivesActingPressureAndRequiredFlow) {
    auto strategy = std::make_shared<RecordingStrategy>();
    strategy->fixedNozzle = makeNozzle("n", 0.02, 0.5);
    auto wrapper = wrap(withOverhangAndGun(twoSpanMachine()), strategy);
    wrapper->calculate();
    const pivot result = contentsOf(*wrapper);
    const auto coordinates = CoordenadasSaidas::shared();
    const auto inSpan = wrapper->getPressaoCaudalAt(coordinates->newTramoCoordenadas(2, 3));
    EXPECT_EQ(inSpan.pressao, result.Tramos(2).Saidas(3).pressao_actuante);
    EXPECT_EQ(inSpan.caudal, result.Tramos(2).Saidas(3).caudal);
    const auto onOverhang = wrapper->getPressaoCaudalAt(coordinates->newTramoCoordenadas(3, 2));
    EXPECT_EQ(onOverhang.caudal, result.tramoVOladizo.Saidas(2).caudal);
    const auto atGun = wrapper->getPressaoCaudalAt(coordinates->newEndGunCoordenadas());
    EXPECT_EQ(atGun.pressao, result.endGun.saida.pressao_actuante);
    EXPECT_EQ(atGun.caudal, result.endGun.saida.caudal);
    EXPECT_EQ(wrapper->getPressaoCaudalAt(coordinates->newTramoCoordenadas(7, 1)), ParPressaoCaudal{});
    EXPECT_RAISES(wrapper->getPressaoCaudalAt(coordinates->newTramoCoordenadas(1, 99)),
                  RuntimeError::SubscriptOutOfRange);
}

TEST(PivotWrapper, EndGunAddressWithoutEndGunFallsThroughToTheSpans) {
    auto wrapper = wrap(twoSpanMachine(), std::make_shared<RecordingStrategy>());
    EXPECT_RAISES(wrapper->getPressaoCaudalAt(CoordenadasSaidas::shared()->newEndGunCoordenadas()),
                  RuntimeError::SubscriptOutOfRange);
}

TEST(PivotWrapper, ForwardsAccessoriesToTheStrategyChart) {
    auto strategy = std::make_shared<RecordingStrategy>();
    auto wrapper = wrap(twoSpanMachine(), strategy);
    wrapper->setIndicadores(makeIndicadores(22, 4));
    EXPECT_EQ(strategy->chart->getIndicadores().horasRevolucao, 22);
    EXPECT_EQ(wrapper->getIndicadores().numeroSaidasObturadas, 4);
    PluviometryCheck check;
    check.firstSample.distanceToCenter = 80;
    EXPECT_TRUE(wrapper->setPluviometriaCheck(check).isEmpty());
    EXPECT_EQ(wrapper->getPluviometriaCheck(), check);
    wrapper->setEndGunBoost(35);
    EXPECT_EQ(strategy->chart->getEndGunBoost(), 35);
    PipeMaterial material{1, "PVC", 150};
    wrapper->setDrop(Drops::shared()->newDrop(20, 2, material));
    wrapper->installDrop();
    EXPECT_TRUE(strategy->chart->getDrop().p_installed);
    wrapper->uninstallDrop();
    EXPECT_FALSE(wrapper->getDrop().p_installed);
    EXPECT_EQ(wrapper->carta(), strategy->chart);
    auto catalogue = Collection::create();
    wrapper->setAvaillableAspersores(catalogue);
    EXPECT_EQ(strategy->catalogue, catalogue);
}

TEST(PivotWrapper, InstalledDropLowersTheOutletPressureByItsLoss) {
    auto plain = wrap(twoSpanMachine(), std::make_shared<RecordingStrategy>());
    auto strategy = std::make_shared<RecordingStrategy>();
    auto wrapper = wrap(twoSpanMachine(), strategy);
    const Drop drop = Drops::shared()->newDrop(20, 3, PipeMaterial{1, "hose", 140});
    wrapper->setDrop(drop);
    wrapper->computeIdealOperationMode();
    EXPECT_EQ(contentsOf(*wrapper).Tramos(1).Saidas(1).pressao_ideal,
              contentsOf(*plain).Tramos(1).Saidas(1).pressao_ideal);
    wrapper->installDrop();
    wrapper->computeIdealOperationMode();
    const saida withDrop = contentsOf(*wrapper).Tramos(1).Saidas(1);
    const saida without = contentsOf(*plain).Tramos(1).Saidas(1);
    const double loss = Drops::shared()->PressureLoss(drop, withDrop.caudal);
    EXPECT_GT(loss, 0);
    EXPECT_NEAR(without.pressao_ideal - withDrop.pressao_ideal, loss, 1e-12);
    plain->calculate();
    wrapper->calculate();
    EXPECT_NEAR(contentsOf(*plain).Tramos(1).Saidas(1).pressao_real -
                    contentsOf(*wrapper).Tramos(1).Saidas(1).pressao_real,
                loss, 1e-12);
}

TEST(PivotWrapper, SimpleQueries) {
    auto wrapper = wrap(withOverhangAndGun(twoSpanMachine()), std::make_shared<RecordingStrategy>());
    EXPECT_EQ(wrapper->getLongitudeTotal(), 110);
    EXPECT_EQ(wrapper->numeroTotalDeSaidas(), 18);
    EXPECT_TRUE(wrapper->hasEndGun());
    wrapper->setTimeForCompleteRevolution(20);
    EXPECT_EQ(contentsOf(*wrapper).caixa.tempoH100, 20);
    EXPECT_EQ(wrapper->saidaAt(11).distanciaAoPivot, 55);
    auto empty = wrap(pivot{}, std::make_shared<RecordingStrategy>());
    EXPECT_EQ(empty->numeroTotalDeSaidas(), 0);
}

TEST(PivotWrapper, ApplyLetsAnApplierEditTheWrappedRecord) {
    auto wrapper = wrap(twoSpanMachine(), std::make_shared<RecordingStrategy>());
    auto nozzle = makeNozzle("n", 0.02, 0.5);
    auto mounted = makeMountedAspersor(CoordenadasSaidas::shared()->newTramoCoordenadas(1, 2), nozzle);
    wrapper->apply(*mounted);
    EXPECT_EQ(contentsOf(*wrapper).Tramos(1).Saidas(2).obj_aspersor, nozzle);
}

TEST(PivotWrapper, ExtractCartaRecordsTheChosenSprinklers) {
    auto strategy = std::make_shared<RecordingStrategy>();
    strategy->fixedNozzle = makeNozzle("n", 0.02, 0.5);
    auto wrapper = wrap(withOverhangAndGun(twoSpanMachine()), strategy);
    wrapper->setEndGunBoost(40);
    wrapper->setIndicadores(makeIndicadores(20, 1));
    wrapper->calculate();
    const auto chart = wrapper->extractCarta();
    EXPECT_NE(chart, strategy->chart);
    EXPECT_EQ(chart->mountedAspersores()->Count(), 18 + 4 + 1);
    const auto coordinates = CoordenadasSaidas::shared();
    EXPECT_TRUE(chart->hasMountedAspersorAt(coordinates->newTramoCoordenadas(3, 4)));
    EXPECT_TRUE(chart->hasMountedAspersorAt(coordinates->newEndGunCoordenadas()));
    EXPECT_EQ(chart->getEndGunBoost(), 40);
    EXPECT_EQ(chart->getIndicadores(), indicadores{});
    EXPECT_EQ(chart->mountedAspersorAt(coordinates->newTramoCoordenadas(1, 1))->Aspersor(),
              strategy->fixedNozzle);
}

TEST(PivotWrapper, ExtractCartaWithoutEndGunSprinklerKeepsTheDefaultBoost) {
    auto strategy = std::make_shared<RecordingStrategy>();
    auto wrapper = wrap(withOverhangAndGun(twoSpanMachine()), strategy);
    wrapper->setEndGunBoost(40);
    wrapper->calculate();
    const auto chart = wrapper->extractCarta();
    EXPECT_EQ(chart->mountedAspersores()->Count(), 0);
    EXPECT_EQ(chart->getEndGunBoost(), 0);
}

TEST(IdealMode, RequiredFlowsDependOnlyOnGeometryAndInflow) {
    pivot base = withOverhangAndGun(twoSpanMachine());
    auto first = wrap(base, std::make_shared<RecordingStrategy>());
    pivot changed = base;
    changed.presion = 120;
    Pivots::shared()->setFixedSpans(changed, changed.Tramos, BoundedArray<Double>::of({90, 95}));
    auto strategy = std::make_shared<RecordingStrategy>();
    auto second = wrap(changed, strategy);
    second->setDrop(Drops::shared()->newDrop(20, 3, PipeMaterial{1, "hose", 140}));
    second->installDrop();
    second->computeIdealOperationMode();
    const pivot a = contentsOf(*first);
    const pivot b = contentsOf(*second);
    for (Long i = 1; i <= 2; ++i) {
        for (Long j = 1; j <= a.Tramos(i).Saidas.ubound(); ++j) {
            EXPECT_EQ(a.Tramos(i).Saidas(j).caudal, b.Tramos(i).Saidas(j).caudal);
        }
    }
    EXPECT_EQ(first->idealEndGunDischarge(), second->idealEndGunDischarge());
    EXPECT_NE(a.Tramos(2).Saidas(3).pressao_ideal, b.Tramos(2).Saidas(3).pressao_ideal);
}

TEST(IdealMode, RequiredFlowIsTheRingShareOfTheInflow) {
    auto wrapper = wrap(withOverhangAndGun(twoSpanMachine()), std::make_shared<RecordingStrategy>());
    const pivot machine = contentsOf(*wrapper);
    const double irrigated = 135.0;
    const saida& outlet = machine.Tramos(2).Saidas(4);
    EXPECT_EQ(outlet.distanciaAoPivot, 70);
    EXPECT_DOUBLE_EQ(outlet.caudal, (2 * 70.0 * 5.0 * 30.0) / std::pow(irrigated, 2));
    EXPECT_DOUBLE_EQ(wrapper->idealEndGunDischarge(),
                     ((110.0 + 110.0) * 25.0 * 30.0) / std::pow(irrigated, 2));
    EXPECT_EQ(machine.endGun.saida.distanciaAoPivot, 110);
    EXPECT_EQ(machine.endGun.saida.pressao_ideal, machine.tramoVOladizo.ideal_exit_conditions.pressao);
}

TEST(IdealMode, OutletAtDistanceZeroHasRequiredFlowZero) {
    pivot machine;
    machine.caudal = 10;
    machine.presion = 100;
    machine.rugosidad = 140;
    Pivots::shared()->setEndGun(machine, Types::gunInstance()->newGun(10));
    auto wrapper = wrap(machine, std::make_shared<RecordingStrategy>());
    const pivot result = contentsOf(*wrapper);
    EXPECT_EQ(result.endGun.saida.distanciaAoPivot, 0);
    EXPECT_EQ(result.endGun.saida.caudal, 0);
    EXPECT_EQ(result.endGun.saida.pressao_ideal, 100);
    Gun gun = Types::gunInstance()->newGun(5);
    wrapper->calculaEndGunIdeal(gun, Pivots::shared()->newParPressaoCaudal(50, 0));
    EXPECT_EQ(gun.saida.caudal, 0);
    EXPECT_EQ(gun.saida.pressao_ideal, 50);
}

TEST(IdealMode, ContinuousLossForTheOverhangAndOutOfRange) {
    auto wrapper = wrap(withOverhangAndGun(twoSpanMachine()), std::make_shared<RecordingStrategy>());
    const pivot machine = contentsOf(*wrapper);
    EXPECT_EQ(wrapper->idealContinuosPressureLossForTramo(1), machine.Tramos(1).perdaDeCargaIdeal);
    EXPECT_EQ(wrapper->idealContinuosPressureLossForTramo(3), machine.tramoVOladizo.perdaDeCargaIdeal);
    EXPECT_GT(machine.tramoVOladizo.perdaDeCargaIdeal, 0);
    EXPECT_RAISES(wrapper->idealContinuosPressureLossForTramo(4), RuntimeError::SubscriptOutOfRange);
    EXPECT_RAISES(wrapper->idealContinuosPressureLossForTramo(0), RuntimeError::SubscriptOutOfRange);
}

TEST(IdealMode, WithTheNullDropIdealPressureIsThePipePressure) {
    pivot flat = makePivot({makeSpan(1, 10, 168, 500)}, {0}, 0);
    flat.presion = 200;
    flat.caudal = 10;
    flat.rugosidad = 140;
    auto wrapper = wrap(flat, std::make_shared<RecordingStrategy>());
    const pivot machine = contentsOf(*wrapper);
    const double j = 1.21 * std::pow(10.0, 10.0) * std::pow(10.0 / 140.0, 1.852) * std::pow(168.0, -4.87);
    EXPECT_NEAR(machine.Tramos(1).Saidas(1).pressao_ideal, 200 - j * 5 * 10, 1e-9);
}

TEST(IdealMode, ZeroIrrigatedLengthRaises) {
    pivot machine;
    machine.caudal = 1;
    machine.presion = 100;
    machine.rugosidad = 140;
    Pivots::shared()->setEndGun(machine, Types::gunInstance()->newGun(0));
    EXPECT_RAISES(wrap(machine, std::make_shared<RecordingStrategy>()), RuntimeError::Overflow);
}

TEST(WaterApplication, EmptyMachineYieldsNoSamples) {
    auto wrapper = wrap(pivot{}, std::make_shared<RecordingStrategy>());
    EXPECT_FALSE(wrapper->WaterDepthsSamples(true).isAllocated());
    EXPECT_FALSE(wrapper->WaterDepthsSamples(false).isAllocated());
}

TEST(WaterApplication, IdealSamplesRightAfterCreationAndEndGunUsesItsRingWidth) {
    auto wrapper = wrap(withOverhangAndGun(twoSpanMachine()), std::make_shared<RecordingStrategy>());
    wrapper->setTimeForCompleteRevolution(20);
    const auto samples = wrapper->WaterDepthsSamples(true);
    ASSERT_EQ(samples.count(), 18 + 4 + 1);
    const pivot machine = contentsOf(*wrapper);
    const saida& first = machine.Tramos(1).Saidas(1);
    EXPECT_DOUBLE_EQ(samples(1).depth,
                     first.caudal * 3600 / (5.0 * 6.28318530717958 * first.distanciaAoPivot / 20));
    EXPECT_EQ(samples(1).distanceFromCenter, 5);
    const saida& gun = machine.endGun.saida;
    EXPECT_DOUBLE_EQ(samples(23).depth,
                     gun.caudal * 3600 / (25.0 * 6.28318530717958 * gun.distanciaAoPivot / 20));
    EXPECT_EQ(samples(23).distanceFromCenter, 110);
    // Uniform application: every ideal depth is the same.
    for (const auto& sample : samples) {
        EXPECT_NEAR(sample.depth, samples(1).depth, 1e-9);
    }
}

TEST(WaterApplication, ActualSamplesAfterCalculate) {
    auto strategy = std::make_shared<RecordingStrategy>();
    strategy->fixedNozzle = makeNozzle("n", 0.02, 0.5);
    auto wrapper = wrap(twoSpanMachine(), strategy);
    wrapper->setTimeForCompleteRevolution(10);
    wrapper->calculate();
    const auto samples = wrapper->WaterDepthsSamples(false);
    const pivot machine = contentsOf(*wrapper);
    const saida& outlet = machine.Tramos(2).Saidas(2);
    EXPECT_DOUBLE_EQ(samples(12).depth, outlet.caudal_do_aspersor * 3600 /
                                            (5.0 * 6.28318530717958 * outlet.distanciaAoPivot / 10));
}

TEST(WaterApplication, PeakApplicationRateForwardsToThePivot) {
    auto strategy = std::make_shared<RecordingStrategy>();
    strategy->fixedNozzle = makeNozzle("n", 0.02, 0.5);
    auto wrapper = wrap(withOverhangAndGun(twoSpanMachine()), strategy);
    wrapper->calculate();
    const PivotSample sample = makePivotSample(100, 30, "x");
    pivot machine = contentsOf(*wrapper);
    EXPECT_EQ(wrapper->pluviosidadeMaxima(sample), Pivots::shared()->pluviosidadeMaxima(machine, sample));
    EXPECT_GT(wrapper->pluviosidadeMaxima(sample), 0);
}

TEST(PivotWrapper, ASpanOfTheMostOutletsAnIntegerCountsIsMarchedToItsLastOutlet) {
    // 32767 outlets every 10 cm: the outlet loops must end at the last one, not wrap around.
    pivot machine = makePivot({makeSpan(1, 3276.75, 168, 10)}, {100}, 100);
    machine.presion = 300;
    machine.caudal = 30;
    machine.rugosidad = 140;
    auto strategy = std::make_shared<RecordingStrategy>();
    auto wrapper = wrap(machine, strategy);
    wrapper->calculate();
    EXPECT_EQ(wrapper->numeroTotalDeSaidas(), 32767);
    EXPECT_EQ(strategy->calls.size(), 2U * 32767U);
    EXPECT_GT(wrapper->saidaAt(32767).caudal, 0);
    wrapper->setTimeForCompleteRevolution(20);
    EXPECT_EQ(wrapper->WaterDepthsSamples(true).count(), 32767);
    EXPECT_EQ(wrapper->extractCarta()->mountedAspersores()->Count(), 0);
}

namespace {

/// Gives span 1 an outlet count or outlet bounds that its outlets do not fill.
class OutletsShortOfTheCount : public PivotApplier {
public:
    explicit OutletsShortOfTheCount(bool startAfterOne) : startAfterOne_(startAfterOne) {}
    void apply(pivot& machine) override {
        tramo& span = machine.Tramos(1);
        const Long count = span.Saidas.count();
        if (startAfterOne_) {
            span.Saidas.redimPreserve(2, count + 1);
        } else {
            span.p_outlet_count = static_cast<Double>(count + 1);
        }
    }

private:
    bool startAfterOne_;
};

}  // namespace

TEST(ActualMarch, OutletsMissingFromTheArrayRaiseAfterTheOutletsBeforeThem) {
    auto strategy = std::make_shared<RecordingStrategy>();
    strategy->fixedNozzle = makeNozzle("n", 0.02, 0.5);
    auto wrapper = wrap(twoSpanMachine(), strategy);
    const Long outlets = contentsOf(*wrapper).Tramos(1).Saidas.count();
    ASSERT_GT(outlets, 0);
    OutletsShortOfTheCount countTooHigh(false);
    wrapper->apply(countTooHigh);
    strategy->calls.clear();
    EXPECT_RAISES(wrapper->compute(*strategy, wrapper->getDrop()), RuntimeError::SubscriptOutOfRange);
    // Every outlet the array holds was marched, and its results kept, before the missing one.
    ASSERT_EQ(static_cast<Long>(strategy->calls.size()), outlets);
    const pivot marched = contentsOf(*wrapper);
    EXPECT_GT(marched.Tramos(1).Saidas(outlets).caudal_do_aspersor, 0);
    EXPECT_EQ(marched.Tramos(1).Saidas(outlets).pressao_real, strategy->calls.back().outlet.pressao_real);
}

TEST(ActualMarch, OutletsNumberedFromAfterOneRaiseBeforeAnyOutlet) {
    auto strategy = std::make_shared<RecordingStrategy>();
    strategy->fixedNozzle = makeNozzle("n", 0.02, 0.5);
    auto wrapper = wrap(twoSpanMachine(), strategy);
    OutletsShortOfTheCount numberedFromTwo(true);
    wrapper->apply(numberedFromTwo);
    strategy->calls.clear();
    EXPECT_RAISES(wrapper->compute(*strategy, wrapper->getDrop()), RuntimeError::SubscriptOutOfRange);
    EXPECT_TRUE(strategy->calls.empty());
}

namespace {

/// Every outlet's ideal and actual pressures and flows, as bits.
std::vector<std::uint64_t> outletBits(const PivotWrapper& wrapper) {
    std::vector<std::uint64_t> values;
    const pivot machine = contentsOf(wrapper);
    for (const tramo& span : machine.Tramos) {
        for (const saida& outlet : span.Saidas) {
            for (const double value : {outlet.caudal, outlet.pressao_ideal, outlet.pressao_real,
                                       outlet.pressao_actuante, outlet.caudal_do_aspersor}) {
                values.push_back(std::bit_cast<std::uint64_t>(value));
            }
        }
    }
    return values;
}

std::shared_ptr<PivotWrapper> calculatedWithDrop(const std::shared_ptr<PivotWrapper>& wrapper,
                                                 double diameter) {
    wrapper->setDrop(Drops::shared()->newDrop(diameter, 3, PipeMaterial{1, "hose", 140}));
    wrapper->installDrop();
    wrapper->calculate();
    return wrapper;
}

std::shared_ptr<PivotWrapper> freshWrapper() {
    auto strategy = std::make_shared<RecordingStrategy>();
    strategy->fixedNozzle = makeNozzle("n", 0.02, 0.5);
    return wrap(withOverhangAndGun(twoSpanMachine()), strategy);
}

}  // namespace

TEST(PivotWrapper, DropLossesKeptFromEarlierCalculationsChangeNoResult) {
    const auto fresh = outletBits(*calculatedWithDrop(freshWrapper(), 16));
    auto again = calculatedWithDrop(freshWrapper(), 20);
    EXPECT_NE(outletBits(*again), fresh);
    EXPECT_EQ(outletBits(*calculatedWithDrop(again, 16)), fresh);
    EXPECT_EQ(outletBits(*calculatedWithDrop(again, 16)), fresh);
    // A copy of a wrapper calculates on its own, as the wrapper does.
    auto copy = std::make_shared<PivotWrapper>(*again);
    EXPECT_EQ(outletBits(*calculatedWithDrop(copy, 16)), fresh);
    EXPECT_EQ(outletBits(*calculatedWithDrop(again, 20)),
              outletBits(*calculatedWithDrop(freshWrapper(), 20)));
}
