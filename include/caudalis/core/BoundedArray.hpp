#pragma once

#include <array>
#include <initializer_list>
#include <vector>

#include "caudalis/core/Basic.hpp"
#include "caudalis/core/Error.hpp"

namespace caudalis {

/// A one-dimensional array with explicit lower and upper bounds that may be unallocated.
/// Element access is checked and raises 9 (subscript out of range).
template <class T>
class BoundedArray {
public:
    BoundedArray() = default;
    BoundedArray(Long lower, Long upper) { redim(lower, upper); }

    /// An allocated array holding `items`, the first at index `lower`.
    static BoundedArray of(std::initializer_list<T> items, Long lower = 1) {
        BoundedArray result;
        if (items.size() > 0) {
            result.lower_ = lower;
            result.items_.assign(items.begin(), items.end());
            result.allocated_ = true;
        }
        return result;
    }

    bool isAllocated() const noexcept { return allocated_; }
    /// Number of elements; 0 when unallocated.
    Long count() const noexcept { return static_cast<Long>(items_.size()); }
    Long lbound() const {
        requireAllocated();
        return lower_;
    }
    Long ubound() const {
        requireAllocated();
        return lower_ + count() - 1;
    }

    T& operator()(Long index) { return items_[offsetOf(index)]; }
    const T& operator()(Long index) const { return items_[offsetOf(index)]; }

    /// Re-dimensions afresh: every element default-constructed.
    void redim(Long lower, Long upper) {
        requireValidBounds(lower, upper);
        items_.assign(static_cast<std::size_t>(upper - lower + 1), T{});
        lower_ = lower;
        allocated_ = true;
    }

    /// Re-dimensions keeping the elements that fall inside the new bounds, position by position.
    void redimPreserve(Long lower, Long upper) {
        requireValidBounds(lower, upper);
        items_.resize(static_cast<std::size_t>(upper - lower + 1));
        lower_ = lower;
        allocated_ = true;
    }

    /// Back to the unallocated state.
    void erase() noexcept {
        items_.clear();
        lower_ = 0;
        allocated_ = false;
    }

    auto begin() noexcept { return items_.begin(); }
    auto end() noexcept { return items_.end(); }
    auto begin() const noexcept { return items_.begin(); }
    auto end() const noexcept { return items_.end(); }

    bool operator==(const BoundedArray& other) const = default;

private:
    void requireAllocated() const {
        if (!allocated_) {
            raiseError(RuntimeError::SubscriptOutOfRange);
        }
    }
    static void requireValidBounds(Long lower, Long upper) {
        if (upper < lower) {
            raiseError(RuntimeError::SubscriptOutOfRange);
        }
    }
    std::size_t offsetOf(Long index) const {
        if (!allocated_ || index < lower_ || index - lower_ >= count()) {
            raiseError(RuntimeError::SubscriptOutOfRange);
        }
        return static_cast<std::size_t>(index - lower_);
    }

    std::vector<T> items_;
    Long lower_ = 0;
    bool allocated_ = false;
};

/// A fixed-size array with compile-time bounds and checked access.
template <class T, Long Lower, Long Upper>
class FixedArray {
public:
    static constexpr Long lbound() noexcept { return Lower; }
    static constexpr Long ubound() noexcept { return Upper; }
    static constexpr Long count() noexcept { return Upper - Lower + 1; }

    T& operator()(Long index) { return items_[offsetOf(index)]; }
    const T& operator()(Long index) const { return items_[offsetOf(index)]; }

    auto begin() noexcept { return items_.begin(); }
    auto end() noexcept { return items_.end(); }
    auto begin() const noexcept { return items_.begin(); }
    auto end() const noexcept { return items_.end(); }

    bool operator==(const FixedArray& other) const = default;

private:
    static std::size_t offsetOf(Long index) {
        if (index < Lower || index > Upper) {
            raiseError(RuntimeError::SubscriptOutOfRange);
        }
        return static_cast<std::size_t>(index - Lower);
    }

    std::array<T, static_cast<std::size_t>(Upper - Lower + 1)> items_{};
};

}  // namespace caudalis
