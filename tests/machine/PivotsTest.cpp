#include "caudalis/machine/Pivots.hpp"

#include <gtest/gtest.h>

#include "ErrorMatchers.hpp"
#include "MachineBuilders.hpp"
#include "caudalis/core/Doubles.hpp"
#include "caudalis/core/Statics.hpp"
#include "caudalis/machine/Types.hpp"

using namespace caudalis;
using namespace caudalis::testing;

namespace {

constexpr Double pi = 3.14159265358979;

std::shared_ptr<Pivots> pivots() {
    return Pivots::shared();
}

pivot newPivot() {
    return Statics::application()->newPivot();
}

// Two flat fixed spans of 10 outlets, an overhang of 3 outlets and an end gun.
pivot countedMachine() {
    pivot machine = newPivot();
    pivots()->setFixedSpans(machine, spanList({spanWithOutlets(1, 10), spanWithOutlets(2, 10)}),
                            heights({0, 0}));
    pivots()->setOverhangSpan(machine, spanWithOutlets(3, 3));
    pivots()->setEndGun(machine, Types::gunInstance()->newGun(25));
    return machine;
}

// Spans of 50 m and 40 m, an overhang of 20 m and an end gun watering 25 m.
pivot measuredMachine() {
    pivot machine = newPivot();
    pivots()->setFixedSpans(machine, spanList({spanOfLength(1, 50), spanOfLength(2, 40)}), heights({0, 0}));
    pivots()->setOverhangSpan(machine, spanOfLength(3, 20));
    pivots()->setEndGun(machine, Types::gunInstance()->newGun(25));
    return machine;
}

pivot operableMachine() {
    pivot machine = newPivot();
    machine.presion = 250;
    machine.caudal = 50;
    machine.rugosidad = 140;
    return machine;
}

regulador regulatorAt(Double pressure) {
    regulador fitted;
    fitted.marca = "Senninger";
    fitted.Preg = pressure;
    return fitted;
}

Integer outletNumberAt(pivot& machine, Integer number, Long which) {
    return pivots()->saida2TramoeSaida(machine, number)(which);
}

}  // namespace

TEST(Pivots, SharedInstanceIsOneObject) {
    EXPECT_EQ(Pivots::shared(), Pivots::shared());
}

TEST(Pivots, NewPivotHasNothing) {
    pivot machine = newPivot();
    EXPECT_EQ(pivots()->FixedSpansCount(machine), 0);
    EXPECT_TRUE(pivots()->FixedSpanOutletCount(machine).isEmpty());
    EXPECT_EQ(pivots()->AllSpanOutletCount(machine), 0);
    EXPECT_EQ(pivots()->AllOutletCount(machine), 0);
    EXPECT_EQ(pivots()->AllSpanLenght(machine), 0);
    EXPECT_EQ(pivots()->IrrigatedArea(machine), 0);
    EXPECT_FALSE(pivots()->isComplete(machine));
    EXPECT_FALSE(pivots()->hasOverHang(machine));
    EXPECT_FALSE(pivots()->hasEndGun(machine));
    EXPECT_EQ(pivots()->allSpansCount(machine), 0);
}

TEST(Pivots, CountsOutletsOfSpansOverhangAndEndGun) {
    pivot machine = countedMachine();
    const Variant fixed = pivots()->FixedSpanOutletCount(machine);
    EXPECT_EQ(fixed.type(), Variant::Type::Double);
    EXPECT_EQ(fixed.toDouble(), 20);
    EXPECT_EQ(pivots()->AllSpanOutletCount(machine), 23);
    EXPECT_EQ(pivots()->AllOutletCount(machine), 24);
    EXPECT_EQ(pivots()->FixedSpansCount(machine), 2);
    EXPECT_EQ(pivots()->allSpansCount(machine), 3);
}

