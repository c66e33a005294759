#pragma once

#include <initializer_list>
#include <memory>
#include <string>

#include "PersistenceDatabases.hpp"
#include "caudalis/catalogue/AspersoresStatic.hpp"
#include "caudalis/charts/CartaAspersores.hpp"
#include "caudalis/charts/CartaAspersoresStatic.hpp"
#include "caudalis/hydraulics/ReguladorPression.hpp"

namespace caudalis::testing {

/// Databases made from the shipped schemas, the chart persistence object and the sample
/// catalogue's nozzles, with a builder for a chart that has something in every table.
class ChartFixture {
public:
    explicit ChartFixture(TestEngine engine = TestEngine::Sqlite);

    /// A nozzle of the sample catalogue (1-based position in the catalogue as read).
    std::shared_ptr<Aspersor> nozzle(Long position) const;

    /// A chart named `name` with three sprinklers (one of them at the end gun), a fourth one
    /// removed, two regulators, an installed PVC drop, indicators, a pluviometry check and a boost.
    std::shared_ptr<CartaAspersores> fullChart(const String& name) const;

    /// The pipe material stored under `id` in the project database.
    PipeMaterial storedMaterial(Long id) const;
    /// A collection of the given regulators, in order.
    static CollectionRef regulatorsOf(std::initializer_list<std::shared_ptr<ReguladorPression>> regulators);
    static PluviometryCheck checkOf(const PivotSample& first, const PivotSample& second,
                                    const KostiakovParameters& law);

    /// The chart stored under `id`, read back with the sample catalogue.
    std::shared_ptr<CartaAspersores> load(Integer id) const;
    void saveAsNew(CartaAspersores& carta, Long id_sistema = 7) const;
    void save(CartaAspersores& carta, Long id_sistema = 7) const;

    /// The number of rows of `table` whose chart column (`id_carta`, or `carta_id` for tb_drop) is `id`.
    double rowsOfChart(const std::string& table, Long id) const;

    PersistenceDatabases databases;
    CartaAspersoresStatic charts;
    CollectionRef catalogue;
};

}  // namespace caudalis::testing
