#include <gtest/gtest.h>

#include <cmath>

#include "ErrorMatchers.hpp"
#include "caudalis/core/Checked.hpp"
#include "caudalis/core/Errors.hpp"
#include "caudalis/core/Exceptions.hpp"

using namespace caudalis;
namespace rt = caudalis::RuntimeError;

TEST(ErrorCodes, HaveThePublishedValues) {
    EXPECT_EQ(errorNumber(AspersorException::MissingAsperorDataException), -2147221004);
    EXPECT_EQ(errorNumber(DescricaoException::MissingNameException), -2147220904);
    EXPECT_EQ(errorNumber(DescricaoException::ModeloIsNewRecordException), -2147220903);
    EXPECT_EQ(errorNumber(ModeloException::MissingNameException), -2147220804);
    EXPECT_EQ(errorNumber(ModeloException::MarcaIsNewRecordException), -2147220803);
    EXPECT_EQ(errorNumber(MarcaException::MissingNameException), -2147220704);
    EXPECT_EQ(errorNumber(DropException::DropIncompleteException), -2147220604);
    EXPECT_EQ(errorNumber(CartaExceptions::NomeDaCartaJaExistente), -2147220504);
    EXPECT_EQ(errorNumber(PluviometroException::PluviometroIncompleteException), -2147220503);
    EXPECT_EQ(errorNumber(WaterDepthSampleException::NotEnoughSamplesToComputeLowQuarter), -2147220403);
    EXPECT_EQ(static_cast<std::uint32_t>(errorNumber(DropException::DropIncompleteException)), 0x80040384u);
}

TEST(Exceptions, ThrowRaisesTheNumberWithTheLibraryAsSource) {
    try {
        Exceptions::shared()->throw_(Variant(Long{-2147220604}));
        FAIL() << "nothing raised";
    } catch (const Error& error) {
        EXPECT_EQ(error.number(), -2147220604);
        EXPECT_EQ(error.source(), "Caudalis");
        EXPECT_EQ(error.description(), "Application-defined or object-defined error");
    }
}

TEST(Exceptions, ThrowAcceptsNumericTextOnly) {
    EXPECT_RAISES(Exceptions::shared()->throw_(Variant("1000")), 1000);
    EXPECT_RAISES(Exceptions::shared()->throw_(Variant("not a number")), rt::TypeMismatch);
    EXPECT_RAISES(Exceptions::shared()->throw_(Variant(-2147220503.0)), -2147220503);
}

TEST(Exceptions, SharedInstanceIsKept) {
    EXPECT_EQ(Exceptions::shared(), Exceptions::shared());
}

TEST(Errors, RuntimeErrorsCarryTheirStandardTexts) {
    EXPECT_EQ(standardErrorText(5), "Invalid procedure call or argument");
    EXPECT_EQ(standardErrorText(6), "Overflow");
    EXPECT_EQ(standardErrorText(9), "Subscript out of range");
    EXPECT_EQ(standardErrorText(11), "Division by zero");
    EXPECT_EQ(standardErrorText(13), "Type mismatch");
    EXPECT_EQ(standardErrorText(94), "Invalid use of Null");
    try {
        raiseError(rt::SubscriptOutOfRange);
    } catch (const Error& error) {
        EXPECT_EQ(error.number(), 9);
        EXPECT_EQ(error.source(), "Caudalis");
        EXPECT_NE(std::string(error.what()).find("Subscript out of range"), std::string::npos);
    }
}

TEST(Errors, LibraryCodesAreRaisedWithTheNumberOnly) {
    try {
        raiseCode(CartaExceptions::NomeDaCartaJaExistente);
        FAIL();
    } catch (const Error& error) {
        EXPECT_EQ(error.number(), -2147220504);
        EXPECT_EQ(error.description(), "Application-defined or object-defined error");
    }
}

TEST(Checked, DivisionByZeroAndOverflow) {
    EXPECT_EQ(checked::div(1.0, 4.0), 0.25);
    EXPECT_RAISES(checked::div(1.0, 0.0), rt::DivisionByZero);
    EXPECT_RAISES(checked::div(0.0, 0.0), rt::Overflow);
    EXPECT_RAISES(checked::mul(1e308, 10.0), rt::Overflow);
    EXPECT_RAISES(checked::add(1.7e308, 1.7e308), rt::Overflow);
    EXPECT_RAISES(checked::sub(-1.7e308, 1.7e308), rt::Overflow);
    EXPECT_RAISES(checked::pow(10.0, 400.0), rt::Overflow);
    EXPECT_RAISES(checked::pow(-8.0, 1.0 / 3.0), rt::InvalidProcedureCall);
    EXPECT_EQ(checked::pow(-2.0, 2.0), 4.0);
    EXPECT_RAISES(checked::result(std::sqrt(-1.0), -1.0), rt::Overflow);
}

TEST(Checked, NonFiniteOperandsFlowThrough) {
    const double nan = std::nan("");
    EXPECT_TRUE(std::isnan(checked::add(nan, 1.0)));
    EXPECT_TRUE(std::isnan(checked::div(nan, 0.0)));
    EXPECT_TRUE(std::isinf(checked::mul(INFINITY, 2.0)));
}
