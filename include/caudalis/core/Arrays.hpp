#pragma once

#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <type_traits>

#include "caudalis/core/BoundedArray.hpp"
#include "caudalis/core/Comparator.hpp"
#include "caudalis/core/Variant.hpp"

namespace caudalis {

/// The runtime's pseudo-random generator: numbers in [0, 1) in single precision, never seeded.
float nextRandom() noexcept;

/// Wraps a value in a Variant: numbers and texts as themselves, records as records.
template <class T>
Variant toVariant(const T& value) {
    if constexpr (std::is_same_v<T, Variant>) {
        return value;
    } else if constexpr (std::is_same_v<T, bool> || std::is_same_v<T, Integer> || std::is_same_v<T, Long> ||
                         std::is_same_v<T, double> || std::is_same_v<T, std::string>) {
        return Variant(value);
    } else {
        return Variant::record(value);
    }
}

/// Length, first and last element, append, slice and sort over bounded arrays.
class Arrays {
public:
    static std::shared_ptr<Arrays> shared();

    /// upper bound - lower bound + 1; 0 for an unallocated array or one longer than 32767.
    template <class T>
    Integer Length(const BoundedArray<T>& self) const noexcept {
        const Long count = self.count();
        return count > std::numeric_limits<Integer>::max() ? Integer{0} : static_cast<Integer>(count);
    }

    template <class T>
    bool IsEmpty(const BoundedArray<T>& self) const noexcept {
        return Length(self) == 0;
    }

    template <class T>
    bool HasAny(const BoundedArray<T>& self) const noexcept {
        return !IsEmpty(self);
    }

    /// Appends `element`, re-dimensioning `self` to 1 .. Length + 1 (afresh when it was empty).
    template <class T>
    void Push(BoundedArray<T>& self, const T& element) const {
        const Integer n = nextLength(Length(self));
        if (n == 1) {
            self.redim(1, 1);
        } else {
            self.redimPreserve(1, n);
        }
        self(n) = element;
    }

    /// The element at the lower bound; nothing (Empty) for an empty array.
    template <class T>
    std::optional<T> First(const BoundedArray<T>& self) const {
        if (IsEmpty(self)) {
            return std::nullopt;
        }
        return self(self.lbound());
    }

    /// The element at the upper bound; nothing (Empty) for an empty array.
    template <class T>
    std::optional<T> Last(const BoundedArray<T>& self) const {
        if (IsEmpty(self)) {
            return std::nullopt;
        }
        return self(self.ubound());
    }

    /// Elements `begin` to `till`, both included, in a new array with bounds 1 to till-begin+1.
    template <class T>
    BoundedArray<T> Slice(const BoundedArray<T>& self, Long begin, Long till) const {
        const Integer first = toIntegerIndex(begin);
        const Integer last = toIntegerIndex(till);
        const Long size = sliceSize(first, last);
        BoundedArray<T> result;
        if (size == 0) {
            return result;
        }
        result.redim(1, size);
        for (Long i = first; i <= last; ++i) {
            result(i - first + 1) = self(i);
        }
        return result;
    }

    /// A sorted copy of `self` (randomised quicksort calling only GTE and LT of the comparator).
    template <class T>
    BoundedArray<T> Sort(const BoundedArray<T>& self, Comparator& aComparator) const {
        if (!self.isAllocated()) {
            return self;
        }
        BoundedArray<SortEntry> entries(self.lbound(), self.ubound());
        for (Long i = self.lbound(); i <= self.ubound(); ++i) {
            entries(i) = SortEntry{toVariant(self(i)), i};
        }
        quickSort(entries, self.lbound(), Length(self), aComparator);
        BoundedArray<T> sorted = self;
        for (Long i = self.lbound(); i <= self.ubound(); ++i) {
            sorted(i) = self(entries(i).origin);
        }
        return sorted;
    }

private:
    struct SortEntry {
        Variant value;
        Long origin = 0;
    };

    static Integer nextLength(Integer length);
    static Integer toIntegerIndex(Long index);
    static Long sliceSize(Integer begin, Integer till);
    static void quickSort(BoundedArray<SortEntry>& list, Long min, Long max, Comparator& comparator);
};

}  // namespace caudalis
