#pragma once

#include <memory>

#include "caudalis/core/Collection.hpp"
#include "caudalis/core/Object.hpp"
#include "caudalis/core/Records.hpp"

namespace caudalis {

class Aspersor;
class CartaAspersores;
class PivotWrapper;

/// How a host chooses the sprinkler of each outlet while a `PivotWrapper` computes, and which
/// chart holds the design's accessories. This class does nothing: hosts derive from it.
class CalculosStrategy : public Object {
public:
    /// Keeps the candidate sprinklers for later choices.
    virtual void setAvaillableAspersores(const CollectionRef& all_aspersores);
    /// Called once at the start of `PivotWrapper::calculate`, after the ideal march.
    virtual void beforeCompute(PivotWrapper& pivot_wrapper);
    /// Called once at the end of `PivotWrapper::calculate`, after the converged march.
    virtual void afterCompute(PivotWrapper& pivot_wrapper);
    /// The sprinkler for this outlet, or an empty reference to leave it without one.
    virtual std::shared_ptr<Aspersor> aspersorFor(const saida& aSaida);
    /// The chart that holds the accessories (indicators, boost, drop, regulators, ...).
    virtual std::shared_ptr<CartaAspersores> carta();
};

}  // namespace caudalis
