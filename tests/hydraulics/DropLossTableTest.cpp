#include <gtest/gtest.h>

#include <bit>
#include <cstdint>
#include <limits>
#include <vector>

#include "../../src/hydraulics/DropLossTable.hpp"
#include "ErrorMatchers.hpp"
#include "caudalis/core/Error.hpp"
#include "caudalis/hydraulics/Drops.hpp"

using namespace caudalis;

namespace {

std::uint64_t bits(double value) {
    return std::bit_cast<std::uint64_t>(value);
}

Drop hose(double diameter) {
    return Drops::shared()->newDrop(diameter, 2.5, PipeMaterial{1, "hose", 140});
}

/// The losses of one pass over outlets with `flows`, each checked against a fresh working out.
void expectPass(DropLossTable& table, const Drop& drop, const std::vector<double>& flows) {
    const DropLoss fresh(drop);
    table.startPass(fresh);
    for (const double flow : flows) {
        EXPECT_EQ(bits(table.next(flow)), bits(fresh.at(flow))) << flow;
    }
}

}  // namespace

TEST(DropLossTable, EveryLossIsTheOneWorkedOutForItsFlowAndDrop) {
    DropLossTable table;
    expectPass(table, hose(20), {0.1, 0.2, 0.3});
    expectPass(table, hose(20), {0.1, 0.2, 0.3});
    // A flow that changed at one outlet, an outlet more, and fewer outlets.
    expectPass(table, hose(20), {0.1, 0.25, 0.3, 0.4});
    expectPass(table, hose(20), {0.1});
    // Another drop, then the first again, then a drop that cannot be compared.
    expectPass(table, hose(25), {0.1, 0.25, 0.3, 0.4});
    expectPass(table, hose(20), {0.1, 0.25, 0.3, 0.4});
    expectPass(table, hose(std::numeric_limits<double>::quiet_NaN()), {0.1, 0.25});
    expectPass(table, Drops::shared()->createNull(), {0.1, 0.25});
}

TEST(DropLossTable, AFlowWhoseLossFailsRaisesAtEveryPass) {
    DropLossTable table;
    const DropLoss loss(hose(20));
    for (int pass = 0; pass < 2; ++pass) {
        table.startPass(loss);
        EXPECT_EQ(bits(table.next(0.1)), bits(loss.at(0.1)));
        EXPECT_RAISES(table.next(-0.1), RuntimeError::InvalidProcedureCall);
    }
}