TEST(Pivots, CountingFillsTheSpansOutletCaches) {
    pivot machine = countedMachine();
    (void)pivots()->AllSpanOutletCount(machine);
    EXPECT_EQ(machine.Tramos(1).p_outlet_count, 10);
    EXPECT_EQ(machine.Tramos(2).p_outlet_count, 10);
    EXPECT_EQ(machine.tramoVOladizo.p_outlet_count, 3);
}

TEST(Pivots, CountsWithoutOverhangAndEndGun) {
    pivot machine = countedMachine();
    pivots()->removeOverhangSpan(machine);
    (void)pivots()->removeEndGun(machine);
    EXPECT_EQ(pivots()->AllSpanOutletCount(machine), 20);
    EXPECT_EQ(pivots()->AllOutletCount(machine), 20);
    EXPECT_EQ(pivots()->allSpansCount(machine), 2);
}

TEST(Pivots, GlobalOutletNumbersMapToSpanAndOutlet) {
    pivot machine = countedMachine();
    const auto address = pivots()->saida2TramoeSaida(machine, 11);
    EXPECT_EQ(address.lbound(), 1);
    EXPECT_EQ(address.ubound(), 2);
    EXPECT_EQ(address(1), 2);
    EXPECT_EQ(address(2), 1);
    EXPECT_EQ(outletNumberAt(machine, 15, 1), 2);
    EXPECT_EQ(outletNumberAt(machine, 15, 2), 5);
    EXPECT_EQ(outletNumberAt(machine, 10, 1), 1);
    EXPECT_EQ(outletNumberAt(machine, 10, 2), 10);
    EXPECT_EQ(outletNumberAt(machine, 1, 2), 1);
}

TEST(Pivots, OutletNumbersOutsideTheFixedSpansAreOutOfRange) {
    pivot machine = countedMachine();
    EXPECT_RAISES(pivots()->saida2TramoeSaida(machine, 0), RuntimeError::SubscriptOutOfRange);
    EXPECT_RAISES(pivots()->saida2TramoeSaida(machine, -3), RuntimeError::SubscriptOutOfRange);
    EXPECT_RAISES(pivots()->saida2TramoeSaida(machine, 21), RuntimeError::SubscriptOutOfRange);
}

TEST(Pivots, SaidaAtReturnsACopyOfTheNumberedOutlet) {
    pivot machine = countedMachine();
    machine.Tramos(2).Saidas(3).distanciaAoPivot = 57.5;
    saida outlet = pivots()->saidaAt(machine, 13);
    EXPECT_EQ(outlet.distanciaAoPivot, 57.5);
    outlet.distanciaAoPivot = 1;
    EXPECT_EQ(machine.Tramos(2).Saidas(3).distanciaAoPivot, 57.5);
}

TEST(Pivots, SaidaAtCannotReachTheOverhangsOutlets) {
    pivot machine = countedMachine();
    EXPECT_RAISES(pivots()->saidaAt(machine, 21), RuntimeError::SubscriptOutOfRange);
}

TEST(Pivots, SaidaAtBeyondTheIntegerRangeOverflows) {
    pivot machine = countedMachine();
    EXPECT_RAISES(pivots()->saidaAt(machine, 40000), RuntimeError::Overflow);
}

TEST(Pivots, SaidaAtAStaleCountBeyondTheOutletsIsOutOfRange) {
    pivot machine = countedMachine();
    machine.Tramos(1).p_outlet_count = 12;
    EXPECT_RAISES(pivots()->saidaAt(machine, 11), RuntimeError::SubscriptOutOfRange);
}

TEST(Pivots, LengthsOfSpansOverhangAndEndGun) {
    const pivot machine = measuredMachine();
    EXPECT_EQ(pivots()->tramoAte(machine, 1), 50);
    EXPECT_EQ(pivots()->tramoAte(machine, 2), 90);
    EXPECT_EQ(pivots()->AllSpanLenght(machine), 110);
    EXPECT_EQ(pivots()->AllIrrigatedLenght(machine), 135);
    EXPECT_EQ(pivots()->IrrigatedArea(machine), 135.0 * 135.0 * pi);
}

