#include <gtest/gtest.h>

#include "ErrorMatchers.hpp"
#include "Nozzles.hpp"
#include "caudalis/catalogue/AspersoresStatic.hpp"
#include "caudalis/core/Errors.hpp"
#include "caudalis/core/Statics.hpp"

using namespace caudalis;
using caudalis::testing::collectionOf;
using caudalis::testing::nozzle;
using caudalis::testing::sampleModelo;

namespace {

/// Something the library holds that is not a sprinkler.
class NotASprinkler : public Object {};

std::shared_ptr<Aspersor> aspersorAt(const CollectionRef& collection, Long index) {
    return collection->objectAt<Aspersor>(index);
}

}  // namespace

TEST(AspersoresStatic, NewAspersorIsInitialisedWithIdZero) {
    const auto aspersor = AspersoresStatic().newAspersor("Verde 12", 1.25, 0.5, 1, 3, 1, 10, sampleModelo());
    ASSERT_NE(aspersor, nullptr);
    EXPECT_EQ(aspersor->id(), 0);
    EXPECT_EQ(aspersor->nome(), "Verde 12");
    EXPECT_EQ(aspersor->a(), "1.25");
    EXPECT_EQ(aspersor->modelo(), sampleModelo());
}

TEST(AspersoresStatic, NewAspersorRaisesMissingData) {
    EXPECT_RAISES(AspersoresStatic().newAspersor("Verde 12", 1.25, 0, 1, 3, 1, 10, sampleModelo()),
                  -2147221004);
    EXPECT_RAISES(AspersoresStatic().newAspersor("  ", 1.25, 0.5, 1, 3, 1, 10, sampleModelo()), -2147221004);
}

TEST(AspersoresStatic, EmptyCatalogueHasNoCandidatesAndNoMatch) {
    const AspersoresStatic catalogue;
    const auto none = Collection::create();
    const auto possible = catalogue.getPossibleAspersores(none, 4, 4, 0.1);
    ASSERT_NE(possible, nullptr);
    EXPECT_EQ(possible->Count(), 0);
    EXPECT_EQ(catalogue.getBestMatch(none, 4, 4, 0.1), nullptr);
}

TEST(AspersoresStatic, PossibleAspersoresKeepsTheOrderAndTheSameObjects) {
    const auto four = nozzle(2, 0.5);             // 4 at pressure 4
    const auto six = nozzle(3, 0.5);              // 6
    const auto fourAndAHalf = nozzle(2.25, 0.5);  // 4.5
    const auto available = collectionOf({Variant(four), Variant(six), Variant(fourAndAHalf)});

    const auto possible = AspersoresStatic().getPossibleAspersores(available, 4, 4.2, 0.1);

    ASSERT_EQ(possible->Count(), 2);
    EXPECT_EQ(aspersorAt(possible, 1), four);
    EXPECT_EQ(aspersorAt(possible, 2), fourAndAHalf);
    EXPECT_NE(possible, available);
    EXPECT_EQ(available->Count(), 3);
    EXPECT_EQ(aspersorAt(available, 2), six);
}

TEST(AspersoresStatic, PossibleAspersoresIsANewCollectionEvenWhenEverythingFits) {
    const auto available = collectionOf({Variant(nozzle(2, 0.5))});
    const auto possible = AspersoresStatic().getPossibleAspersores(available, 4, 4, 0);
    EXPECT_NE(possible, available);
    EXPECT_EQ(possible->Count(), 1);
    possible->Add(Variant(1.0));
    EXPECT_EQ(available->Count(), 1);
}

TEST(AspersoresStatic, BestMatchIsTheClosestFlow) {
    const auto far = nozzle(2.3, 0.5);     // 4.6 at pressure 4
    const auto close = nozzle(1.95, 0.5);  // 3.9
    const auto outside = nozzle(1, 0.5);   // 2
    const auto available = collectionOf({Variant(far), Variant(close), Variant(outside)});
    EXPECT_EQ(AspersoresStatic().getBestMatch(available, 4, 4, 0.2), close);
}

TEST(AspersoresStatic, BestMatchOfEqualFlowsIsTheLaterOne) {
    const auto first = nozzle(2, 0.5, "first");
    const auto second = nozzle(2, 0.5, "second");
    const auto available = collectionOf({Variant(first), Variant(second)});
    EXPECT_EQ(AspersoresStatic().getBestMatch(available, 4, 4.2, 0.1), second);
    EXPECT_EQ(AspersoresStatic().getBestMatch(available, 4, 4, 0), second);
}

TEST(AspersoresStatic, FlowAtTheUpperToleranceIsACandidateAndCanBeReturned) {
    const auto atBound = nozzle(2, 1);  // 5 at pressure 2.5, which is 1.25 * 4
    const auto available = collectionOf({Variant(atBound)});
    const AspersoresStatic catalogue;
    EXPECT_EQ(catalogue.getPossibleAspersores(available, 2.5, 4, 0.25)->Count(), 1);
    EXPECT_EQ(catalogue.getBestMatch(available, 2.5, 4, 0.25), atBound);
}

