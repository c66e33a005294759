#pragma once

#include <memory>
#include <vector>

#include "caudalis/catalogue/Aspersor.hpp"
#include "caudalis/charts/CartaAspersores.hpp"
#include "caudalis/core/Records.hpp"
#include "caudalis/hydraulics/CalculosStrategy.hpp"

namespace caudalis::testing {

/// A span made by `Tramos::newTramo` with the given length, diameter and outlet spacing.
tramo makeSpan(Long id, Double length, Double diameter, Double spacingCm);

/// A pivot with the given spans laid over `endHeights` from the centre elevation `cota`, an
/// inlet pressure of 200, a design flow of 10 and a roughness of 140.
pivot makePivot(const std::vector<tramo>& spans, const std::vector<Double>& endHeights, Double cota = 0.0);

/// A nozzle following flow = a * pressure^b, valid between pmin and pmax.
std::shared_ptr<Aspersor> makeNozzle(const String& name, Double a, Double b, Double pmin = 50,
                                     Double pmax = 400);

/// One call of `aspersorFor` as the strategy saw it.
struct StrategyCall {
    saida outlet;
    std::shared_ptr<Aspersor> chosen;
};

/// A strategy that owns a chart, returns a fixed nozzle or the best match from a catalogue at
/// the outlet's acting pressure and required flow, and records every call it receives.
class RecordingStrategy : public CalculosStrategy {
public:
    std::shared_ptr<CartaAspersores> chart;
    std::shared_ptr<Aspersor> fixedNozzle;
    CollectionRef catalogue;
    Double tolerance = 0.2;
    int beforeCalls = 0;
    int afterCalls = 0;
    std::vector<StrategyCall> calls;

    RecordingStrategy();
    void setAvaillableAspersores(const CollectionRef& all_aspersores) override;
    void beforeCompute(PivotWrapper& pivot_wrapper) override;
    void afterCompute(PivotWrapper& pivot_wrapper) override;
    std::shared_ptr<Aspersor> aspersorFor(const saida& aSaida) override;
    std::shared_ptr<CartaAspersores> carta() override;
};

}  // namespace caudalis::testing