TEST(Pivots, TramoAteOutsideTheFixedSpans) {
    const pivot machine = measuredMachine();
    EXPECT_EQ(pivots()->tramoAte(machine, 0), 0);
    EXPECT_EQ(pivots()->tramoAte(machine, -1), 0);
    EXPECT_RAISES(pivots()->tramoAte(machine, 3), RuntimeError::SubscriptOutOfRange);
}

TEST(Pivots, RemovedOverhangAndEndGunDoNotCountInTheLength) {
    pivot machine = measuredMachine();
    machine.alcanceCanhao = 99;
    pivots()->removeOverhangSpan(machine);
    EXPECT_EQ(pivots()->AllSpanLenght(machine), 90);
    EXPECT_EQ(pivots()->AllIrrigatedLenght(machine), 115);
    (void)pivots()->removeEndGun(machine);
    EXPECT_EQ(pivots()->AllIrrigatedLenght(machine), 90);
}

TEST(Pivots, SetFixedSpansCopiesAndPlacesTheSpans) {
    pivot machine = newPivot();
    machine.cota = 100;
    const auto spans = spanList({spanOfLength(1, 50), spanOfLength(2, 40)});
    pivots()->setFixedSpans(machine, spans, heights({102, 101}));
    EXPECT_EQ(machine.Tramos(1).site.start_cota, 100);
    EXPECT_EQ(machine.Tramos(1).site.end_cota, 102);
    EXPECT_EQ(machine.Tramos(2).site.start_cota, 102);
    EXPECT_EQ(spans(1).site.Length, 0);
}

TEST(Pivots, OverhangContinuesTheLastSpansSlope) {
    pivot machine = newPivot();
    machine.cota = 100;
    pivots()->setFixedSpans(machine, spanList({spanOfLength(1, 50)}), heights({102}));
    tramo overhang = spanOfLength(2, 20);
    overhang.site = Placement{7, 8, 20, 0, 0};
    pivots()->setOverhangSpan(machine, overhang);

    const auto placements = Types::placementsInstance();
    Placement last = machine.Tramos(1).site;
    Placement continued = machine.tramoVOladizo.site;
    EXPECT_TRUE(pivots()->hasOverHang(machine));
    EXPECT_EQ(continued.start_cota, 102);
    EXPECT_EQ(continued.Length, 20);
    EXPECT_NEAR(placements->SlopeAngle(continued), placements->SlopeAngle(last), 1e-14);
    EXPECT_EQ(machine.Tramos(1).site.p_angle, 0);
}

TEST(Pivots, RemovingTheFixedSpansLeavesTheOverhangFlat) {
    pivot machine = newPivot();
    machine.cota = 100;
    pivots()->setFixedSpans(machine, spanList({spanOfLength(1, 50)}), heights({102}));
    pivots()->setOverhangSpan(machine, spanOfLength(2, 20));
    pivots()->removeFixedSpans(machine);
    EXPECT_FALSE(machine.Tramos.isAllocated());
    EXPECT_EQ(machine.tramoVOladizo.site.start_cota, 0);
    EXPECT_EQ(machine.tramoVOladizo.site.end_cota, 0);
    EXPECT_EQ(machine.tramoVOladizo.site.Length, 1);
    EXPECT_EQ(machine.tramoVOladizo.site.p_angle, 0);
    EXPECT_EQ(machine.tramoVOladizo.site.p_slope, 0);
}

TEST(Pivots, OverhangWithoutFixedSpansKeepsItsOwnPlacement) {
    pivot machine = newPivot();
    tramo overhang = spanOfLength(2, 20);
    overhang.site = Placement{7, 8, 20, 0, 0};
    pivots()->setOverhangSpan(machine, overhang);
    EXPECT_EQ(machine.tramoVOladizo.site.start_cota, 7);
    EXPECT_EQ(machine.tramoVOladizo.site.end_cota, 8);
}

