#pragma once

#include "caudalis/core/Object.hpp"
#include "caudalis/core/Variant.hpp"

namespace caudalis {

/// Orders two values for `Arrays::Sort`. This class compares with the runtime's Variant
/// comparison (a comparison with Null raises 94); other comparators override the operations.
class Comparator : public Object {
public:
    virtual bool GT(const Variant& First, const Variant& second);
    virtual bool GTE(const Variant& First, const Variant& second);
    virtual bool LT(const Variant& First, const Variant& second);
    virtual bool LTE(const Variant& First, const Variant& second);
    virtual bool EQ(const Variant& First, const Variant& second);
};

}  // namespace caudalis
