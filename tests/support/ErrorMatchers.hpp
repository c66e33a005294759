#pragma once

#include <exception>
#include <string>

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>

#include "caudalis/core/Error.hpp"

namespace caudalis::testing {

/// The number of the caudalis::Error raised by `action`, or 0 when nothing is raised.
std::int32_t raisedNumber(const std::function<void()>& action);

/// The message of the `Exception` raised by `action`, or "" when nothing is raised.
template <class Exception = std::exception>
std::string raisedMessage(const std::function<void()>& action) {
    try {
        action();
    } catch (const Exception& error) {
        return error.what();
    }
    return "";
}

}  // namespace caudalis::testing

/// Expects `statement` to raise a caudalis::Error with the given number.
#define EXPECT_RAISES(statement, number) \
    EXPECT_EQ(::caudalis::testing::raisedNumber([&] { (void)(statement); }), (number))