TEST(Pivots, SettingFixedSpansPlacesAnExistingOverhangAgain) {
    pivot machine = newPivot();
    pivots()->setOverhangSpan(machine, spanOfLength(2, 20));
    pivots()->setFixedSpans(machine, spanList({spanOfLength(1, 50)}), heights({4}));
    EXPECT_EQ(machine.tramoVOladizo.site.start_cota, 4);
    EXPECT_GT(machine.tramoVOladizo.site.end_cota, 4);
}

TEST(Pivots, OverhangAfterAnInvalidLastSpanGetsANaNEnd) {
    pivot machine = newPivot();
    pivots()->setFixedSpans(machine, spanList({spanOfLength(1, 50)}), heights({60}));
    pivots()->setOverhangSpan(machine, spanOfLength(2, 20));
    EXPECT_EQ(machine.tramoVOladizo.site.start_cota, 60);
    EXPECT_TRUE(Doubles::shared()->isNaN(machine.tramoVOladizo.site.end_cota));
}

TEST(Pivots, RemovedOverhangKeepsItsData) {
    pivot machine = countedMachine();
    pivots()->removeOverhangSpan(machine);
    EXPECT_FALSE(pivots()->hasOverHang(machine));
    EXPECT_EQ(machine.tramoVOladizo.id, 3);
    EXPECT_EQ(machine.tramoVOladizo.longitude, 7.5);
    machine.p_has_overhang = true;
    EXPECT_EQ(pivots()->AllSpanOutletCount(machine), 23);
}

TEST(Pivots, RemovedEndGunKeepsItsDataAndAnswersEmpty) {
    pivot machine = countedMachine();
    EXPECT_TRUE(pivots()->hasEndGun(machine));
    EXPECT_TRUE(pivots()->removeEndGun(machine).isEmpty());
    EXPECT_FALSE(pivots()->hasEndGun(machine));
    EXPECT_EQ(machine.endGun.rs, 25);
}

TEST(Pivots, RegulatorsComeBackInTheSamePattern) {
    pivot machine = newPivot();
    pivots()->setFixedSpans(machine,
                            spanList({spanOfLength(1, 50), spanOfLength(2, 50), spanOfLength(3, 50)}),
                            heights({0, 0, 0}));
    const auto fitting = BoundedArray<Variant>::of({Variant(), Variant::record(regulatorAt(140)), Variant()});
    pivots()->aplicaRegulador(machine, fitting);
    EXPECT_FALSE(machine.Tramos(1).temRegulador);
    EXPECT_TRUE(machine.Tramos(2).temRegulador);
    EXPECT_EQ(machine.Tramos(2).regulador, regulatorAt(140));

    const auto collected = pivots()->recolheReguladores(machine);
    ASSERT_EQ(collected.lbound(), 1);
    ASSERT_EQ(collected.ubound(), 3);
    EXPECT_TRUE(collected(1).isEmpty());
    EXPECT_EQ(collected(2).toRecord<regulador>(), regulatorAt(140));
    EXPECT_TRUE(collected(3).isEmpty());
}

TEST(Pivots, RemovingARegulatorKeepsItsRecord) {
    pivot machine = newPivot();
    pivots()->setFixedSpans(machine, spanList({spanOfLength(1, 50)}), heights({0}));
    pivots()->aplicaRegulador(machine, BoundedArray<Variant>::of({Variant::record(regulatorAt(100))}));
    pivots()->aplicaRegulador(machine, BoundedArray<Variant>::of({Variant()}));
    EXPECT_FALSE(machine.Tramos(1).temRegulador);
    EXPECT_EQ(machine.Tramos(1).regulador.Preg, 100);
    EXPECT_TRUE(pivots()->recolheReguladores(machine)(1).isEmpty());
}

