#pragma once

#include <memory>

#include "caudalis/core/Collection.hpp"
#include "caudalis/core/Object.hpp"
#include "caudalis/core/Records.hpp"
#include "caudalis/core/Variant.hpp"

namespace caudalis {

class CalculosStrategy;
class CartaAspersores;
class DropLossTable;
class PivotApplier;

/// Owns a copy of a pivot and computes it: the ideal operation mode (required flow and ideal
/// pressure of every outlet) and the actual march along the pipe, outlet by outlet, with the
/// sprinklers the strategy chooses, repeated until the total discharge settles. Accessories
/// (indicators, pluviometry check, end-gun boost, drop, regulators) live in the strategy's chart.
class PivotWrapper : public Object {
public:
    /// Library-internal initialiser: copies the pivot, keeps the strategy, runs the ideal march.
    void initWrapper(const pivot& apivot, const std::shared_ptr<CalculosStrategy>& strategy);

    std::shared_ptr<CalculosStrategy> strategy() const { return strategy_; }
    void setAvaillableAspersores(const CollectionRef& all_aspersores);
    /// Clears every span's regulation, applies each regulator, keeps the collection and hands it
    /// to the chart.
    void aplicaReguladores(const CollectionRef& reguladores);
    CollectionRef getReguladores() const { return reguladores_; }
    void setIndicadores(const indicadores& aIndicadores);
    indicadores getIndicadores();
    Variant setPluviometriaCheck(const PluviometryCheck& apluviometria);
    PluviometryCheck getPluviometriaCheck();
    void setEndGunBoost(Double boost);
    Double getEndGunBoost();
    void setDrop(const Drop& aDrop);
    void installDrop();
    void uninstallDrop();
    /// The chart's drop; an all-zero drop when it cannot be read.
    Drop getDrop();
    /// Lets the applier edit the wrapped pivot in place.
    void apply(PivotApplier& applier);
    void setTimeForCompleteRevolution(Double tempo_revolucao);
    Double getLongitudeTotal();
    Long numeroTotalDeSaidas();
    Double pluviosidadeMaxima(const PivotSample& Sample);
    bool hasEndGun();
    Double totalComputedDischarge() const;
    saida saidaAt(Long index);
    /// Acting pressure and required flow of the outlet at the address.
    ParPressaoCaudal getPressaoCaudalAt(const CoordenadasSaida& coordenadas);
    /// Depth laid by every outlet in one revolution, ideal or actual; the end gun last.
    BoundedArray<WaterDepthSample> WaterDepthsSamples(bool ideal);
    /// A new chart holding the sprinklers now chosen.
    std::shared_ptr<CartaAspersores> extractCarta();
    /// Ideal march, then `beforeCompute`, the converging march and `afterCompute`.
    void calculate();
    /// Repeats whole marches until the total discharge changes by at most 1e-5. The sprinkler
    /// of each outlet is always asked of the stored strategy.
    void compute(CalculosStrategy& strategy, const Drop& aDrop);
    /// The strategy's chart; raises 91 when the strategy has none.
    std::shared_ptr<CartaAspersores> carta() const;
    /// Ideal friction loss of span `order`; the overhang's for the number after the last span.
    Double idealContinuosPressureLossForTramo(Integer order);
    Double idealEndGunDischarge() const;
    void computeIdealOperationMode();
    /// Required flow and ideal pressure of the end gun, written into `aGun`.
    void calculaEndGunIdeal(Gun& aGun, const ParPressaoCaudal& initial_conditions);
    /// Copies the wrapped pivot into the caller's record.
    void update(pivot& toUpdate) const;

private:
    Drop effectiveDrop();
    void idealMarchAlongPivot(const Drop& drop);
    /// The drop-hose losses the marches of this wrapper have worked out.
    DropLossTable& dropLosses();
    void clearReguladores();
    saida* outletAt(const CoordenadasSaida& coordenadas);
    CalculosStrategy& storedStrategy() const;
    void mountTramoAspersores(CartaAspersores& carta, tramo& aTramo, Integer numero) const;
    void addTramoSamples(tramo& aTramo, BoundedArray<WaterDepthSample>& samples, bool ideal) const;
    void addSaidaSample(const saida& aSaida, Double coroaLength, BoundedArray<WaterDepthSample>& samples,
                        bool ideal) const;

    pivot pivot_;
    std::shared_ptr<CalculosStrategy> strategy_;
    /// The drop-hose losses of this wrapper's marches; a copy of the wrapper starts without
    /// them, so that copies never share what they change.
    struct OwnDropLosses {
        OwnDropLosses() = default;
        OwnDropLosses(const OwnDropLosses& /*other*/) {}
        OwnDropLosses& operator=(const OwnDropLosses& /*other*/) {
            table.reset();
            return *this;
        }
        ~OwnDropLosses() = default;
        std::shared_ptr<DropLossTable> table;
    };

    CollectionRef reguladores_;
    OwnDropLosses dropLosses_;
};

}  // namespace caudalis
