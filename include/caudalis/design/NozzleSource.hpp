#pragma once

#include "caudalis/core/Collection.hpp"
#include "caudalis/design/DesignDescription.hpp"

namespace caudalis::design {

/// Where the nozzles a design may use come from. The result is a collection of `Aspersor`
/// objects: the whole catalogue, or only the brand and/or model the selection names.
class NozzleSource {
public:
    virtual ~NozzleSource() = default;
    /// The nozzles that `selection` allows, in catalogue order; raises `DesignError` (`InvalidInput`) when
    /// the source cannot be read or holds none of them.
    virtual CollectionRef nozzles(const NozzleSelection& selection) = 0;
};

}  // namespace caudalis::design
