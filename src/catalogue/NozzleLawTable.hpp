#pragma once

#include <cstdint>
#include <unordered_map>
#include <vector>

#include "caudalis/core/Collection.hpp"

namespace caudalis {

/// The flow laws of the elements of collections of sprinklers, side by side, so that matching
/// runs over plain numbers instead of visiting every sprinkler object. The laws of each
/// collection are kept for the collection state they were read from and read again once the
/// collection has changed; the laws of a bounded number of collections are kept.
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

    /// How many collections' laws are kept before all are let go.
    static constexpr std::size_t keptCollections = 256;

private:
    struct Laws {
        std::uint64_t stamp = 0;
        std::vector<Law> laws;
    };

    static Law lawOf(const Variant& element);

    std::unordered_map<const Collection*, Laws> byCollection_;
};

}  // namespace caudalis
