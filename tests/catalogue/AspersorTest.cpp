#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <type_traits>

#include "../../src/catalogue/AspersorLoader.hpp"
#include "ErrorMatchers.hpp"
#include "LocaleGuard.hpp"
#include "Nozzles.hpp"
#include "caudalis/catalogue/Aspersor.hpp"
#include "caudalis/core/Errors.hpp"

using namespace caudalis;
using caudalis::testing::DecimalSeparatorGuard;
using caudalis::testing::nozzle;
using caudalis::testing::sampleModelo;

namespace {

const std::int32_t kMissingData = errorNumber(AspersorException::MissingAsperorDataException);
const double kNaN = std::numeric_limits<double>::quiet_NaN();

template <class T>
concept HostCanSetId = requires(T& aspersor) {
    aspersor.setId(Long{1});
};

template <class T>
concept HostCanInitialise = requires(T& aspersor, const modelo& model) {
    aspersor.initAspersor(String{}, 1.0, 1.0, 1.0, 1.0, 1.0, 1.0, model);
};

/// Checks the data of `nozzle(2, 0.5, "Azul 24")`.
void expectAzul24(const Aspersor& aspersor) {
    EXPECT_EQ(aspersor.nome(), "Azul 24");
    EXPECT_EQ(aspersor.modelo(), sampleModelo());
    EXPECT_EQ(aspersor.a(), "2");
    EXPECT_EQ(aspersor.b(), "0.5");
    EXPECT_EQ(aspersor.pmin(), 1);
    EXPECT_EQ(aspersor.pmax(), 3);
    EXPECT_EQ(aspersor.qmin(), 1);
    EXPECT_EQ(aspersor.qmax(), 10);
}

}  // namespace

TEST(Aspersor, HostsCannotChangeAnInitialisedSprinkler) {
    static_assert(!std::is_copy_assignable_v<Aspersor>);
    static_assert(!std::is_move_assignable_v<Aspersor>);
    static_assert(!HostCanSetId<Aspersor>);
    static_assert(!HostCanInitialise<Aspersor>);
    SUCCEED();
}

TEST(Aspersor, UninitialisedHasEveryFieldZero) {
    const Aspersor empty;
    EXPECT_EQ(empty.id(), 0);
    EXPECT_EQ(empty.nome(), "");
    EXPECT_EQ(empty.modelo(), modelo{});
    EXPECT_EQ(empty.marca(), marca{});
    EXPECT_EQ(empty.a(), "0");
    EXPECT_EQ(empty.b(), "0");
    EXPECT_EQ(empty.pmin(), 0);
    EXPECT_EQ(empty.pmax(), 0);
    EXPECT_EQ(empty.qmin(), 0);
    EXPECT_EQ(empty.qmax(), 0);
    EXPECT_EQ(empty.calculate(5), 0);
}

TEST(Aspersor, InitialisationStoresEveryFieldButTheId) {
    modelo model = sampleModelo();
    const auto aspersor = AspersoresStatic().newAspersor("Azul 24", 2, 0.5, 1, 3, 1, 10, model);
    model.nome = "changed afterwards";
    EXPECT_EQ(aspersor->id(), 0);
    EXPECT_EQ(aspersor->marca(), (marca{3, "Nelson"}));
    expectAzul24(*aspersor);
}

TEST(Aspersor, RangesAreStoredInTheirOrder) {
    const auto aspersor = AspersoresStatic().newAspersor("n", 2, 0.5, 1.5, 2.5, 3.5, 4.5, modelo{});
    EXPECT_EQ(aspersor->pmin(), 1.5);
    EXPECT_EQ(aspersor->pmax(), 2.5);
    EXPECT_EQ(aspersor->qmin(), 3.5);
    EXPECT_EQ(aspersor->qmax(), 4.5);
}

TEST(Aspersor, ModeloAndMarcaAreCopies) {
    const auto aspersor = nozzle(2, 0.5);
    modelo model = aspersor->modelo();
    model.nome = "other";
    marca brand = aspersor->marca();
    brand.nome = "other";
    EXPECT_EQ(aspersor->modelo().nome, "R3000");
    EXPECT_EQ(aspersor->marca().nome, "Nelson");
}

