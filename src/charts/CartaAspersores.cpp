#include "caudalis/charts/CartaAspersores.hpp"

#include "caudalis/charts/MountedAspersor.hpp"
#include "caudalis/hydraulics/Drops.hpp"
#include "caudalis/hydraulics/PivotWrapper.hpp"
#include "caudalis/machine/CoordenadasSaidas.hpp"

namespace caudalis {

void CartaAspersores::init() {
    mounted_ = Collection::create();
    drop_ = Drops::shared()->createNull();
}

CollectionRef CartaAspersores::getReguladores() {
    if (!reguladores_) {
        reguladores_ = Collection::create();
    }
    return reguladores_;
}

std::shared_ptr<MountedAspersor> CartaAspersores::mountedAspersorAt(const CoordenadasSaida& coordenadas) const {
    if (!hasMountedAspersorAt(coordenadas)) {
        return nullptr;
    }
    return entryAt(coordenadas);
}

void CartaAspersores::removeMountedAspersor(const std::shared_ptr<MountedAspersor>& amountedAspersor) {
    removeAspersorAt(amountedAspersor->saida());
}

void CartaAspersores::installDrop() { Drops::shared()->Install(drop_); }

void CartaAspersores::uninstalDrop() { Drops::shared()->Uninstall(drop_); }

void CartaAspersores::removeAndUmountAt(const CoordenadasSaida& coordenadas, PivotWrapper& apivot) {
    if (!hasMountedAspersorAt(coordenadas)) {
        return;
    }
    removeAspersorAt(coordenadas);
    apivot.apply(*entryAt(coordenadas));
}

void CartaAspersores::addAndMountAspersor(std::shared_ptr<MountedAspersor>& amountedAspersor, PivotWrapper& apivot) {
    addMountedAspersor(amountedAspersor);
    apivot.apply(*amountedAspersor);
}

void CartaAspersores::addMountedAspersor(std::shared_ptr<MountedAspersor>& amountedAspersor) {
    const CoordenadasSaida coordenadas = amountedAspersor->saida();
    discardAt(coordenadas);
    mounted_->Add(Variant(amountedAspersor), keyOf(coordenadas));
}

void CartaAspersores::removeAspersorAt(const CoordenadasSaida& coordenadas) {
    if (hasMountedAspersorAt(coordenadas)) {
        markDeletedAt(coordenadas);
    }
}

void CartaAspersores::mountAsperoresOn(PivotWrapper& umPivot) {
    for (const Variant& entry : *mounted_) {
        umPivot.apply(*entry.toObject<MountedAspersor>());
    }
}

bool CartaAspersores::hasMountedAspersorAt(const CoordenadasSaida& coordenadas) const {
    const String key = keyOf(coordenadas);
    return mounted_->Contains(key) && !mounted_->Item(key).toObject<MountedAspersor>()->deleted();
}

Variant CartaAspersores::transferAcessoriesFrom(CartaAspersores& source) {
    setIndicadores(source.getIndicadores());
    setReguladores(source.getReguladores());
    setPluviometriaCheck(source.getPluviometriaCheck());
    setDrop(source.getDrop());
    return Variant();
}

void CartaAspersores::markDeletedAt(const CoordenadasSaida& coordenadas) { entryAt(coordenadas)->deleted(true); }

void CartaAspersores::discardAt(const CoordenadasSaida& coordenadas) {
    const String key = keyOf(coordenadas);
    if (mounted_->Contains(key)) {
        mounted_->Remove(key);
    }
}

std::shared_ptr<MountedAspersor> CartaAspersores::entryAt(const CoordenadasSaida& coordenadas) const {
    return mounted_->Item(keyOf(coordenadas)).toObject<MountedAspersor>();
}

String CartaAspersores::keyOf(const CoordenadasSaida& coordenadas) {
    return CoordenadasSaidas::shared()->ToString(coordenadas);
}

std::shared_ptr<CartaAspersores> makeCartaAspersores() {
    auto carta = std::make_shared<CartaAspersores>();
    carta->init();
    return carta;
}

}  // namespace caudalis
