#pragma once

#include <memory>

#include "caudalis/core/Records.hpp"

namespace caudalis {

/// Operations on the drop hose between an outlet and its sprinkler.
class Drops {
public:
    static std::shared_ptr<Drops> shared();

    /// Diameter > 0, a stored pipe material (id >= 1) and length > 0.
    bool isValid(const Drop& self) const;
    bool Differs(const Drop& self, const Drop& other) const;
    /// Same diameter, null flag, length and pipe material (installed flag and id ignored).
    bool Equals(const Drop& self, const Drop& other) const;
    /// Hazen-Williams loss over the hose length at `discharge`; 0 for the null drop.
    Double PressureLoss(const Drop& self, Double discharge) const;
    /// The null drop: no hose at all.
    Drop createNull() const;
    Drop newDrop(Double diameter, Double longitud, const PipeMaterial& pipe_material) const;
    /// Marks the drop installed; raises DropIncompleteException for an invalid drop.
    void Install(Drop& self) const;
    void Uninstall(Drop& self) const;
    bool IsInstalled(const Drop& self) const;
    /// True for the null drop and for a drop equal to an all-zero one.
    bool IsEmpty(const Drop& self) const;
};

}  // namespace caudalis
