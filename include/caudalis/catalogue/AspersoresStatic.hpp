#pragma once

#include <memory>

#include "caudalis/catalogue/Aspersor.hpp"
#include "caudalis/core/Collection.hpp"
#include "caudalis/core/LazyInstance.hpp"

namespace caudalis {

class Connection;
class NozzleLawTable;

/// The sprinkler catalogue object: factories for sprinklers that do not come from a database,
/// the placeholder sprinkler, the matching of sprinklers to a wanted pressure and flow, and the
/// catalogue database (brands `marca`, models `Modelos`, nozzles `Boquillas`).
///
/// Every database operation opens its own connection from the host's connection string and
/// closes it before returning. Collections read from the database carry no keys and keep the
/// order in which the database returns the rows.
class AspersoresStatic {
public:
    /// Every nozzle of the catalogue. A row with incomplete data raises
    /// `AspersorException::MissingAsperorDataException` and nothing is returned.
    CollectionRef find(const String& connectionString) const;
    /// The nozzles of the brand named `marca` (the name is placed in the statement as it is).
    CollectionRef find_by_marca(const String& connectionString, const String& marca) const;
    /// The nozzles of the model named `modelo` (the name is placed in the statement as it is).
    CollectionRef find_by_modelo(const String& connectionString, const String& modelo) const;
    /// Inserts the nozzle, after its model and brand when those are new, in one transaction.
    /// The keys generated are not written back: saving the same sprinkler again stores it
    /// again. On an error nothing is stored.
    void save(const String& connectionString, const Aspersor& anAspersor) const;
    /// Every brand, as `marca` records.
    CollectionRef MarcasAll(const String& connectionString) const;
    /// Every model with its brand, as `modelo` records.
    CollectionRef ModelosAll(const String& connectionString) const;

    /// `save`, `MarcasAll` and `ModelosAll` on a connection that the caller has opened, inside
    /// the transaction it may have begun, so that several nozzles are stored together (or not
    /// at all) and read back what the transaction has written so far: the same statements,
    /// without a connection or a transaction of their own.
    void saveOn(Connection& con, const Aspersor& anAspersor) const;
    CollectionRef MarcasAllOn(Connection& con) const;
    CollectionRef ModelosAllOn(Connection& con) const;

    /// A new sprinkler initialised with the given data (`id` 0). Raises
    /// `AspersorException::MissingAsperorDataException` when the data are incomplete.
    std::shared_ptr<Aspersor> newAspersor(const String& boquilla, double a, double b, double pmin,
                                          double pmax, double qmin, double qmax, const modelo& aModelo) const;

    /// A new collection (no keys) of the sprinklers of `availlableAspersores`, in their order,
    /// whose flow at `pressao` lies within `variacao` of `caudal`. An element that is not a
    /// sprinkler, or a missing collection, raises 13.
    CollectionRef getPossibleAspersores(const CollectionRef& availlableAspersores, double pressao,
                                        double caudal, double variacao) const;

    /// Among the sprinklers within `variacaoMaxima`, the one whose flow deviates least from
    /// `caudal`; of equal deviations the later one wins. nullptr when none fits. Every element
    /// is checked before any deviation is computed, so a `caudal` of 0 raises only when there
    /// is a candidate.
    std::shared_ptr<Aspersor> getBestMatch(const CollectionRef& availlableAspersores, double pressao,
                                           double caudal, double variacaoMaxima) const;

    /// The uninitialised placeholder sprinkler of this object: the same one on every call.
    std::shared_ptr<Aspersor> NullAspersor() const;

private:
    mutable LazyInstance<Aspersor> nullAspersor_;
    /// The flow laws of the collection matched last, kept while it stays unchanged.
    mutable LazyInstance<NozzleLawTable> lawTable_;
};

}  // namespace caudalis
