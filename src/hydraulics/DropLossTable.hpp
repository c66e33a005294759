#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "DropLoss.hpp"

namespace caudalis {

/// The drop-hose losses of a machine's outlets, in the order a march meets them, each with the
/// required flow it was worked out for. The ideal march and every pass of the actual march meet
/// the outlets in the same order, and mostly with the same required flows: each loss is worked
/// out once and taken from here while its outlet's required flow (to the last bit) and the drop
/// stay the same.
class DropLossTable {
public:
    /// Starts a pass with the losses of `drop`; a drop whose numbers differ from the last
    /// one's (or that cannot be compared, holding NaN) empties the table.
    void startPass(const DropLoss& drop);
    /// The loss of the next outlet of the pass, whose required flow is `required`.
    double next(double required) {
        const auto requiredBits = std::bit_cast<std::uint64_t>(required);
        const std::size_t outlet = next_++;
        if (outlet < known_.size() && known_[outlet].requiredBits == requiredBits) {
            return known_[outlet].loss;
        }
        return workOut(outlet, required);
    }

private:
    /// A drop-hose loss and the required flow (as bits) it was worked out for.
    struct Known {
        std::uint64_t requiredBits;
        double loss;
    };

    double workOut(std::size_t outlet, double required);

    std::optional<DropLoss> dropLoss_;
    std::vector<Known> known_;
    std::size_t next_ = 0;
};

}  // namespace caudalis
