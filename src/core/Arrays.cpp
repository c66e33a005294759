#include "caudalis/core/Arrays.hpp"

#include <cstdint>

#include "caudalis/core/LazyInstance.hpp"

namespace caudalis {

float nextRandom() noexcept {
    // The runtime's linear congruential generator on 24 bits, with its own starting seed.
    static std::uint32_t seed = 0x50000;
    seed = (seed * 0x43FD43FDU + 0xC39EC3U) & 0xFFFFFFU;
    return static_cast<float>(seed) / 16777216.0F;
}

std::shared_ptr<Arrays> Arrays::shared() {
    static LazyInstance<Arrays> instance;
    return instance.get();
}

Integer Arrays::nextLength(Integer length) {
    if (length == std::numeric_limits<Integer>::max()) {
        raiseError(RuntimeError::Overflow);
    }
    return static_cast<Integer>(length + 1);
}

Integer Arrays::toIntegerIndex(Long index) {
    if (index < std::numeric_limits<Integer>::min() || index > std::numeric_limits<Integer>::max()) {
        raiseError(RuntimeError::Overflow);
    }
    return static_cast<Integer>(index);
}

Long Arrays::sliceSize(Integer begin, Integer till) {
    const Long size = Long{till} - Long{begin} + 1;
    if (size < 0) {
        raiseError(RuntimeError::SubscriptOutOfRange);
    }
    return size;
}

void Arrays::quickSort(BoundedArray<SortEntry>& list, Long min, Long max, Comparator& comparator) {
    if (min >= max) {
        return;
    }
    const auto pick = static_cast<Long>(static_cast<double>(max - min + 1) * nextRandom() + min);
    const SortEntry pivot = list(pick);
    list(pick) = list(min);
    Long lo = min;
    Long hi = max;
    for (;;) {
        while (comparator.GTE(list(hi).value, pivot.value)) {
            --hi;
            if (hi <= lo) {
                break;
            }
        }
        if (hi <= lo) {
            list(lo) = pivot;
            break;
        }
        list(lo) = list(hi);
        ++lo;
        while (comparator.LT(list(lo).value, pivot.value)) {
            ++lo;
            if (lo >= hi) {
                break;
            }
        }
        if (lo >= hi) {
            lo = hi;
            list(hi) = pivot;
            break;
        }
        list(hi) = list(lo);
    }
    quickSort(list, min, lo - 1, comparator);
    quickSort(list, lo + 1, max, comparator);
}

}  // namespace caudalis
