#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>

#include "caudalis/core/Error.hpp"

namespace caudalis::testing {

/// The number of the caudalis::Error raised by `action`, or 0 when nothing is raised.
std::int32_t raisedNumber(const std::function<void()>& action);

}  // namespace caudalis::testing

/// Expects `statement` to raise a caudalis::Error with the given number.
#define EXPECT_RAISES(statement, number) \
    EXPECT_EQ(::caudalis::testing::raisedNumber([&] { (void)(statement); }), (number))
