#pragma once

#include "caudalis/core/Basic.hpp"

namespace caudalis::integer {

/// `value` rounded half to even and narrowed to an Integer; raises 6 outside -32768..32767
/// (and for NaN).
Integer from(double value);

/// a + b as an Integer; raises 6 when the sum leaves the Integer range.
Integer add(Integer a, double b);

/// a - b as an Integer; raises 6 when the difference leaves the Integer range.
Integer sub(Integer a, double b);

}  // namespace caudalis::integer
