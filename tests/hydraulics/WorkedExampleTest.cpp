#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <vector>

#include "MachineFixtures.hpp"
#include "caudalis/core/Statics.hpp"
#include "caudalis/hydraulics/Drops.hpp"
#include "caudalis/hydraulics/PivotWrapper.hpp"
#include "caudalis/hydraulics/ReguladorPression.hpp"
#include "caudalis/machine/Pivots.hpp"
#include "caudalis/machine/Types.hpp"

using namespace caudalis;
using namespace caudalis::testing;

// A two-span machine with an overhang, an end gun with a booster, a regulated second span and
// an installed drop hose, computed with a strategy that takes the best match from a small
// catalogue. The test recomputes the march here, from the formulas, and compares.
namespace {

struct SpanData {
    double length, diameter, spacingCm, startCota, endCota;
    bool regulated;
};

const double inletPressure = 280, designFlow = 35, roughness = 135, boost = 30, regulated = 140;
const double gunRing = 20, dropDiameter = 20, dropLength = 2.5, dropRoughness = 140, tolerance = 0.25;
const std::vector<SpanData> spans = {
    {48, 168.3, 400, 100, 101, false}, {42, 141.3, 350, 101, 99.5, true}, {18, 114.3, 300, 99.5, 0, false}};

struct Nozzle {
    double a;
    std::shared_ptr<Aspersor> object;
};

std::vector<Nozzle> catalogueNozzles() {
    std::vector<Nozzle> nozzles;
    for (int i = 0; i < 40; ++i) {
        const double a = std::round(0.004 * std::pow(1.1, i) * 1e6) / 1e6;
        nozzles.push_back({a, makeNozzle("spray", a, 0.5, 50, 300)});
    }
    for (const double a : {0.3, 0.4, 0.5, 0.55, 0.6, 0.7}) {
        nozzles.push_back({a, makeNozzle("gun", a, 0.5, 200, 600)});
    }
    return nozzles;
}

double hazenWilliams(double q, double d, double c) {
    const double x = q / c;
    const double p = std::pow(x, 1.852);
    const double k = std::pow(10.0, 10.0) * 1.21 * p;
    return std::pow(d, -4.87) * k;
}

/// The nozzle a best-match strategy picks: within the tolerance, the smallest deviation, the
/// later one on a tie.
const Nozzle* bestMatch(const std::vector<Nozzle>& nozzles, double pressure, double flow) {
    const Nozzle* best = nullptr;
    double bound = tolerance;
    for (const auto& nozzle : nozzles) {
        const double q = nozzle.a * std::pow(pressure, 0.5);
        if (q >= (1 - tolerance) * flow && q <= (tolerance + 1) * flow) {
            const double deviation = std::fabs(q / flow - 1);
            if (deviation <= bound) {
                best = &nozzle;
                bound = deviation;
            }
        }
    }
    return best;
}

struct ExpectedOutlet {
    double distance, required, pReal, pAct, flow;
    const Nozzle* nozzle;
};

struct ExpectedPass {
    std::vector<ExpectedOutlet> outlets;
    double total = 0;
};

double arcSine(double x) {
    return std::atan(x / std::sqrt(1 - x * x));
}

/// The spans as laid on the ground: the overhang continues the last fixed span's slope.
std::vector<SpanData> laidSpans() {
    std::vector<SpanData> laid = spans;
    const double angle = arcSine((laid[1].endCota - laid[1].startCota) / laid[1].length);
    laid[2].startCota = laid[1].endCota;
    laid[2].endCota = std::sin(angle) * laid[2].length + laid[2].startCota;
    return laid;
}

ExpectedPass simulatePass(const std::vector<Nozzle>& nozzles, double inflow) {
    ExpectedPass pass;
    const double irrigated = 48 + 42 + 18 + gunRing;
    double p = inletPressure, q = inflow, start = 0;
    for (const auto& span : laidSpans()) {
        const double s = span.spacingCm / 100;
        const double slope = std::tan(arcSine((span.endCota - span.startCota) / span.length));
        const double dz = slope * s;
        const double dzP = dz * 10.0;
        double prevCota = span.startCota, dist = start, walked = 0;
        const double entry = q;
        const int count = static_cast<int>(span.length / s);
        for (int j = 1; j <= count; ++j) {
            dist = dist + s;
            const double friction = s * 10.0 * hazenWilliams(std::max(0.0, q), span.diameter, roughness);
            const double required = 2.0 * dist * s * designFlow / std::pow(irrigated, 2);
            const double dropLoss = hazenWilliams(required, dropDiameter, dropRoughness) * dropLength;
            const double pPipe = p - dzP - friction;
            const double pReal = std::max(0.0, pPipe - dropLoss);
            const double pAct = span.regulated ? regulated : pReal;
            const Nozzle* nozzle = bestMatch(nozzles, pAct, required);
            const double flow = nozzle ? nozzle->a * std::pow(pAct, 0.5) : 0.0;
            pass.outlets.push_back({dist, required, pReal, pAct, flow, nozzle});
            walked += s;
            prevCota = prevCota + dz;
            p = pPipe;
            q = q - flow;
        }
        const double endP = (span.endCota - prevCota) * 10.0;
        const double friction =
            hazenWilliams(std::max(0.0, q), span.diameter, roughness) * (span.length - walked) * 10.0;
        p = p - endP - friction;
        pass.total += entry - q;
        start += span.length;
    }
    const double spanLength = 48 + 42 + 18;
    const double gunRequired = (spanLength + spanLength) * gunRing * designFlow / std::pow(irrigated, 2);
    const Nozzle* gunNozzle = bestMatch(nozzles, p + boost, gunRequired);
    const double gunFlow = gunNozzle ? gunNozzle->a * std::pow(p + boost, 0.5) : 0.0;
    pass.outlets.push_back({spanLength, gunRequired, p, p + boost, gunFlow, gunNozzle});
    pass.total += gunFlow;
    return pass;
}

void expectClose(double actual, double expected) {
    EXPECT_NEAR(actual, expected, 1e-12 * std::max(1.0, std::fabs(expected)));
}

class WorkedExample : public ::testing::Test {
protected:
    void SetUp() override {
        nozzles = catalogueNozzles();
        auto catalogue = Collection::create();
        for (const auto& nozzle : nozzles) {
            catalogue->Add(Variant(nozzle.object));
        }
        std::vector<tramo> fixed;
        for (std::size_t i = 0; i < 2; ++i) {
            fixed.push_back(
                makeSpan(static_cast<Long>(i + 1), spans[i].length, spans[i].diameter, spans[i].spacingCm));
        }
        pivot machine = makePivot(fixed, {spans[0].endCota, spans[1].endCota}, spans[0].startCota);
        machine.presion = inletPressure;
        machine.caudal = designFlow;
        machine.rugosidad = roughness;
        Pivots::shared()->setOverhangSpan(
            machine, makeSpan(3, spans[2].length, spans[2].diameter, spans[2].spacingCm));
        Pivots::shared()->setEndGun(machine, Types::gunInstance()->newGun(gunRing));
        strategy = std::make_shared<RecordingStrategy>();
        strategy->tolerance = tolerance;
        wrapper = Statics::application()->newPivotWrapper(machine, strategy);
        wrapper->setAvaillableAspersores(catalogue);
        auto regulators = Collection::create();
        regulators->Add(Variant(makeReguladorPression(2, regulated, 2.0, 0.1, true)));
        wrapper->aplicaReguladores(regulators);
        wrapper->setDrop(Drops::shared()->newDrop(dropDiameter, dropLength, PipeMaterial{2, "hose", 140}));
        wrapper->installDrop();
        wrapper->setEndGunBoost(boost);
        wrapper->calculate();
    }

