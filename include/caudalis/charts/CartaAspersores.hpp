#pragma once

#include <memory>

#include "caudalis/core/Collection.hpp"
#include "caudalis/core/Object.hpp"
#include "caudalis/core/Records.hpp"
#include "caudalis/core/Variant.hpp"

namespace caudalis {

class MountedAspersor;
class PivotWrapper;

/// A sprinkler chart: which sprinkler sits on which outlet, with the package's accessories
/// (regulators, drop hose, end-gun boost, indicators, pluviometry check). Mounted sprinklers
/// are keyed by the outlet address text; a removed one stays, marked deleted, so that its
/// removal can still be applied and stored.
class CartaAspersores : public Object {
public:
    Long id() const noexcept { return id_; }
    void id(Long value) noexcept { id_ = value; }
    void setNome(const String& nome) { nome_ = nome; }
    String getNome() const { return nome_; }
    void setEndGunBoost(Double value) noexcept { endGunBoost_ = value; }
    Double getEndGunBoost() const noexcept { return endGunBoost_; }
    /// Creates the empty mounted-sprinkler collection and sets the null drop.
    void init();
    void setIndicadores(const indicadores& aIdicadores) { indicadores_ = aIdicadores; }
    indicadores getIndicadores() const { return indicadores_; }
    /// Stores the collection itself (shared, not copied).
    void setReguladores(const CollectionRef& reguladores) { reguladores_ = reguladores; }
    /// The stored collection; a new empty one is made and kept on the first call when none was set.
    CollectionRef getReguladores();
    void setPluviometriaCheck(const PluviometryCheck& pluviometria) { pluviometria_ = pluviometria; }
    PluviometryCheck getPluviometriaCheck() const { return pluviometria_; }
    std::shared_ptr<MountedAspersor> mountedAspersorAt(const CoordenadasSaida& coordenadas) const;
    void removeMountedAspersor(const std::shared_ptr<MountedAspersor>& amountedAspersor);
    void setDrop(const Drop& aDrop) { drop_ = aDrop; }
    Drop getDrop() const { return drop_; }
    void installDrop();
    void uninstalDrop();
    void removeAndUmountAt(const CoordenadasSaida& coordenadas, PivotWrapper& apivot);
    void addAndMountAspersor(std::shared_ptr<MountedAspersor>& amountedAspersor, PivotWrapper& apivot);
    void addMountedAspersor(std::shared_ptr<MountedAspersor>& amountedAspersor);
    void removeAspersorAt(const CoordenadasSaida& coordenadas);
    /// Applies every entry to the wrapped pivot: live ones mount, deleted ones clear.
    void mountAsperoresOn(PivotWrapper& umPivot);
    /// True when a live (not deleted) sprinkler is mounted at the outlet.
    bool hasMountedAspersorAt(const CoordenadasSaida& coordenadas) const;
    /// Copies indicators, regulators (the same collection), pluviometry check and drop.
    Variant transferAcessoriesFrom(CartaAspersores& source);

    /// Library-internal: the mounted-sprinkler collection itself.
    const CollectionRef& mountedAspersores() const noexcept { return mounted_; }

private:
    void markDeletedAt(const CoordenadasSaida& coordenadas);
    void discardAt(const CoordenadasSaida& coordenadas);
    std::shared_ptr<MountedAspersor> entryAt(const CoordenadasSaida& coordenadas) const;
    static String keyOf(const CoordenadasSaida& coordenadas);

    Long id_ = 0;
    CollectionRef mounted_;
    String nome_;
    indicadores indicadores_;
    PluviometryCheck pluviometria_;
    CollectionRef reguladores_;
    Drop drop_;
    Double endGunBoost_ = 0;
};

/// A new chart on which `init` has been called.
std::shared_ptr<CartaAspersores> makeCartaAspersores();

}  // namespace caudalis
