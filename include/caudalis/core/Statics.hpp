#pragma once

#include <memory>

#include "caudalis/core/Records.hpp"

namespace caudalis {

class Arrays;
class Doubles;
class Tramos;
class Pivots;
class CoordenadasSaidas;
class WaterDepths;
class Types;

/// The application object: makes records and objects and hands out the shared helpers.
/// Accessors of helpers return the library-wide instance; everything named `new...` is made
/// fresh on every call.
class Statics {
public:
    /// The process-wide application instance (hosts may still create their own).
    static std::shared_ptr<Statics> application();

    indicadores newIndicadores(Double horas, Integer nsaidas) const;
    PivotSample newPivotSample(Double centerDistance, Double wetDiameter, const String& code) const;
    KostiakovParameters newKostiakovParameters(Double k, Double a) const;
    /// A pivot in which every field is zero: no spans, no overhang, no end gun.
    caudalis::pivot newPivot() const;
    std::shared_ptr<caudalis::Arrays> Arrays() const;
    std::shared_ptr<caudalis::Doubles> Doubles() const;
    std::shared_ptr<caudalis::Tramos> Tramos() const;
    std::shared_ptr<caudalis::Pivots> Pivots() const;
    std::shared_ptr<caudalis::CoordenadasSaidas> CoordenadasSaidas() const;
    std::shared_ptr<caudalis::WaterDepths> WaterDepths() const;
    /// The first shared `Types` instance.
    std::shared_ptr<caudalis::Types> Gun() const;
    /// The second shared `Types` instance, also used by the span operations.
    std::shared_ptr<caudalis::Types> Placements() const;
    /// The third shared `Types` instance.
    std::shared_ptr<caudalis::Types> Saidas() const;
};

}  // namespace caudalis
