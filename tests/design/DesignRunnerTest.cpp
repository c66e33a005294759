#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "SampleNozzles.hpp"
#include "caudalis/catalogue/Aspersor.hpp"
#include "caudalis/charts/CartaAspersores.hpp"
#include "caudalis/core/Statics.hpp"
#include "caudalis/design/DesignError.hpp"
#include "caudalis/design/DesignFile.hpp"
#include "caudalis/design/DesignRunner.hpp"
#include "caudalis/design/InMemoryNozzleSource.hpp"
#include "caudalis/design/MachineBuilder.hpp"
#include "caudalis/hydraulics/Drops.hpp"
#include "caudalis/machine/Pivots.hpp"

using namespace caudalis;
using namespace caudalis::design;

namespace {

DesignDescription example(const std::string& name) {
    return DesignFile::load(caudalis::testing::sourcePath("examples/designs/" + name + ".json"));
}

DesignResult runExample(const std::string& name) {
    InMemoryNozzleSource source(caudalis::testing::sampleCatalogue());
    return DesignRunner().run(example(name), source);
}

const OutletResult& endGunOf(const DesignResult& result) {
    return result.outlets.back();
}

}  // namespace

TEST(MachineBuilder, BuildsSpansOverhangAndGunOnTheGround) {
    const auto design = example("realistic");
    auto machine = MachineBuilder().build(design);
    const auto pivots = Pivots::shared();
    EXPECT_EQ(pivots->FixedSpansCount(machine), 7);
    EXPECT_TRUE(pivots->hasOverHang(machine));
    EXPECT_TRUE(pivots->hasEndGun(machine));
    EXPECT_DOUBLE_EQ(machine.presion, 300);
    EXPECT_DOUBLE_EQ(machine.caudal, 50);
    EXPECT_DOUBLE_EQ(machine.rugosidad, 140);
    EXPECT_DOUBLE_EQ(machine.Tramos(1).site.start_cota, 112.0);
    EXPECT_DOUBLE_EQ(machine.Tramos(2).site.start_cota, 112.6);
    EXPECT_DOUBLE_EQ(machine.Tramos(7).site.end_cota, 112.9);
    EXPECT_EQ(machine.Tramos(1).Saidas.count(), 19);  // Int(54.9 / 2.75)
    EXPECT_DOUBLE_EQ(machine.tramoVOladizo.site.start_cota, 112.9);
    EXPECT_DOUBLE_EQ(pivots->AllIrrigatedLenght(machine), 7 * 54.9 + 18 + 24);
    EXPECT_TRUE(pivots->isComplete(machine));
}

TEST(DesignRunner, RealisticMachineDeliversItsDesignFlow) {
    const auto result = runExample("realistic");
    const auto& s = result.summary;
    EXPECT_NEAR(s.computedFlowLps, 50, 2.5);
    EXPECT_GE(s.passes, 2);
    EXPECT_EQ(s.outlets, 7 * 19 + 7 + 1);
    EXPECT_EQ(static_cast<long>(result.outlets.size()), s.outlets);
    EXPECT_EQ(result.spans.size(), 8u);
    EXPECT_TRUE(result.spans.back().overhang);
    // The computed discharge is the sum of what the nozzles deliver.
    double delivered = 0;
    for (const auto& outlet : result.outlets) {
        delivered += outlet.outlet.caudal_do_aspersor;
    }
    EXPECT_NEAR(delivered, s.computedFlowLps, 1e-9);
    // Only outlets near the centre (required flow below the smallest nozzle) stay empty.
    for (const auto& outlet : result.outlets) {
        if (!outlet.outlet.obj_aspersor) {
            EXPECT_LT(outlet.outlet.distanciaAoPivot, 60) << outlet.span << "-" << outlet.number;
        } else {
            EXPECT_LE(std::fabs(*outlet.deviationPercent), 10 + 1e-9);
        }
    }
    EXPECT_DOUBLE_EQ(s.irrigatedLengthM, 7 * 54.9 + 18 + 24);
    EXPECT_DOUBLE_EQ(s.irrigatedAreaM2, s.irrigatedLengthM * s.irrigatedLengthM * 3.14159265358979);
}

TEST(DesignRunner, EndGunActsAtTheLastExitPressurePlusBooster) {
    const auto result = runExample("realistic");
    const auto& gun = endGunOf(result);
    ASSERT_EQ(gun.place, OutletPlace::EndGun);
    const auto& overhang = result.spans.back().span;
    EXPECT_DOUBLE_EQ(gun.outlet.pressao_actuante, overhang.exit_condition.pressao + 150);
    EXPECT_DOUBLE_EQ(result.summary.endGunPressureKpa, gun.outlet.pressao_actuante);
    EXPECT_DOUBLE_EQ(result.summary.endGunFlowLps, gun.outlet.caudal_do_aspersor);
    ASSERT_NE(gun.outlet.obj_aspersor, nullptr);
    EXPECT_EQ(gun.outlet.obj_aspersor->marca().nome, "Vellora");
    EXPECT_DOUBLE_EQ(result.chart->getEndGunBoost(), 150);
}

