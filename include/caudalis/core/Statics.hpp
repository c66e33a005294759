#pragma once

#include <memory>

#include "caudalis/core/LazyInstance.hpp"
#include "caudalis/core/Records.hpp"

namespace caudalis {

class Arrays;
class AspersoresStatic;
class CalculosStrategy;
class CartaAspersores;
class CartaAspersoresStatic;
class CoordenadasSaidas;
class Doubles;
class Drops;
class FieldSamples;
class PipeMaterials;
class PivotEvaluations;
class Pivots;
class PivotWrapper;
class Pluviometros;
class ReguladorPression;
class Tramos;
class Types;
class WaterDepths;

/// The application object: makes records and objects and hands out the shared helpers.
/// Accessors of helpers return the library-wide instance; everything named `new...` is made
/// fresh on every call.
class Statics {
public:
    /// The process-wide application instance (hosts may still create their own).
    static std::shared_ptr<Statics> application();

    /// The sprinkler catalogue object of this `Statics`: made on the first call, then the same.
    std::shared_ptr<AspersoresStatic> Aspersores() const;
    /// The chart persistence object of this `Statics`: made on the first call, then the same.
    std::shared_ptr<CartaAspersoresStatic> CartaAspersor() const;
    /// A new, initialised sprinkler chart.
    std::shared_ptr<CartaAspersores> newCartaAspersores() const;
    indicadores newIndicadores(Double horas, Integer nsaidas) const;
    PivotSample newPivotSample(Double centerDistance, Double wetDiameter, const String& code) const;
    KostiakovParameters newKostiakovParameters(Double k, Double a) const;
    /// A new wrapper of a copy of the pivot; the ideal mode is computed at once.
    std::shared_ptr<PivotWrapper> newPivotWrapper(const pivot& apivot_dt,
                                                  const std::shared_ptr<CalculosStrategy>& strategy) const;
    std::shared_ptr<ReguladorPression> newReguladorPression(Integer tramo, Double pression, Double caudal_max,
                                                            Double caudal_min, bool installed) const;
    /// A pivot in which every field is zero: no spans, no overhang, no end gun.
    caudalis::pivot newPivot() const;
    std::shared_ptr<caudalis::Drops> Drops() const;
    std::shared_ptr<caudalis::Pivots> Pivots() const;
    std::shared_ptr<caudalis::Tramos> Tramos() const;
    std::shared_ptr<caudalis::Arrays> Arrays() const;
    /// The first shared `Types` instance.
    std::shared_ptr<caudalis::Types> Gun() const;
    std::shared_ptr<caudalis::CoordenadasSaidas> CoordenadasSaidas() const;
    /// The second shared `Types` instance, also used by the span operations.
    std::shared_ptr<caudalis::Types> Placements() const;
    std::shared_ptr<caudalis::Doubles> Doubles() const;
    std::shared_ptr<caudalis::PipeMaterials> PipeMaterials() const;
    std::shared_ptr<caudalis::FieldSamples> FieldSamples() const;
    std::shared_ptr<caudalis::WaterDepths> WaterDepths() const;
    std::shared_ptr<caudalis::Pluviometros> Pluviometros() const;
    std::shared_ptr<caudalis::PivotEvaluations> PivotEvaluations() const;
    /// The third shared `Types` instance.
    std::shared_ptr<caudalis::Types> Saidas() const;

private:
    mutable LazyInstance<AspersoresStatic> aspersores_;
    mutable LazyInstance<CartaAspersoresStatic> cartaAspersor_;
};

}  // namespace caudalis