TEST(AspersoresStatic, FlowAtTheLowerToleranceCanBeReturned) {
    const auto atBound = nozzle(1.2, 1);  // 3 at pressure 2.5, which is 0.75 * 4
    const auto available = collectionOf({Variant(atBound)});
    EXPECT_EQ(AspersoresStatic().getBestMatch(available, 2.5, 4, 0.25), atBound);
}

TEST(AspersoresStatic, NoMatchIsAnEmptyReferenceNotThePlaceholder) {
    const auto available = collectionOf({Variant(nozzle(1, 0.5))});
    const AspersoresStatic catalogue;
    EXPECT_EQ(catalogue.getPossibleAspersores(available, 4, 4, 0.1)->Count(), 0);
    EXPECT_EQ(catalogue.getBestMatch(available, 4, 4, 0.1), nullptr);
}

TEST(AspersoresStatic, ElementsThatAreNotSprinklersRaiseTypeMismatch) {
    const AspersoresStatic catalogue;
    const auto four = nozzle(2, 0.5);
    for (const Variant& intruder :
         {Variant(1.5), Variant("Azul"), Variant(), Variant::null(),
          Variant(std::make_shared<NotASprinkler>()), Variant(std::shared_ptr<Aspersor>())}) {
        const auto available = collectionOf({Variant(four), intruder});
        EXPECT_RAISES(catalogue.getPossibleAspersores(available, 4, 4, 0.1), RuntimeError::TypeMismatch);
        EXPECT_RAISES(catalogue.getBestMatch(available, 4, 4, 0.1), RuntimeError::TypeMismatch);
    }
}

TEST(AspersoresStatic, MissingCollectionRaisesTypeMismatch) {
    const AspersoresStatic catalogue;
    EXPECT_RAISES(catalogue.getPossibleAspersores(nullptr, 4, 4, 0.1), RuntimeError::TypeMismatch);
    EXPECT_RAISES(catalogue.getBestMatch(nullptr, 4, 4, 0.1), RuntimeError::TypeMismatch);
}

TEST(AspersoresStatic, ZeroFlowWithoutCandidatesRaisesNothing) {
    const auto available = collectionOf({Variant(nozzle(2, 0.5))});
    EXPECT_EQ(AspersoresStatic().getBestMatch(available, 4, 0, 0.1), nullptr);
}

TEST(AspersoresStatic, ZeroFlowRaisesWhenADeviationIsWorkedOut) {
    // At pressure 0 the nozzle gives 0, which is within any tolerance of a wanted flow of 0.
    const auto available = collectionOf({Variant(nozzle(2, 0.5))});
    const AspersoresStatic catalogue;
    EXPECT_EQ(catalogue.getPossibleAspersores(available, 0, 0, 0.1)->Count(), 1);
    EXPECT_RAISES(catalogue.getBestMatch(available, 0, 0, 0.1), RuntimeError::Overflow);
}

TEST(AspersoresStatic, EveryElementIsCheckedBeforeAnyDeviation) {
    const auto available = collectionOf({Variant(nozzle(2, 0.5)), Variant("not a sprinkler")});
    EXPECT_RAISES(AspersoresStatic().getBestMatch(available, 0, 0, 0.1), RuntimeError::TypeMismatch);
}

TEST(AspersoresStatic, FlowFaultsRaiseFromTheMatching) {
    const auto available = collectionOf({Variant(nozzle(1e300, 2))});
    const AspersoresStatic catalogue;
    EXPECT_RAISES(catalogue.getPossibleAspersores(available, 1e10, 4, 0.1), RuntimeError::Overflow);
    EXPECT_RAISES(catalogue.getBestMatch(available, 1e10, 4, 0.1), RuntimeError::Overflow);
}

TEST(AspersoresStatic, ToleranceFaultsRaiseOnlyWhenThereIsASprinkler) {
    const AspersoresStatic catalogue;
    EXPECT_EQ(catalogue.getBestMatch(Collection::create(), 4, 1e308, 10), nullptr);
    const auto available = collectionOf({Variant(nozzle(2, 0.5))});
    EXPECT_RAISES(catalogue.getBestMatch(available, 4, 1e308, 10), RuntimeError::Overflow);
}

TEST(AspersoresStatic, NullAspersorIsOnePlaceholderPerObject) {
    const AspersoresStatic catalogue;
    const auto placeholder = catalogue.NullAspersor();
    ASSERT_NE(placeholder, nullptr);
    EXPECT_EQ(catalogue.NullAspersor(), placeholder);
    EXPECT_NE(AspersoresStatic().NullAspersor(), placeholder);
    EXPECT_EQ(placeholder->id(), 0);
    EXPECT_EQ(placeholder->nome(), "");
    EXPECT_EQ(placeholder->modelo(), modelo{});
    EXPECT_EQ(placeholder->a(), "0");
    EXPECT_EQ(placeholder->pmax(), 0);
}

TEST(StaticsAspersores, OneCatalogueObjectPerStatics) {
    const Statics one;
    const Statics two;
    ASSERT_NE(one.Aspersores(), nullptr);
    EXPECT_EQ(one.Aspersores(), one.Aspersores());
    EXPECT_NE(one.Aspersores(), two.Aspersores());
    EXPECT_EQ(Statics::application()->Aspersores(), Statics::application()->Aspersores());
}