TEST(Aspersor, TheLoaderStoresTheCatalogueKey) {
    const auto aspersor = AspersorLoader::create("Azul 24", 2, 0.5, 1, 3, 1, 10, sampleModelo());
    AspersorLoader::setId(*aspersor, 42);
    EXPECT_EQ(aspersor->id(), 42);
    EXPECT_EQ(aspersor->nome(), "Azul 24");
}

TEST(Aspersor, CoefficientsAsTextFollowTheLocale) {
    const auto aspersor = nozzle(1.5, 0.25);
    EXPECT_EQ(aspersor->a(), "1.5");
    DecimalSeparatorGuard comma(',');
    EXPECT_EQ(aspersor->a(), "1,5");
    EXPECT_EQ(aspersor->b(), "0,25");
}

TEST(Aspersor, CalculateFollowsTheFlowLaw) {
    const auto aspersor = nozzle(2, 0.5);
    EXPECT_EQ(aspersor->calculate(4), 4);
    EXPECT_EQ(aspersor->calculate(9), 6);
    EXPECT_EQ(aspersor->calculate(0), 0);
}

TEST(Aspersor, CalculateUsesTheCoefficientsRoundedTo15SignificantDigits) {
    const double raw = 0.12345678901234567;
    const double rounded = 0.123456789012346;
    const auto aspersor = nozzle(raw, 0.5);
    EXPECT_EQ(aspersor->calculate(1), rounded);
    EXPECT_NE(aspersor->calculate(1), raw);
    EXPECT_EQ(aspersor->calculate(2), rounded * std::pow(2.0, 0.5));
    EXPECT_NE(aspersor->calculate(2), raw * std::pow(2.0, 0.5));
}

TEST(Aspersor, CalculateUsesTheExponentRoundedTo15SignificantDigits) {
    const auto aspersor = nozzle(1, 0.50000000000000033);
    EXPECT_EQ(aspersor->calculate(4), std::pow(4.0, 0.5));
    EXPECT_NE(aspersor->calculate(4), std::pow(4.0, 0.50000000000000033));
}

TEST(Aspersor, RoundedCoefficientsDoNotDependOnTheLocale) {
    const double raw = 0.12345678901234567;
    const auto madeWithPoint = nozzle(raw, 0.5);
    DecimalSeparatorGuard comma(',');
    const auto madeWithComma = nozzle(raw, 0.5);
    EXPECT_EQ(madeWithComma->calculate(2), 0.123456789012346 * std::pow(2.0, 0.5));
    EXPECT_EQ(madeWithPoint->calculate(2), madeWithComma->calculate(2));
}

TEST(Aspersor, CalculateRaisesFloatingPointFaults) {
    EXPECT_RAISES(nozzle(1e300, 2)->calculate(1e10), RuntimeError::Overflow);
    EXPECT_RAISES(nozzle(1, 2)->calculate(1e200), RuntimeError::Overflow);
    EXPECT_RAISES(nozzle(2, 0.5)->calculate(-4), RuntimeError::InvalidProcedureCall);
}

TEST(Aspersor, AnInfiniteCoefficientDoesNotReadBackFromItsText) {
    const auto aspersor = nozzle(std::numeric_limits<double>::infinity(), 0.5);
    EXPECT_RAISES(aspersor->calculate(4), RuntimeError::TypeMismatch);
}

TEST(Aspersor, FlowWithinIncludesBothBounds) {
    const auto aspersor = nozzle(2, 0.5);
    EXPECT_TRUE(aspersor->flowWithin(4, 4, 0));
    EXPECT_FALSE(aspersor->flowWithin(4, 5, 0.1));
    EXPECT_TRUE(aspersor->flowWithin(4, 4.4, 0.1));
    EXPECT_TRUE(aspersor->flowWithin(4, 3.2, 0.25));  // 4 is the upper bound 1.25 * 3.2
    EXPECT_TRUE(aspersor->flowWithin(4, 8, 0.5));     // 4 is the lower bound 0.5 * 8
    EXPECT_FALSE(aspersor->flowWithin(4, 3, 0.25));
}

