#pragma once

#include <memory>

#include "caudalis/core/Records.hpp"
#include "caudalis/core/Variant.hpp"

namespace caudalis {

/// The catalogue of pipe materials and their Hazen-Williams coefficients.
class PipeMaterials {
public:
    static std::shared_ptr<PipeMaterials> shared();

    /// A material with every field zero or empty.
    PipeMaterial NullPipeMaterial() const;
    /// True when `other` holds a pipe material with the same id.
    bool Equals(const PipeMaterial& self, const Variant& other) const;
};

}  // namespace caudalis
