#include <gtest/gtest.h>

#include "caudalis/catalogue/Aspersor.hpp"
#include "caudalis/catalogue/AspersoresStatic.hpp"
#include "caudalis/core/Statics.hpp"
#include "caudalis/design/NozzleSet.hpp"

using namespace caudalis;
using namespace caudalis::design;

namespace {

std::shared_ptr<Aspersor> nozzle(const std::string& name, double a, double pmin, double pmax,
                                 const std::string& model = "M") {
    return Statics::application()->Aspersores()->newAspersor(name, a, 0.5, pmin, pmax, 0.01, 9,
                                                             modelo{1, model, marca{1, "B"}, 1});
}

}  // namespace

TEST(NozzleSet, ChoosesOnlyAmongNozzlesRatedForThePressure) {
    // At 100 kPa: "exact" gives 1.0 l/s but is rated to 80 kPa only; "rated" gives 1.05 l/s.
    NozzleSet set("B M");
    const auto exact = nozzle("exact", 0.1, 40, 80);
    const auto rated = nozzle("rated", 0.105, 50, 300);
    set.add(exact);
    set.add(rated);
    const auto choice = set.choose(100, 1.0, 0.1, NoFitPolicy::LeaveEmpty);
    EXPECT_EQ(choice.nozzle, rated);
    EXPECT_EQ(choice.reason, ChoiceReason::WithinTolerance);
    EXPECT_EQ(set.choose(60, 0.775, 0.1, NoFitPolicy::LeaveEmpty).nozzle, exact);
    EXPECT_EQ(set.count(), 2);
    EXPECT_TRUE(set.hasRatedFor(300));
    EXPECT_FALSE(set.hasRatedFor(300.5));
    EXPECT_FALSE(set.hasRatedFor(39));
}

TEST(NozzleSet, SaysWhyAnOutletStaysEmpty) {
    NozzleSet set("B M");
    set.add(nozzle("small", 0.1, 50, 150));
    set.add(nozzle("large", 0.2, 50, 150));
    EXPECT_EQ(set.choose(400, 1.0, 0.1, NoFitPolicy::LeaveEmpty).reason, ChoiceReason::NoneRatedForPressure);
    // 1.5 l/s lies between 1.0 and 2.0 at 100 kPa.
    const auto between = set.choose(100, 1.5, 0.1, NoFitPolicy::LeaveEmpty);
    EXPECT_EQ(between.nozzle, nullptr);
    EXPECT_EQ(between.reason, ChoiceReason::NoneWithinTolerance);
    EXPECT_EQ(set.choose(100, 0.3, 0.1, NoFitPolicy::NearestSize).reason, ChoiceReason::BelowSmallestNozzle);
    EXPECT_EQ(NozzleSet().choose(100, 1, 0.1, NoFitPolicy::LeaveEmpty).reason, ChoiceReason::NoPackage);
}

TEST(NozzleSet, NearestSizePolicyFitsTheClosestRatedNozzle) {
    NozzleSet set("B M");
    const auto small = nozzle("small", 0.1, 50, 150);
    const auto large = nozzle("large", 0.2, 50, 150);
    const auto unrated = nozzle("unrated", 0.14, 200, 400);
    set.add(small);
    set.add(large);
    set.add(unrated);
    const auto choice = set.choose(100, 1.3, 0.1, NoFitPolicy::NearestSize);
    EXPECT_EQ(choice.nozzle, small);
    EXPECT_EQ(choice.reason, ChoiceReason::NearestSize);
    EXPECT_EQ(set.choose(100, 2.5, 0.1, NoFitPolicy::NearestSize).nozzle, large);
}

TEST(NozzleSet, GroupsACollectionByModel) {
    auto nozzles = Collection::create();
    nozzles->Add(Variant(nozzle("a1", 0.1, 50, 150, "A")));
    nozzles->Add(Variant(nozzle("b1", 0.3, 50, 150, "Bee")));
    nozzles->Add(Variant(nozzle("a2", 0.2, 50, 150, "A")));
    const auto sets = NozzleSet::byModel(nozzles);
    ASSERT_EQ(sets.size(), 2u);
    EXPECT_EQ(sets[0].label(), "B A");
    EXPECT_EQ(sets[0].count(), 2);
    EXPECT_EQ(sets[1].label(), "B Bee");
    EXPECT_DOUBLE_EQ(sets[1].largestFlow(), 9);
}