TEST(Pivots, RegulatorListShorterThanTheSpansIsOutOfRange) {
    pivot machine = countedMachine();
    const auto fitting = BoundedArray<Variant>::of({Variant::record(regulatorAt(100))});
    EXPECT_RAISES(pivots()->aplicaRegulador(machine, fitting), RuntimeError::SubscriptOutOfRange);
    EXPECT_TRUE(machine.Tramos(1).temRegulador);
}

TEST(Pivots, RegulatorListWithSomethingElseIsATypeMismatch) {
    pivot machine = countedMachine();
    const auto fitting = BoundedArray<Variant>::of({Variant::record(regulatorAt(100)), Variant(5.0)});
    EXPECT_RAISES(pivots()->aplicaRegulador(machine, fitting), RuntimeError::TypeMismatch);
    EXPECT_TRUE(machine.Tramos(1).temRegulador);
    EXPECT_FALSE(machine.Tramos(2).temRegulador);
}

TEST(Pivots, OverhangIsNeverGivenARegulator) {
    pivot machine = countedMachine();
    const auto fitting = BoundedArray<Variant>::of({Variant(), Variant(), Variant::record(regulatorAt(100))});
    pivots()->aplicaRegulador(machine, fitting);
    EXPECT_FALSE(machine.tramoVOladizo.temRegulador);
}

TEST(Pivots, NoRegulatorsToCollectWithoutSpans) {
    EXPECT_FALSE(pivots()->recolheReguladores(newPivot()).isAllocated());
}

TEST(Pivots, PeakApplicationRateInTheStatedOrder) {
    pivot machine = newPivot();
    pivots()->setFixedSpans(machine, spanList({spanOfLength(1, 400)}), heights({0}));
    machine.caudaDaCartaAssociada = 50;
    const PivotSample point = Statics::application()->newPivotSample(400, 30, "P");
    EXPECT_EQ(pivots()->pluviosidadeMaxima(machine, point),
              50.0 / 160000.0 * (4 / pi * 3600) * (400.0 / 15.0));
}

TEST(Pivots, PeakApplicationRateRaisesForZeroDiameterOrLength) {
    pivot machine = newPivot();
    machine.caudaDaCartaAssociada = 50;
    const auto statics = Statics::application();
    EXPECT_RAISES(pivots()->pluviosidadeMaxima(machine, statics->newPivotSample(400, 30, "P")),
                  RuntimeError::DivisionByZero);
    pivots()->setFixedSpans(machine, spanList({spanOfLength(1, 400)}), heights({0}));
    EXPECT_RAISES(pivots()->pluviosidadeMaxima(machine, statics->newPivotSample(400, 0, "P")),
                  RuntimeError::DivisionByZero);
}

TEST(Pivots, OperableMachineWithoutSpansIsComplete) {
    EXPECT_TRUE(pivots()->isComplete(operableMachine()));
}

TEST(Pivots, IncompleteWithoutPositivePressureFlowAndRoughness) {
    const double nan = Doubles::shared()->NaN();
    for (const double bad : {0.0, -1.0, nan}) {
        pivot machine = operableMachine();
        machine.presion = bad;
        EXPECT_FALSE(pivots()->isComplete(machine));
        machine = operableMachine();
        machine.caudal = bad;
        EXPECT_FALSE(pivots()->isComplete(machine));
        machine = operableMachine();
        machine.rugosidad = bad;
        EXPECT_FALSE(pivots()->isComplete(machine));
    }
}

TEST(Pivots, CompletenessOfSpansOverhangAndEndGun) {
    pivot machine = operableMachine();
    pivots()->setFixedSpans(machine, spanList({spanOfLength(1, 50)}), heights({1}));
    EXPECT_TRUE(pivots()->isComplete(machine));

    pivots()->setOverhangSpan(machine, tramo{});
    EXPECT_FALSE(pivots()->isComplete(machine));
    pivots()->removeOverhangSpan(machine);
    EXPECT_TRUE(pivots()->isComplete(machine));

    pivots()->setEndGun(machine, Types::gunInstance()->newGun(0));
    EXPECT_FALSE(pivots()->isComplete(machine));
    (void)pivots()->removeEndGun(machine);
    EXPECT_TRUE(pivots()->isComplete(machine));
}

