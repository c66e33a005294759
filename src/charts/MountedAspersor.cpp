#include "caudalis/charts/MountedAspersor.hpp"

#include "caudalis/machine/CoordenadasSaidas.hpp"
#include "caudalis/machine/Pivots.hpp"

namespace caudalis {

void MountedAspersor::init(const CoordenadasSaida& coordenadas,
                           const std::shared_ptr<caudalis::Aspersor>& umAspersor) {
    saida_ = coordenadas;
    aspersor_ = umAspersor;
}

void MountedAspersor::mount_on(pivot& apivot) const { placeOn(apivot, aspersor_); }

void MountedAspersor::unMount_on(pivot& apivot) const { placeOn(apivot, nullptr); }

void MountedAspersor::apply(pivot& apivot) {
    if (deleted_) {
        unMount_on(apivot);
    } else {
        mount_on(apivot);
    }
}

void MountedAspersor::placeOn(pivot& apivot, const std::shared_ptr<caudalis::Aspersor>& anAspersor) const {
    const auto pivots = Pivots::shared();
    if (CoordenadasSaidas::shared()->isAtEndGun(saida_) && pivots->hasEndGun(apivot)) {
        apivot.endGun.saida.obj_aspersor = anAspersor;
        return;
    }
    if (pivots->hasOverHang(apivot) && saida_.numeroTramo == pivots->FixedSpansCount(apivot) + 1) {
        apivot.tramoVOladizo.Saidas(saida_.saida).obj_aspersor = anAspersor;
        return;
    }
    apivot.Tramos(saida_.numeroTramo).Saidas(saida_.saida).obj_aspersor = anAspersor;
}

std::shared_ptr<MountedAspersor> makeMountedAspersor(const CoordenadasSaida& coordenadas,
                                                     const std::shared_ptr<Aspersor>& umAspersor) {
    auto mounted = std::make_shared<MountedAspersor>();
    mounted->init(coordenadas, umAspersor);
    return mounted;
}

}  // namespace caudalis
