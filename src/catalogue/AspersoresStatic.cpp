#include "caudalis/catalogue/AspersoresStatic.hpp"

#include <exception>
#include <optional>

#include "AspersorLoader.hpp"
#include "FlowTolerance.hpp"
#include "caudalis/core/Error.hpp"

namespace caudalis {
namespace {

const Collection& collectionOf(const CollectionRef& availlableAspersores) {
    if (!availlableAspersores) {
        raiseError(RuntimeError::TypeMismatch);
    }
    return *availlableAspersores;
}

std::shared_ptr<Aspersor> aspersorIn(const Variant& element) {
    auto aspersor = element.toObject<Aspersor>();
    if (!aspersor) {
        raiseError(RuntimeError::TypeMismatch);
    }
    return aspersor;
}

/// Calls `visit(aspersor, flow)` for every sprinkler of the collection, in its order, whose flow
/// at `pressao` lies within `variacao` of `caudal`. The tolerance range is the same for every
/// sprinkler: it is worked out once, right after the first flow, which is where a test of each
/// sprinkler on its own would first work it out (and fail, if it fails).
template <class Visit>
void forEachPossible(const CollectionRef& availlableAspersores, double pressao, double caudal,
                     double variacao, Visit&& visit) {
    std::optional<FlowRange> range;
    for (const Variant& element : collectionOf(availlableAspersores)) {
        auto aspersor = aspersorIn(element);
        const double flow = aspersor->calculate(pressao);
        if (!range) {
            range = flowRange(caudal, variacao);
        }
        if (isWithin(flow, *range)) {
            visit(std::move(aspersor), flow);
        }
    }
}

}  // namespace

std::shared_ptr<Aspersor> AspersoresStatic::newAspersor(const String& boquilla, double a, double b,
                                                        double pmin, double pmax, double qmin, double qmax,
                                                        const modelo& aModelo) const {
    return AspersorLoader::create(boquilla, a, b, pmin, pmax, qmin, qmax, aModelo);
}

CollectionRef AspersoresStatic::getPossibleAspersores(const CollectionRef& availlableAspersores,
                                                      double pressao, double caudal, double variacao) const {
    auto possible = Collection::create();
    forEachPossible(
        availlableAspersores, pressao, caudal, variacao,
        [&](std::shared_ptr<Aspersor> aspersor, double) { possible->Add(Variant(std::move(aspersor))); });
    return possible;
}

std::shared_ptr<Aspersor> AspersoresStatic::getBestMatch(const CollectionRef& availlableAspersores,
                                                         double pressao, double caudal,
                                                         double variacaoMaxima) const {
    // One pass instead of a collection of candidates. The candidates are all selected before
    // any deviation is worked out, so a failing deviation is kept and raised only once every
    // element has been tested, and the deviations after it are not worked out.
    std::shared_ptr<Aspersor> best;
    double bound = variacaoMaxima;
    std::exception_ptr failedDeviation;
    forEachPossible(availlableAspersores, pressao, caudal, variacaoMaxima,
                    [&](std::shared_ptr<Aspersor> candidate, double flow) {
                        if (failedDeviation) {
                            return;
                        }
                        try {
                            const double deviation = flowDeviation(flow, caudal);
                            if (deviation <= bound) {
                                best = std::move(candidate);
                                bound = deviation;
                            }
                        } catch (...) {
                            failedDeviation = std::current_exception();
                        }
                    });
    if (failedDeviation) {
        std::rethrow_exception(failedDeviation);
    }
    return best;
}

std::shared_ptr<Aspersor> AspersoresStatic::NullAspersor() const {
    return nullAspersor_.get();
}

}  // namespace caudalis
