#pragma once

#include <cstdint>
#include <random>

namespace caudalis::testing {

/// Reproducible random draws: the standard 64-bit Mersenne twister (whose sequence the standard
/// fixes) mapped to numbers by hand, so the draws are the same with every standard library.
class SeededDraws {
public:
    explicit SeededDraws(std::uint64_t seed) : engine_(seed) {}

    /// A double in [low, high).
    double uniform(double low, double high) {
        const double unit = static_cast<double>(engine_() >> 11) * 0x1.0p-53;
        return low + (high - low) * unit;
    }
    /// An integer in [low, high].
    long integer(long low, long high) {
        return low + static_cast<long>(engine_() % static_cast<std::uint64_t>(high - low + 1));
    }
    /// True with probability `p`.
    bool chance(double p) { return uniform(0.0, 1.0) < p; }

private:
    std::mt19937_64 engine_;
};

}  // namespace caudalis::testing
