#include <gtest/gtest.h>

#include "caudalis/core/Arrays.hpp"
#include "caudalis/core/Doubles.hpp"
#include "caudalis/core/Factories.hpp"
#include "caudalis/core/Statics.hpp"

using namespace caudalis;

TEST(Statics, ApplicationObjectIsOneInstance) {
    EXPECT_EQ(Statics::application(), Statics::application());
}

TEST(Statics, SharedHelpersAreTheSameObjectForEveryStatics) {
    Statics one;
    Statics two;
    EXPECT_EQ(one.Arrays(), one.Arrays());
    EXPECT_EQ(one.Arrays(), two.Arrays());
    EXPECT_EQ(one.Doubles(), two.Doubles());
    EXPECT_EQ(one.Arrays(), Arrays::shared());
}

TEST(Statics, NewIndicadores) {
    const auto record = Statics::application()->newIndicadores(24, 3);
    EXPECT_EQ(record.horasRevolucao, 24);
    EXPECT_EQ(record.numeroSaidasObturadas, 3);
    EXPECT_EQ(record.id, 0);
}

TEST(Statics, NewPivotSampleCopiesTheCode) {
    std::string code = "A";
    const auto sample = Statics::application()->newPivotSample(120.5, 30, code);
    code[0] = 'B';
    EXPECT_EQ(sample.distanceToCenter, 120.5);
    EXPECT_EQ(sample.wetDiameter, 30);
    EXPECT_EQ(sample.code, "A");
}

TEST(Statics, NewKostiakovParameters) {
    const auto parameters = Statics::application()->newKostiakovParameters(1.5, 0.4);
    EXPECT_EQ(parameters.k, 1.5);
    EXPECT_EQ(parameters.a, 0.4);
}

TEST(Statics, NewPivotIsAllZero) {
    const pivot machine = Statics::application()->newPivot();
    EXPECT_FALSE(machine.Tramos.isAllocated());
    EXPECT_FALSE(machine.p_has_overhang);
    EXPECT_FALSE(machine.p_has_end_gun);
    EXPECT_EQ(machine.caudal, 0);
    EXPECT_EQ(machine.presion, 0);
    EXPECT_EQ(machine.rugosidad, 0);
    EXPECT_EQ(machine.endGun.rs, 0);
    EXPECT_EQ(machine.tramoVOladizo.denominacion, "");
    EXPECT_FALSE(machine.tramoVOladizo.Saidas.isAllocated());
    EXPECT_EQ(machine.caixa.tempoH100, 0);
}

TEST(Records, DefaultsAreZero) {
    const saida outlet;
    EXPECT_EQ(outlet.obj_aspersor, nullptr);
    EXPECT_FALSE(outlet.over_pressure);
    const Drop drop;
    EXPECT_FALSE(drop.p_is_null);
    EXPECT_EQ(drop.pipe_material, PipeMaterial{});
    const Pluviometro gauge;
    EXPECT_EQ(gauge.p_area, 0);
    const PivotEvaluation evaluation;
    EXPECT_FALSE(evaluation.firstSample.isAllocated());
    const CoordenadasSaida unset;
    EXPECT_EQ(unset.numeroTramo, 0);
    EXPECT_EQ(unset.saida, 0);
    EXPECT_EQ(static_cast<Long>(compareWhat::depth), 0);
    EXPECT_EQ(static_cast<Long>(compareWhat::distance), 1);
}

TEST(Records, AreCopiedByValue) {
    tramo original;
    original.Saidas.redim(1, 2);
    tramo copy = original;
    copy.Saidas(1).caudal = 5;
    EXPECT_EQ(original.Saidas(1).caudal, 0);
}
