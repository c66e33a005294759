#include "caudalis/core/Comparator.hpp"

namespace caudalis {
namespace {

std::partial_ordering ordering(const Variant& First, const Variant& second) {
    const auto result = compareVariants(First, second);
    if (!result) {
        raiseError(RuntimeError::InvalidUseOfNull);
    }
    return *result;
}

}  // namespace

bool Comparator::GT(const Variant& First, const Variant& second) {
    return ordering(First, second) > 0;
}

bool Comparator::GTE(const Variant& First, const Variant& second) {
    return ordering(First, second) >= 0;
}

bool Comparator::LT(const Variant& First, const Variant& second) {
    return ordering(First, second) < 0;
}

bool Comparator::LTE(const Variant& First, const Variant& second) {
    return ordering(First, second) <= 0;
}

bool Comparator::EQ(const Variant& First, const Variant& second) {
    return ordering(First, second) == 0;
}

}  // namespace caudalis
