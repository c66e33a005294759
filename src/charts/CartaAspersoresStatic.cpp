#include "caudalis/charts/CartaAspersoresStatic.hpp"

#include <functional>
#include <string>

#include "../catalogue/CatalogueRows.hpp"
#include "../catalogue/QueryRows.hpp"
#include "../hydraulics/DropStorage.hpp"
#include "caudalis/charts/CartaAspersores.hpp"
#include "caudalis/charts/MountedAspersor.hpp"
#include "caudalis/core/Errors.hpp"
#include "caudalis/core/Factories.hpp"
#include "caudalis/db/Connection.hpp"
#include "caudalis/db/SqlText.hpp"
#include "caudalis/hydraulics/ReguladorPression.hpp"
#include "caudalis/machine/CoordenadasSaidas.hpp"

namespace caudalis {
namespace {

/// The chart id as the child tables receive it: a 16-bit integer (6 above 32767).
Integer childKey(Long id) {
    return Variant(id).toInteger();
}

std::string text(Long value) {
    return std::to_string(value);
}

/// The joined tables of mounted sprinklers and the catalogue database at `asperdbpath`.
BoundedArray<Variant> mountedJoinOperands(const String& asperdbpath) {
    const std::string catalogue = "[" + asperdbpath + "].";
    const BoundedArray<Variant> nozzles = nozzleJoinOperands();
    BoundedArray<Variant> tables(0, nozzles.ubound() + 1);
    tables(0) = "tb_aspersores as tb_a";
    for (Long i = nozzles.lbound(); i <= nozzles.ubound(); ++i) {
        tables(i + 1) = catalogue + nozzles(i).toString();
    }
    tables(1) = tables(1).toString() + " ON tb_a.id_aspersor=b.ID_Boquillas ";
    return tables;
}

PivotSample sampleOf(const Recordset& rs, const char* distance, const char* wetDiameter, const char* code) {
    return makePivotSample(rs.Fields(distance).toDouble(), rs.Fields(wetDiameter).toDouble(), code);
}

Variant regulatorOf(const Recordset& rs) {
    return Variant(makeReguladorPression(
        rs.Fields("tramo").toInteger(), rs.Fields("pression").toDouble(), rs.Fields("caudal_max").toDouble(),
        rs.Fields("caudal_min").toDouble(), rs.Fields("installed").toBoolean()));
}

}  // namespace

std::shared_ptr<MountedAspersor> CartaAspersoresStatic::newMountedAspersor(
    const CoordenadasSaida& coordenadas, const std::shared_ptr<Aspersor>& umAspersor) const {
    return makeMountedAspersor(coordenadas, umAspersor);
}

void CartaAspersoresStatic::destroy(const String& connectionString, Integer id_carta) const {
    // Should a statement fail, the connection rolls the transaction back as it goes.
    Connection con(connectionString);
    con.Open();
    con.BeginTrans();
    destroyOn(con, id_carta);
    con.CommitTrans();
    con.Close();
}

void CartaAspersoresStatic::destroyOn(Connection& con, Integer id_carta) const {
    const auto key = BoundedArray<Variant>::of({id_carta});
    executeFilled(con, "DELETE FROM tb_indicadores WHERE id_carta=?", key);
    executeFilled(con, "DELETE FROM tb_pluviometria WHERE id_carta=?", key);
    executeFilled(con, "DELETE FROM tb_reguladores WHERE id_carta=?", key);
    executeFilled(con, "DELETE FROM tb_aspersores WHERE id_carta=?", key);
    DropStorage::deleteDropsOf(con, id_carta);
    executeFilled(con, "DELETE FROM tb_cartas WHERE id_carta=?", key);
}

std::shared_ptr<CartaAspersores> CartaAspersoresStatic::find(const String& connectionString,
                                                             const String& asperdbpath,
                                                             Integer id_carta) const {
    auto carta = makeCartaAspersores();
    Connection con(connectionString);
    con.Open();
    const auto header = executeFilled(con, "SELECT nome,boost from tb_cartas WHERE id_carta=?;",
                                      BoundedArray<Variant>::of({id_carta}));
    if (header->EOF_()) {
        return carta;
    }
    carta->id(id_carta);
    readChartHeader(*header, *carta);
    loadMountedSprinklers(con, *carta, asperdbpath, id_carta);
    loadIndicadores(con, *carta, id_carta);
    loadPluviometry(con, *carta, id_carta);
    loadRegulators(con, *carta, id_carta);
    carta->setDrop(DropStorage::loadDrop(con, id_carta));
    con.Close();
    return carta;
}

CollectionRef CartaAspersoresStatic::enumerateAll(const String& connectionString, Long id_sistema) const {
    return queryRows(connectionString,
                     "SELECT nome,id_carta FROM tb_cartas WHERE id_sistema=" + text(id_sistema) + ";",
                     [](const Recordset& rs) {
                         return Variant::record(
                             CartaInfo{rs.Fields("nome").toString(), rs.Fields("id_carta").toInteger()});
                     });
}

bool CartaAspersoresStatic::AnyFor(const String& connectionString, Long id_sistema) const {
    Connection con(connectionString);
    con.Open();
    const auto rs = executeFilled(con, "SELECT count(*) as result FROM tb_cartas WHERE id_sistema=?",
                                  BoundedArray<Variant>::of({id_sistema}));
    const bool any = rs->Fields("result").toLong() > 0;
    con.Close();
    return any;
}

void CartaAspersoresStatic::saveAsNew(const String& connectionString, Long id_sistema,
                                      CartaAspersores& carta) const {
    keepIdOnNameClash(carta, [&] { save(connectionString, id_sistema, carta); });
}

void CartaAspersoresStatic::saveAsNewOn(Connection& con, Long id_sistema, CartaAspersores& carta) const {
    keepIdOnNameClash(carta, [&] { saveOn(con, id_sistema, carta); });
}

void CartaAspersoresStatic::save(const String& connectionString, Long id_sistema,
                                 CartaAspersores& carta) const {
    restoreIdOnFailure(carta, [&] { writeChart(connectionString, id_sistema, carta); });
}

void CartaAspersoresStatic::saveOn(Connection& con, Long id_sistema, CartaAspersores& carta) const {
    restoreIdOnFailure(carta, [&] { writeChartOn(con, id_sistema, carta); });
}

void CartaAspersoresStatic::keepIdOnNameClash(CartaAspersores& carta, const std::function<void()>& store) {
    const Integer previous = childKey(carta.id());
    carta.id(0);
    try {
        store();
    } catch (const Error& error) {
        if (error.number() == errorNumber(CartaExceptions::NomeDaCartaJaExistente)) {
            carta.id(previous);
        }
        throw;
    }
}

void CartaAspersoresStatic::restoreIdOnFailure(CartaAspersores& carta, const std::function<void()>& write) {
    // A failed save writes nothing, so an id given to a new chart on the way refers to nothing.
    const Long previous = carta.id();
    try {
        write();
    } catch (const Error&) {
        carta.id(previous);
        throw;
    }
}

void CartaAspersoresStatic::writeChart(const String& connectionString, Long id_sistema,
                                       CartaAspersores& carta) const {
    // Should a statement fail, the connection rolls the transaction back as it goes, so the
    // chart and its child rows stay as they were.
    Connection con(connectionString);
    con.Open();
    con.BeginTrans();
    writeChartOn(con, id_sistema, carta);
    con.CommitTrans();
    con.Close();
}

void CartaAspersoresStatic::writeChartOn(Connection& con, Long id_sistema, CartaAspersores& carta) const {
    if (isNewChart(con, id_sistema, carta)) {
        insertChart(con, id_sistema, carta);
    } else {
        updateChart(con, id_sistema, carta);
    }
    saveChartContents(con, carta);
}

bool CartaAspersoresStatic::isNewChart(Connection& con, Long id_sistema, const CartaAspersores& carta) const {
    const auto rs = executeFilled(
        con,
        "SELECT COUNT(*) as numero_existentes_con_este_id FROM tb_cartas where id_carta=? AND id_sistema=?;",
        BoundedArray<Variant>::of({carta.id(), id_sistema}));
    return rs->Fields("numero_existentes_con_este_id").toLong() == 0;
}

void CartaAspersoresStatic::insertChart(Connection& con, Long id_sistema, CartaAspersores& carta) const {
    checkNameIsFree(con, id_sistema, carta);
    executeFilled(
        con, "INSERT INTO tb_cartas (nome,boost,id_sistema) values( '?',?, ?);",
        BoundedArray<Variant>::of({carta.getNome(), sqlDouble(carta.getEndGunBoost()), id_sistema}));
    const auto rs = con.Execute("SELECT id_carta FROM tb_cartas  WHERE nome=" + sqlQuote(carta.getNome()) +
                                " AND id_sistema=" + text(id_sistema) + ";");
    carta.id(rs->Fields("id_carta").toLong());
}

void CartaAspersoresStatic::checkNameIsFree(Connection& con, Long id_sistema,
                                            const CartaAspersores& carta) const {
    const auto rs = executeFilled(
        con,
        "SELECT count(*) as numero_cartas_com_mesmo_nome FROM tb_cartas WHERE id_sistema=?  AND nome='?';",
        BoundedArray<Variant>::of({id_sistema, carta.getNome()}));
    if (rs->Fields("numero_cartas_com_mesmo_nome").toLong() > 0) {
        con.RollbackTrans();
        con.Close();
        raiseCode(CartaExceptions::NomeDaCartaJaExistente);
    }
}

void CartaAspersoresStatic::updateChart(Connection& con, Long id_sistema,
                                        const CartaAspersores& carta) const {
    executeFilled(con, "UPDATE tb_cartas set nome='?', boost=?  WHERE id_sistema=? AND id_carta = ?;",
                  BoundedArray<Variant>::of(
                      {carta.getNome(), sqlDouble(carta.getEndGunBoost()), id_sistema, carta.id()}));
}

void CartaAspersoresStatic::saveChartContents(Connection& con, CartaAspersores& carta) const {
    const Integer id = childKey(carta.id());
    saveMountedSprinklers(con, id, carta);
    saveIndicadores(con, id, carta.getIndicadores());
    savePluviometry(con, id, carta.getPluviometriaCheck());
    saveRegulators(con, id, carta.getReguladores());
    DropStorage::saveDrop(con, carta.getDrop(), id);
}

void CartaAspersoresStatic::saveMountedSprinklers(Connection& con, Integer id,
                                                  const CartaAspersores& carta) const {
    executeFilled(con, "DELETE FROM tb_aspersores WHERE id_carta=?;", BoundedArray<Variant>::of({id}));
    for (const Variant& entry : *carta.mountedAspersores()) {
        const auto mounted = entry.toObject<MountedAspersor>();
        if (mounted->deleted()) {
            continue;
        }
        const CoordenadasSaida saida = mounted->saida();
        con.Execute("INSERT INTO tb_aspersores (tramo,saida,id_aspersor,id_carta) values (" +
                    text(saida.numeroTramo) + "," + text(saida.saida) + "," +
                    text(mounted->Aspersor()->id()) + "," + text(id) + ");");
    }
}

void CartaAspersoresStatic::saveIndicadores(Connection& con, Integer id,
                                            const indicadores& aIndicadores) const {
    con.Execute("DELETE FROM tb_indicadores WHERE id_carta=" + text(id) + ";");
    con.Execute("INSERT INTO tb_indicadores (id_carta ,numero_horas,numero_obturadas) values (" + text(id) +
                "," + sqlDouble(aIndicadores.horasRevolucao) + "," +
                text(aIndicadores.numeroSaidasObturadas) + ");");
}

void CartaAspersoresStatic::savePluviometry(Connection& con, Integer id,
                                            const PluviometryCheck& check) const {
    con.Execute("DELETE FROM tb_pluviometria WHERE id_carta=" + text(id) + ";");
    con.Execute("INSERT INTO tb_pluviometria (id_carta,distCentro1,distCentro2,Dmoj1,Dmoj2,k,a) values (" +
                text(id) + "," + sqlDouble(check.firstSample.distanceToCenter) + "," +
                sqlDouble(check.secondSample.distanceToCenter) + "," +
                sqlDouble(check.firstSample.wetDiameter) + "," + sqlDouble(check.secondSample.wetDiameter) +
                "," + sqlDouble(check.kostiakov.k) + "," + sqlDouble(check.kostiakov.a) + ");");
}

void CartaAspersoresStatic::saveRegulators(Connection& con, Integer id,
                                           const CollectionRef& reguladores) const {
    executeFilled(con, "DELETE FROM tb_reguladores WHERE id_carta=?", BoundedArray<Variant>::of({id}));
    for (const Variant& entry : *reguladores) {
        const auto regulator = entry.toObject<ReguladorPression>();
        executeFilled(
            con,
            "INSERT INTO tb_reguladores (id_carta,tramo,pression,caudal_max,caudal_min,installed) VALUES "
            "(?,?,?,?,?,?);",
            BoundedArray<Variant>::of({id, regulator->tramo(), sqlDouble(regulator->pression()),
                                       sqlDouble(regulator->maximum_caudal()),
                                       sqlDouble(regulator->minimum_caudal()),
                                       sqlBoolean(regulator->installed())}));
    }
}

void CartaAspersoresStatic::readChartHeader(const Recordset& rs, CartaAspersores& carta) const {
    carta.setNome(rs.Fields("nome").toString());
    carta.setEndGunBoost(nullToZero(rs.Fields("boost")).toDouble());
}

void CartaAspersoresStatic::loadMountedSprinklers(Connection& con, CartaAspersores& carta,
                                                  const String& asperdbpath, Integer id) const {
    const auto rs =
        con.Execute("SELECT tb_a.id_aspersores,tb_a.tramo,tb_a.saida," + nozzleColumns() + " FROM " +
                    innerJoin(mountedJoinOperands(asperdbpath)) + " WHERE tb_a.id_carta=" + text(id) + ";");
    const auto coordinates = CoordenadasSaidas::shared();
    for (; !rs->EOF_(); rs->MoveNext()) {
        const CoordenadasSaida saida = coordinates->newTramoCoordenadas(rs->Fields("tramo").toInteger(),
                                                                        rs->Fields("saida").toInteger());
        auto mounted = newMountedAspersor(saida, rowToAspersor(*rs));
        mounted->setMountedId(rs->Fields("id_aspersores").toLong());
        carta.addMountedAspersor(mounted);
    }
}

void CartaAspersoresStatic::loadIndicadores(Connection& con, CartaAspersores& carta, Integer id) const {
    const auto rs = con.Execute(
        "SELECT id_indicadores,numero_horas,numero_obturadas FROM tb_indicadores WHERE id_carta=" + text(id) +
        ";");
    indicadores figures =
        makeIndicadores(rs->Fields("numero_horas").toDouble(), rs->Fields("numero_obturadas").toInteger());
    figures.id = rs->Fields("Id_indicadores").toLong();
    carta.setIndicadores(figures);
}

void CartaAspersoresStatic::loadPluviometry(Connection& con, CartaAspersores& carta, Integer id) const {
    const auto rs = con.Execute(
        "SELECT id_pluviometria,distCentro1,distCentro2,Dmoj1,Dmoj2,k,a FROM tb_Pluviometria "
        "WHERE id_carta=" +
        text(id) + ";");
    PluviometryCheck check;
    check.firstSample = sampleOf(*rs, "distCentro1", "Dmoj1", "first_sample");
    check.secondSample = sampleOf(*rs, "distCentro2", "Dmoj2", "second_sample");
    check.kostiakov = makeKostiakovParameters(rs->Fields("k").toDouble(), rs->Fields("a").toDouble());
    carta.setPluviometriaCheck(check);
}

void CartaAspersoresStatic::loadRegulators(Connection& con, CartaAspersores& carta, Integer id) const {
    const auto rs = executeFilled(
        con, "SELECT tramo,pression,caudal_max,caudal_min,installed FROM tb_reguladores WHERE id_carta=?;",
        BoundedArray<Variant>::of({id}));
    carta.setReguladores(collectRows(*rs, regulatorOf));
}

}  // namespace caudalis
