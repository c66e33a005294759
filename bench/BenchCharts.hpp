#pragma once

#include <memory>

#include "caudalis/caudalis.hpp"

namespace caudalis::bench {

/// A chart of `count` sprinklers from the catalogue, 60 outlets a span, with its accessories.
inline std::shared_ptr<CartaAspersores> chartOf(Long count, const CollectionRef& catalogue) {
    auto chart = makeCartaAspersores();
    chart->setNome("Bench");
    chart->setEndGunBoost(30);
    const auto coordinates = CoordenadasSaidas::shared();
    for (Long i = 0; i < count; ++i) {
        auto mounted = makeMountedAspersor(coordinates->newTramoCoordenadas(static_cast<Integer>(i / 60 + 1),
                                                                            static_cast<Integer>(i % 60 + 1)),
                                           catalogue->objectAt<Aspersor>(i % catalogue->Count() + 1));
        chart->addMountedAspersor(mounted);
    }
    auto regulators = Collection::create();
    for (Integer span = 1; span <= 10; ++span) {
        regulators->Add(Variant(makeReguladorPression(span, 140, 1.5, 0.05, true)));
    }
    chart->setReguladores(regulators);
    chart->setDrop(Drops::shared()->newDrop(20, 1.5, PipeMaterial{1, "PVC", 150}));
    chart->setIndicadores(makeIndicadores(20, 0));
    return chart;
}

}  // namespace caudalis::bench