TEST(Aspersor, FlowWithinIsFalseForANaNFlow) {
    EXPECT_FALSE(nozzle(2, 0.5)->flowWithin(kNaN, 4, 0.5));
}

TEST(Aspersor, VariacaoCaudalIsTheRelativeDeviation) {
    const auto aspersor = nozzle(2, 0.5);
    EXPECT_DOUBLE_EQ(aspersor->variacaoCaudal(4, 5), 0.2);
    EXPECT_EQ(aspersor->variacaoCaudal(4, 2), 1);
    EXPECT_EQ(aspersor->variacaoCaudal(4, 4), 0);
}

TEST(Aspersor, VariacaoCaudalOfAZeroFlowRaises) {
    const auto aspersor = nozzle(2, 0.5);
    EXPECT_RAISES(aspersor->variacaoCaudal(4, 0), RuntimeError::DivisionByZero);
    EXPECT_RAISES(aspersor->variacaoCaudal(0, 0), RuntimeError::Overflow);
}

TEST(Aspersor, PressureTestsCompareWithPmaxOnly) {
    const auto aspersor = nozzle(2, 0.5);  // pmin 1, pmax 3
    EXPECT_TRUE(aspersor->isLowPressure(2));
    EXPECT_TRUE(aspersor->isLowPressure(0.5));
    EXPECT_FALSE(aspersor->isLowPressure(3));
    EXPECT_FALSE(aspersor->isHighPressure(3));
    EXPECT_TRUE(aspersor->isHighPressure(3.5));
    EXPECT_TRUE(aspersor->isOnPressureRange(3));
    EXPECT_FALSE(aspersor->isOnPressureRange(2));
    EXPECT_FALSE(aspersor->isOnPressureRange(1));
    EXPECT_FALSE(aspersor->isOnPressureRange(3.5));
}

TEST(Aspersor, BlankDesignationRaisesMissingData) {
    const AspersoresStatic catalogue;
    for (const char* blank : {"", " ", "   ", "\t", " \t "}) {
        EXPECT_RAISES(catalogue.newAspersor(blank, 2, 0.5, 1, 3, 1, 10, sampleModelo()), kMissingData)
            << blank;
    }
    EXPECT_EQ(kMissingData, -2147221004);
}

TEST(Aspersor, EveryNumberMustBeStrictlyPositive) {
    const AspersoresStatic catalogue;
    const modelo model = sampleModelo();
    for (const double bad : {0.0, -1.0, kNaN, -0.0}) {
        EXPECT_RAISES(catalogue.newAspersor("n", bad, 0.5, 1, 3, 1, 10, model), kMissingData);
        EXPECT_RAISES(catalogue.newAspersor("n", 2, bad, 1, 3, 1, 10, model), kMissingData);
        EXPECT_RAISES(catalogue.newAspersor("n", 2, 0.5, bad, 3, 1, 10, model), kMissingData);
        EXPECT_RAISES(catalogue.newAspersor("n", 2, 0.5, 1, bad, 1, 10, model), kMissingData);
        EXPECT_RAISES(catalogue.newAspersor("n", 2, 0.5, 1, 3, bad, 10, model), kMissingData);
        EXPECT_RAISES(catalogue.newAspersor("n", 2, 0.5, 1, 3, 1, bad, model), kMissingData);
    }
}

TEST(Aspersor, AModelWithoutDataIsAccepted) {
    const auto aspersor = AspersoresStatic().newAspersor(" x ", 2, 0.5, 1, 3, 1, 10, modelo{});
    EXPECT_EQ(aspersor->nome(), " x ");
    EXPECT_EQ(aspersor->modelo(), modelo{});
}

TEST(Aspersor, FailedInitialisationStoresNothing) {
    const auto aspersor = nozzle(2, 0.5, "Azul 24");
    EXPECT_RAISES(AspersorLoader::initAspersor(*aspersor, "Rojo", 3, 0, 2, 4, 2, 20, modelo{}), kMissingData);
    expectAzul24(*aspersor);
    EXPECT_EQ(aspersor->calculate(4), 4);
}
