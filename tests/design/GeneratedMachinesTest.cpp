#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "SampleNozzles.hpp"
#include "caudalis/catalogue/Aspersor.hpp"
#include "caudalis/catalogue/AspersoresStatic.hpp"
#include "caudalis/core/Statics.hpp"
#include "caudalis/design/DesignError.hpp"
#include "caudalis/design/DesignRunner.hpp"
#include "caudalis/design/InMemoryNozzleSource.hpp"

using namespace caudalis;
using namespace caudalis::design;

namespace {

/// A small generator with a fixed sequence on every platform (64-bit linear congruential).
class Draws {
public:
    explicit Draws(std::uint64_t seed) : state_(seed) {}
    double uniform(double low, double high) {
        state_ = state_ * 6364136223846793005ULL + 1442695040888963407ULL;
        return low + (high - low) * static_cast<double>(state_ >> 11) / 9007199254740992.0;
    }
    int whole(int low, int high) { return low + static_cast<int>(uniform(0, high - low + 1 - 1e-9)); }
    bool chance(double p) { return uniform(0, 1) < p; }

private:
    std::uint64_t state_;
};

DesignDescription generatedMachine(Draws& draw, int number) {
    DesignDescription design;
    design.name = "generated " + std::to_string(number);
    design.inletPressureKpa = draw.uniform(170, 380);
    design.roughnessC = 140;
    design.revolutionTimeH = draw.uniform(10, 40);
    design.indicators.revolutionHours = design.revolutionTimeH;
    const int spans = draw.whole(3, 8);
    double elevation = 0;
    double radius = 0;
    for (int i = 0; i < spans; ++i) {
        SpanDescription span;
        span.id = i + 1;
        span.name = "S" + std::to_string(i + 1);
        span.lengthM = draw.uniform(35, 60);
        span.outletSpacingCm = draw.chance(0.5) ? 144.78 : draw.uniform(150, 300);
        elevation += draw.uniform(-1.5, 1.5);
        span.endElevationM = elevation;
        radius += span.lengthM;
        design.spans.push_back(span);
    }
    if (draw.chance(0.5)) {
        design.endGun = EndGunDescription{draw.uniform(15, 30), draw.uniform(100, 200)};
        radius += design.endGun->ringWidthM;
    }
    const double hectares = 3.14159265358979 * radius * radius / 10000;
    design.designFlowLps = hectares * draw.uniform(0.6, 1.1);
    // Pipe sized as dealers size it: 8 5/8 in near the centre of a machine that carries much water.
    for (int i = 0; i < spans; ++i) {
        const bool inner = i < spans / 2;
        design.spans[static_cast<std::size_t>(i)].diameterMm =
            inner ? (design.designFlowLps > 35 ? 219.1 : 168.3) : (design.designFlowLps > 35 ? 168.3 : 141.3);
    }
    design.nozzleSelection.tolerance = 0.1;
    design.nozzleSelection.whenNoneFits =
        draw.chance(0.5) ? NoFitPolicy::NearestSize : NoFitPolicy::LeaveEmpty;
    if (draw.chance(0.5)) {
        design.regulation.automatic = true;
        const double ratings[] = {69, 103, 138};
        design.regulation.ratingKpa = ratings[draw.whole(0, 2)];
    }
    return design;
}

bool ratedFor(const Aspersor& nozzle, double pressure) {
    return pressure >= nozzle.pmin() && !nozzle.isHighPressure(pressure);
}

}  // namespace

TEST(GeneratedMachines, PackagesRespectPressureRatingsRegulatorsAndEndGuns) {
    InMemoryNozzleSource source(caudalis::testing::sampleCatalogue());
    Draws draw(20261123);
    int guns = 0;
    int regulated = 0;
    for (int i = 0; i < 200; ++i) {
        const auto design = generatedMachine(draw, i);
        SCOPED_TRACE(design.name);
        DesignResult result;
        try {
            result = DesignRunner().run(design, source);
        } catch (const DesignError& error) {
            ADD_FAILURE() << error.what();
            continue;
        }
        bool starvedFinding = false;
        for (const auto& finding : result.findings) {
            starvedFinding = starvedFinding || finding.code == "regulator-starved";
        }
        for (const auto& row : result.outlets) {
            const auto& o = row.outlet;
            if (o.obj_aspersor) {
                EXPECT_TRUE(ratedFor(*o.obj_aspersor, o.pressao_actuante))
                    << row.span << "-" << row.number << " at " << o.pressao_actuante;
            }
            if (row.regulatorKpa) {
                ++regulated;
                const bool starved = o.pressao_real < *row.regulatorKpa + design.regulation.marginKpa;
                EXPECT_EQ(row.starvedRegulator, starved);
                EXPECT_TRUE(!starved || starvedFinding);
            }
        }
        if (result.summary.hasEndGun) {
            ++guns;
            EXPECT_NE(result.package.endGun.find("Gun"), std::string::npos) << result.package.endGun;
            const auto& gun = result.outlets.back().outlet;
            if (gun.obj_aspersor) {
                EXPECT_NE(gun.obj_aspersor->modelo().nome.find("Gun"), std::string::npos);
            }
        }
    }
    EXPECT_GT(guns, 50);
    EXPECT_GT(regulated, 1000);
}
