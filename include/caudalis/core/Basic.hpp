#pragma once

#include <cstdint>
#include <string>

namespace caudalis {

/// 16-bit signed whole number.
using Integer = std::int16_t;
/// 32-bit signed whole number.
using Long = std::int32_t;
/// 64-bit IEEE floating point number.
using Double = double;
/// Truth value (true converts to the number -1).
using Boolean = bool;
/// UTF-8 text.
using String = std::string;

}  // namespace caudalis
