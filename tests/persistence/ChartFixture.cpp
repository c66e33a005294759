#include "ChartFixture.hpp"

#include <tuple>

#include "caudalis/charts/MountedAspersor.hpp"
#include "caudalis/core/Factories.hpp"
#include "caudalis/db/Connection.hpp"
#include "caudalis/hydraulics/Drops.hpp"
#include "caudalis/hydraulics/PipeMaterials.hpp"
#include "caudalis/hydraulics/ReguladorPression.hpp"
#include "caudalis/machine/CoordenadasSaidas.hpp"

namespace caudalis::testing {

ChartFixture::ChartFixture(TestEngine engine)
    : databases(engine), catalogue(AspersoresStatic().find(databases.catalogueConnection())) {}

std::shared_ptr<Aspersor> ChartFixture::nozzle(Long position) const {
    return catalogue->objectAt<Aspersor>(position);
}

std::shared_ptr<CartaAspersores> ChartFixture::fullChart(const String& name) const {
    const auto coordinates = CoordenadasSaidas::shared();
    auto chart = makeCartaAspersores();
    chart->setNome(name);
    chart->setEndGunBoost(12.5);
    for (auto [span, outlet, position] : {std::tuple{1, 1, 3}, std::tuple{1, 2, 7}, std::tuple{2, 1, 11}}) {
        auto mounted = charts.newMountedAspersor(
            coordinates->newTramoCoordenadas(static_cast<Integer>(span), static_cast<Integer>(outlet)),
            nozzle(position));
        chart->addMountedAspersor(mounted);
    }
    auto gun = charts.newMountedAspersor(coordinates->newEndGunCoordenadas(), nozzle(398));
    chart->addMountedAspersor(gun);
    chart->removeAspersorAt(coordinates->newTramoCoordenadas(1, 2));
    chart->setReguladores(regulatorsOf({makeReguladorPression(1, 137.5, 2.25, 0.125, true),
                                        makeReguladorPression(2, 103.4, 1.5, 0.05, false)}));
    Drop drop = Drops::shared()->newDrop(19.5, 2.75, storedMaterial(2));
    Drops::shared()->Install(drop);
    chart->setDrop(drop);
    chart->setIndicadores(makeIndicadores(22.5, 3));
    chart->setPluviometriaCheck(checkOf(makePivotSample(120.5, 18.25, "mine"),
                                        makePivotSample(310.75, 21.5, "also mine"),
                                        makeKostiakovParameters(0.0625, 0.75)));
    return chart;
}

PipeMaterial ChartFixture::storedMaterial(Long id) const {
    Connection con(databases.projectConnection());
    con.Open();
    return PipeMaterials::shared()->find(con, id);
}

CollectionRef ChartFixture::regulatorsOf(
    std::initializer_list<std::shared_ptr<ReguladorPression>> regulators) {
    auto result = Collection::create();
    for (const auto& regulator : regulators) {
        result->Add(Variant(regulator));
    }
    return result;
}

PluviometryCheck ChartFixture::checkOf(const PivotSample& first, const PivotSample& second,
                                       const KostiakovParameters& law) {
    PluviometryCheck check;
    check.firstSample = first;
    check.secondSample = second;
    check.kostiakov = law;
    return check;
}

std::shared_ptr<CartaAspersores> ChartFixture::load(Integer id) const {
    return charts.find(databases.projectConnection(), databases.cataloguePath(), id);
}

void ChartFixture::saveAsNew(CartaAspersores& carta, Long id_sistema) const {
    charts.saveAsNew(databases.projectConnection(), id_sistema, carta);
}

void ChartFixture::save(CartaAspersores& carta, Long id_sistema) const {
    charts.save(databases.projectConnection(), id_sistema, carta);
}

double ChartFixture::rowsOfChart(const std::string& table, Long id) const {
    const std::string column = table == "tb_drop" ? "carta_id" : "id_carta";
    return databases.projectNumber("SELECT count(*) FROM " + table + " WHERE " + column + "=" +
                                   std::to_string(id));
}

}  // namespace caudalis::testing
