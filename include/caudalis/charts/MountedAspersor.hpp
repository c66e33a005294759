#pragma once

#include <memory>

#include "caudalis/hydraulics/PivotApplier.hpp"

namespace caudalis {

class Aspersor;

/// A sprinkler placed at one outlet address. Applied to a pivot it writes the sprinkler into
/// the outlet (or clears it when the entry is marked deleted).
class MountedAspersor : public PivotApplier {
public:
    bool deleted() const noexcept { return deleted_; }
    void deleted(bool value) noexcept { deleted_ = value; }
    /// Copies the coordinates and keeps the sprinkler reference.
    void init(const CoordenadasSaida& coordenadas, const std::shared_ptr<caudalis::Aspersor>& umAspersor);
    Long id() const noexcept { return id_; }
    std::shared_ptr<caudalis::Aspersor> Aspersor() const { return aspersor_; }
    /// A copy of the outlet coordinates.
    CoordenadasSaida saida() const { return saida_; }
    void mount_on(pivot& apivot) const;
    void unMount_on(pivot& apivot) const;
    void apply(pivot& apivot) override;

    /// Library-internal: the key of the stored row.
    void setMountedId(Long id) noexcept { id_ = id; }

private:
    void placeOn(pivot& apivot, const std::shared_ptr<caudalis::Aspersor>& anAspersor) const;

    bool deleted_ = false;
    std::shared_ptr<caudalis::Aspersor> aspersor_;
    CoordenadasSaida saida_;
    Long id_ = 0;
};

/// A new mounted sprinkler at `coordenadas`.
std::shared_ptr<MountedAspersor> makeMountedAspersor(const CoordenadasSaida& coordenadas,
                                                     const std::shared_ptr<Aspersor>& umAspersor);

}  // namespace caudalis
