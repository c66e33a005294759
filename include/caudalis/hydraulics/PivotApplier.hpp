#pragma once

#include "caudalis/core/Object.hpp"
#include "caudalis/core/Records.hpp"

namespace caudalis {

/// Something that edits a pivot record in place (regulators, mounted sprinklers).
/// This class itself changes nothing.
class PivotApplier : public Object {
public:
    virtual void apply(pivot& apivot);
};

}  // namespace caudalis