TEST(DesignRunner, SummaryFiguresComeFromTheDepthSamples) {
    const auto result = runExample("realistic");
    const auto& s = result.summary;
    ASSERT_TRUE(s.depthMm && s.idealDepthMm);
    // Ideal flows give an even depth: Q * 3600 * T / (pi R^2).
    const double even = 50 * 3600 * 20 / s.irrigatedAreaM2;
    EXPECT_NEAR(*s.idealDepthMm, even, 1e-6);
    EXPECT_NEAR(*s.idealUniformityCoefficient, 100, 1e-6);
    EXPECT_NEAR(*s.idealLowQuarterUniformity, 100, 1e-6);
    EXPECT_GT(*s.uniformityCoefficient, 80);
    EXPECT_LT(*s.uniformityCoefficient, 100);
    EXPECT_GT(*s.lowQuarterUniformity, 50);
    ASSERT_EQ(s.peakRates.size(), 2u);
    EXPECT_EQ(s.peakRates[1].point.code, "P-395");
    const double L = s.irrigatedLengthM;
    EXPECT_NEAR(s.peakRates[1].rateMmH,
                s.computedFlowLps / (L * L) * (4 / 3.14159265358979 * 3600) * (395 / 7.0), 1e-9);
    // Each outlet carries its own depth; the weighted mean of them is the summary's.
    double weighted = 0;
    double weights = 0;
    for (const auto& outlet : result.outlets) {
        weighted += outlet.depthMm * outlet.outlet.distanciaAoPivot;
        weights += outlet.outlet.distanciaAoPivot;
    }
    EXPECT_NEAR(weighted / weights, *s.depthMm, 1e-9);
}

TEST(DesignRunner, HillyMachineUsesRegulatorsAndBrand) {
    const auto result = runExample("hilly");
    for (const auto& outlet : result.outlets) {
        EXPECT_TRUE(outlet.regulated);
        EXPECT_DOUBLE_EQ(outlet.outlet.pressao_actuante, 140);
        if (outlet.outlet.obj_aspersor) {
            EXPECT_EQ(outlet.outlet.obj_aspersor->marca().nome, "Rotaflux");
        }
    }
    EXPECT_EQ(result.chart->getReguladores()->Count(), 6);
    EXPECT_EQ(result.chart->getIndicadores().numeroSaidasObturadas, 2);
    EXPECT_TRUE(result.chart->getDrop().p_installed);
    EXPECT_EQ(result.chart->getDrop().pipe_material.name, "Polyethylene");
}

TEST(DesignRunner, DropHoseCostsPressureAtTheRequiredFlow) {
    // Regulated spans keep every nozzle acting at 140 kPa, so the pipe pressures are the same
    // with and without the hose and the difference is the hose's loss alone.
    auto withDrop = example("hilly");
    auto withoutDrop = withDrop;
    withoutDrop.drop.reset();
    InMemoryNozzleSource source(caudalis::testing::sampleCatalogue());
    const auto a = DesignRunner().run(withDrop, source);
    const auto b = DesignRunner().run(withoutDrop, source);
    ASSERT_EQ(a.outlets.size(), b.outlets.size());
    const auto drops = Statics::application()->Drops();
    const auto hose = drops->newDrop(19, 3.5, PipeMaterial{2, "Polyethylene", 140});
    for (std::size_t i = 0; i < a.outlets.size(); ++i) {
        const auto& o = a.outlets[i].outlet;
        const double expected =
            std::max(0.0, b.outlets[i].outlet.pressao_real - drops->PressureLoss(hose, o.caudal));
        EXPECT_NEAR(o.pressao_real, expected, 1e-9) << i;
    }
}

TEST(DesignRunner, UninstalledDropAndRegulatorChangeNothing) {
    auto design = example("hilly");
    design.drop->installed = false;
    for (auto& regulator : design.regulators) {
        regulator.installed = false;
    }
    InMemoryNozzleSource source(caudalis::testing::sampleCatalogue());
    const auto result = DesignRunner().run(design, source);
    for (const auto& outlet : result.outlets) {
        EXPECT_FALSE(outlet.regulated);
        EXPECT_DOUBLE_EQ(outlet.outlet.pressao_actuante, outlet.outlet.pressao_real);
    }
    EXPECT_FALSE(result.chart->getDrop().p_installed);
}

TEST(DesignRunner, ChartHoldsEveryFittedNozzle) {
    const auto result = runExample("realistic");
    const long fitted = result.summary.outlets - result.summary.unfittedOutlets;
    EXPECT_EQ(result.chart->mountedAspersores()->Count(), fitted);
    EXPECT_EQ(result.chart->getNome(), "Home farm north pivot, 7 spans");
    EXPECT_EQ(result.chart->getPluviometriaCheck().secondSample.code, "P-395");
    EXPECT_DOUBLE_EQ(result.chart->getIndicadores().horasRevolucao, 20);
}