    std::vector<Nozzle> nozzles;
    std::shared_ptr<RecordingStrategy> strategy;
    std::shared_ptr<PivotWrapper> wrapper;
    static constexpr std::size_t outletsPerPass = 12 + 12 + 6 + 1;
};

}  // namespace

TEST_F(WorkedExample, FirstPassMatchesTheFormulasOutletByOutlet) {
    const ExpectedPass expected = simulatePass(nozzles, designFlow);
    ASSERT_EQ(expected.outlets.size(), outletsPerPass);
    ASSERT_GE(strategy->calls.size(), outletsPerPass);
    int withNozzle = 0;
    for (std::size_t i = 0; i < outletsPerPass; ++i) {
        SCOPED_TRACE(i);
        const auto& call = strategy->calls[i];
        const auto& outlet = expected.outlets[i];
        expectClose(call.outlet.distanciaAoPivot, outlet.distance);
        expectClose(call.outlet.caudal, outlet.required);
        expectClose(call.outlet.pressao_real, outlet.pReal);
        expectClose(call.outlet.pressao_actuante, outlet.pAct);
        ASSERT_EQ(call.chosen != nullptr, outlet.nozzle != nullptr);
        if (outlet.nozzle) {
            EXPECT_EQ(call.chosen, outlet.nozzle->object);
            expectClose(call.chosen->calculate(call.outlet.pressao_actuante), outlet.flow);
            ++withNozzle;
        }
    }
    EXPECT_GE(withNozzle, 25);
    EXPECT_EQ(strategy->calls[12].outlet.pressao_actuante, regulated);
    EXPECT_NE(strategy->calls[12].outlet.pressao_real, regulated);
}

TEST_F(WorkedExample, ConvergesAsTheRecomputedIteration) {
    double inflow = designFlow;
    std::size_t passes = 0;
    ExpectedPass pass;
    for (;;) {
        pass = simulatePass(nozzles, inflow);
        ++passes;
        if (!(std::fabs(pass.total - inflow) > 1e-5)) {
            break;
        }
        inflow = pass.total;
    }
    EXPECT_GE(passes, 2U);
    EXPECT_EQ(strategy->calls.size(), passes * outletsPerPass);
    expectClose(wrapper->totalComputedDischarge(), pass.total);
    pivot result;
    wrapper->update(result);
    EXPECT_EQ(result.caudal, designFlow);
    expectClose(result.endGun.saida.pressao_actuante, pass.outlets.back().pAct);
    expectClose(result.endGun.saida.caudal_do_aspersor, pass.outlets.back().flow);
    expectClose(result.tramoVOladizo.Saidas(6).pressao_real, pass.outlets[29].pReal);
}

TEST_F(WorkedExample, StrategyIsAskedOncePerOutletPerPass) {
    ASSERT_EQ(strategy->calls.size() % outletsPerPass, 0U);
    const std::size_t passes = strategy->calls.size() / outletsPerPass;
    for (std::size_t pass = 0; pass < passes; ++pass) {
        for (std::size_t i = 0; i < outletsPerPass; ++i) {
            const auto& call = strategy->calls[pass * outletsPerPass + i];
            EXPECT_DOUBLE_EQ(call.outlet.distanciaAoPivot, strategy->calls[i].outlet.distanciaAoPivot);
        }
    }
    EXPECT_EQ(strategy->beforeCalls, 1);
    EXPECT_EQ(strategy->afterCalls, 1);
}
