#pragma once

#include <cstdint>
#include <vector>

#include "caudalis/core/Collection.hpp"

namespace caudalis {

/// The flow laws of the elements of a collection of sprinklers, side by side, so that matching
/// runs over plain numbers instead of visiting every sprinkler object. The table is kept for
/// the collection state it was made from and made again once the collection has changed.
class NozzleLawTable {
public:
    /// The coefficients of one element. An element that cannot give a flow (not a sprinkler,
    /// or coefficients whose text does not read back) is not usable: asking it for a flow
    /// fails with the run time's type mismatch, and so does reaching it here.
    struct Law {
        double a = 0;
        double b = 0;
        bool usable = false;
    };

    /// The laws of the elements of `collection`, in its order.
    const std::vector<Law>& lawsOf(const Collection& collection);

private:
    static Law lawOf(const Variant& element);

    std::uint64_t stamp_ = 0;
    std::vector<Law> laws_;
};

}  // namespace caudalis
