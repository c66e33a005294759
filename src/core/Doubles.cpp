#include "caudalis/core/Doubles.hpp"

#include <bit>
#include <cmath>
#include <cstdint>

#include "caudalis/core/Checked.hpp"
#include "caudalis/core/LazyInstance.hpp"

namespace caudalis {
namespace {

constexpr double fromBits(std::uint64_t bits) {
    return std::bit_cast<double>(bits);
}

}  // namespace

std::shared_ptr<Doubles> Doubles::shared() {
    static LazyInstance<Doubles> instance;
    return instance.get();
}

double Doubles::PositiveInfinity() const noexcept {
    return fromBits(0x7FF0000000000000ULL);
}

double Doubles::NegativeInfinity() const noexcept {
    return -PositiveInfinity();
}

double Doubles::MaxValue() const noexcept {
    return fromBits(0x7FEFFFFFFFFFFFE2ULL);
}

double Doubles::MinValue() const noexcept {
    return fromBits(0xFFEFFFFFFFFFFFE2ULL);
}

bool Doubles::isPositiveInfinity(double value) const noexcept {
    return std::isnan(value) || value == PositiveInfinity();
}

bool Doubles::isNegativeInfinity(double value) const noexcept {
    return std::isnan(value) || value == NegativeInfinity();
}

double percentToFraction(double value) {
    return checked::div(value, 100.0);
}

double arcSin(double x) noexcept {
    const double complement = 1.0 - x * x;
    if (!(complement > 0.0)) {
        return Doubles::shared()->NaN();
    }
    return std::atan(x / std::sqrt(complement));
}

}  // namespace caudalis
