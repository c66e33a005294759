#include "MachineFixtures.hpp"

#include <cmath>
#include "caudalis/catalogue/AspersoresStatic.hpp"

#include "caudalis/core/Variant.hpp"
#include "caudalis/machine/Pivots.hpp"
#include "caudalis/machine/Tramos.hpp"

namespace caudalis::testing {

tramo makeSpan(Long id, Double length, Double diameter, Double spacingCm) {
    return Tramos::shared()->newTramo(id, "span", length, diameter, spacingCm);
}

pivot makePivot(const std::vector<tramo>& spans, const std::vector<Double>& endHeights, Double cota) {
    pivot machine;
    machine.cota = cota;
    machine.presion = 200;
    machine.caudal = 10;
    machine.rugosidad = 140;
    BoundedArray<tramo> list(1, static_cast<Long>(spans.size()));
    BoundedArray<Double> heights(1, static_cast<Long>(endHeights.size()));
    for (std::size_t i = 0; i < spans.size(); ++i) {
        list(static_cast<Long>(i + 1)) = spans[i];
    }
    for (std::size_t i = 0; i < endHeights.size(); ++i) {
        heights(static_cast<Long>(i + 1)) = endHeights[i];
    }
    if (!spans.empty()) {
        Pivots::shared()->setFixedSpans(machine, list, heights);
    }
    return machine;
}

std::shared_ptr<Aspersor> makeNozzle(const String& name, Double a, Double b, Double pmin, Double pmax) {
    modelo model;
    model.nome = "Test model";
    model.marca.nome = "Test brand";
    return AspersoresStatic().newAspersor(name, a, b, pmin, pmax, a * std::pow(pmin, b),
                                          a * std::pow(pmax, b), model);
}

RecordingStrategy::RecordingStrategy() : chart(makeCartaAspersores()) {}

void RecordingStrategy::setAvaillableAspersores(const CollectionRef& all_aspersores) {
    catalogue = all_aspersores;
}

void RecordingStrategy::beforeCompute(PivotWrapper& /*pivot_wrapper*/) {
    ++beforeCalls;
}

void RecordingStrategy::afterCompute(PivotWrapper& /*pivot_wrapper*/) {
    ++afterCalls;
}

std::shared_ptr<Aspersor> RecordingStrategy::aspersorFor(const saida& aSaida) {
    std::shared_ptr<Aspersor> chosen = fixedNozzle;
    if (catalogue) {
        chosen =
            AspersoresStatic().getBestMatch(catalogue, aSaida.pressao_actuante, aSaida.caudal, tolerance);
    }
    calls.push_back(StrategyCall{aSaida, chosen});
    return chosen;
}

std::shared_ptr<CartaAspersores> RecordingStrategy::carta() {
    return chart;
}

}  // namespace caudalis::testing