TEST(Pivots, UnplacedSpanMakesTheMachineIncomplete) {
    pivot machine = operableMachine();
    machine.Tramos = spanList({spanOfLength(1, 50)});
    EXPECT_FALSE(pivots()->isComplete(machine));
}

TEST(Pivots, ResetIdealDataClearsHeadLossesAndTheGunsIdealValues) {
    pivot machine = countedMachine();
    machine.Tramos(1).perdaDeCargaIdeal = 3;
    machine.Tramos(2).perdaDeCargaIdeal = 4;
    machine.Tramos(1).ideal_entry_conditions = pivots()->newParPressaoCaudal(250, 50);
    machine.tramoVOladizo.perdaDeCargaIdeal = 5;
    machine.endGun.saida.caudal = 2;
    machine.endGun.saida.pressao_ideal = 300;
    machine.endGun.saida.pressao_real = 280;
    pivots()->ResetIdealData(machine);
    EXPECT_EQ(machine.Tramos(1).perdaDeCargaIdeal, 0);
    EXPECT_EQ(machine.Tramos(2).perdaDeCargaIdeal, 0);
    EXPECT_EQ(machine.tramoVOladizo.perdaDeCargaIdeal, 0);
    EXPECT_EQ(machine.endGun.saida.caudal, 0);
    EXPECT_EQ(machine.endGun.saida.pressao_ideal, 0);
    EXPECT_EQ(machine.endGun.saida.pressao_real, 280);
    EXPECT_EQ(machine.Tramos(1).ideal_entry_conditions, pivots()->newParPressaoCaudal(250, 50));
}

TEST(Pivots, ResetIdealDataLeavesAbsentOverhangAndGunAlone) {
    pivot machine = countedMachine();
    machine.tramoVOladizo.perdaDeCargaIdeal = 5;
    machine.endGun.saida.caudal = 2;
    pivots()->removeOverhangSpan(machine);
    (void)pivots()->removeEndGun(machine);
    pivots()->ResetIdealData(machine);
    EXPECT_EQ(machine.tramoVOladizo.perdaDeCargaIdeal, 5);
    EXPECT_EQ(machine.endGun.saida.caudal, 2);
}

TEST(Pivots, NewParPressaoCaudal) {
    const auto pair = pivots()->newParPressaoCaudal(250, 12.5);
    EXPECT_EQ(pair.pressao, 250);
    EXPECT_EQ(pair.caudal, 12.5);
}

TEST(Pivots, OutletCountsBeyondTheIntegerRangeOverflow) {
    pivot machine = countedMachine();
    machine.Tramos(1).p_outlet_count = 20000;
    machine.Tramos(2).p_outlet_count = 20000;
    EXPECT_EQ(pivots()->FixedSpanOutletCount(machine).toDouble(), 40000);
    EXPECT_RAISES(pivots()->AllSpanOutletCount(machine), RuntimeError::Overflow);
    EXPECT_RAISES(pivots()->saida2TramoeSaida(machine, 32767), RuntimeError::Overflow);
}

TEST(Pivots, AllOutletCountOverflowsWithTheEndGun) {
    pivot machine = countedMachine();
    machine.Tramos(1).p_outlet_count = 32754;
    EXPECT_EQ(pivots()->AllSpanOutletCount(machine), 32767);
    EXPECT_RAISES(pivots()->AllOutletCount(machine), RuntimeError::Overflow);
}

TEST(Pivots, SaidaAtASpanWithoutOutletsIsOutOfRange) {
    pivot machine = newPivot();
    tramo unsized;
    unsized.p_outlet_count = 4;
    machine.Tramos = spanList({unsized});
    EXPECT_RAISES(pivots()->saidaAt(machine, 2), RuntimeError::SubscriptOutOfRange);
}