TEST(DesignRunner, ModelSelectionLimitsTheNozzles) {
    auto design = example("small");
    design.nozzleSelection.brand.reset();
    design.nozzleSelection.model = "R3000 Rotator";
    InMemoryNozzleSource source(caudalis::testing::sampleCatalogue());
    const auto result = DesignRunner().run(design, source);
    for (const auto& outlet : result.outlets) {
        if (outlet.outlet.obj_aspersor) {
            EXPECT_EQ(outlet.outlet.obj_aspersor->modelo().nome, "R3000 Rotator");
        }
    }
}

TEST(DesignRunner, UnknownBrandIsAnInputError) {
    auto design = example("small");
    design.nozzleSelection.brand = "Nobody";
    design.nozzleSelection.model.reset();
    InMemoryNozzleSource source(caudalis::testing::sampleCatalogue());
    try {
        DesignRunner().run(design, source);
        FAIL() << "no error";
    } catch (const DesignError& error) {
        EXPECT_STREQ(error.what(), "the catalogue holds no nozzles of brand \"Nobody\" (nozzle_selection)");
        EXPECT_EQ(error.kind(), DesignError::Kind::InvalidInput);
    }
}

TEST(DesignRunner, TooFewPassesIsNotSettled) {
    InMemoryNozzleSource source(caudalis::testing::sampleCatalogue());
    try {
        DesignRunner(DesignOptions{1, std::nullopt}).run(example("realistic"), source);
        FAIL() << "no error";
    } catch (const DesignError& error) {
        EXPECT_EQ(error.kind(), DesignError::Kind::NotSettled);
    }
}

TEST(DesignRunner, ChoosesOneSpanModelAndAnEndGunModelWhenTheFileNamesNone) {
    auto design = example("realistic");
    design.nozzleSelection = NozzleSelection{};
    design.nozzleSelection.tolerance = 0.1;
    InMemoryNozzleSource source(caudalis::testing::sampleCatalogue());
    const auto result = DesignRunner().run(design, source);
    EXPECT_FALSE(result.package.spans.empty());
    EXPECT_NE(result.package.endGun.find("Gun"), std::string::npos) << result.package.endGun;
    for (const auto& row : result.outlets) {
        if (row.outlet.obj_aspersor) {
            const auto& nozzle = *row.outlet.obj_aspersor;
            const auto label = nozzle.marca().nome + " " + nozzle.modelo().nome;
            EXPECT_EQ(label, row.place == OutletPlace::EndGun ? result.package.endGun : result.package.spans);
        }
    }
}

TEST(DesignRunner, InnerModelServesTheOutletsNearTheCentre) {
    const auto result = runExample("hilly");
    EXPECT_EQ(result.package.inner, "Rotaflux RX Spinner");
    EXPECT_EQ(result.package.spans, "Rotaflux RX Spinner HF");
    for (const auto& row : result.outlets) {
        if (row.outlet.obj_aspersor) {
            EXPECT_EQ(row.outlet.obj_aspersor->modelo().nome,
                      row.outlet.distanciaAoPivot <= 200 ? "RX Spinner" : "RX Spinner HF");
        }
    }
}

TEST(DesignRunner, AutomaticRegulatorsGoWhereThePressureSpreads) {
    auto design = example("hilly");
    design.regulators.clear();
    design.regulation.automatic = true;
    design.regulation.ratingKpa = 138;
    InMemoryNozzleSource source(caudalis::testing::sampleCatalogue());
    const auto result = DesignRunner().run(design, source);
    ASSERT_FALSE(result.design.regulators.empty());
    for (const auto& regulator : result.design.regulators) {
        EXPECT_DOUBLE_EQ(regulator.pressureKpa, 138);
    }
    // A tight limit regulates every span, a loose one none.
    design.regulation.spreadLimit = 0.001;
    EXPECT_EQ(DesignRunner().run(design, source).design.regulators.size(), 6u);
    design.regulation.spreadLimit = 1;
    EXPECT_TRUE(DesignRunner().run(design, source).design.regulators.empty());
}

TEST(DesignRunner, NonFiniteInputFromAHostIsRefusedNamingTheField) {
    InMemoryNozzleSource source(caudalis::testing::sampleCatalogue());
    auto design = example("small");
    design.designFlowLps = std::nan("");
    try {
        DesignRunner().run(design, source);
        FAIL() << "no error";
    } catch (const DesignError& error) {
        EXPECT_STREQ(error.what(), "design_flow_lps must be a finite number, not NaN");
    }
    design = example("small");
    design.spans[1].lengthM = HUGE_VAL;
    try {
        DesignRunner().run(design, source);
        FAIL() << "no error";
    } catch (const DesignError& error) {
        EXPECT_STREQ(error.what(), "spans[1].length_m must be a finite number, not infinity");
    }
}
