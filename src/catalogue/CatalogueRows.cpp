#include "CatalogueRows.hpp"

#include "AspersorLoader.hpp"
#include "caudalis/db/Recordset.hpp"
#include "caudalis/db/SqlText.hpp"

namespace caudalis {
namespace {

const char* const boquillaColumns = "b.ID_Boquillas, b.denominacion, b.a, b.b,b.pmin, b.pmax,b.qmin, b.qmax";

double doubleField(const Recordset& rs, const std::string& name) {
    return rs.Fields(name).toDouble();
}

}  // namespace

const std::string& nozzleColumns() {
    static const std::string columns =
        std::string(boquillaColumns) + "," + modeloColumns() + "," + marcaColumns();
    return columns;
}

const std::string& modeloColumns() {
    static const std::string columns =
        "modelos.id_modelo as modelos_id_modelo,modelos.id_marca as modelos_id_marca,modelos.modelo as "
        "modelos_modelo";
    return columns;
}

const std::string& marcaColumns() {
    static const std::string columns = "marca.id_marca as marca_id_marca, marca.nome as marca_nome";
    return columns;
}

BoundedArray<Variant> nozzleJoinOperands() {
    return BoundedArray<Variant>::of({"Boquillas AS b", "Modelos ON b.id_modelo=modelos.id_modelo",
                                      "Marca ON modelos.id_marca=marca.id_marca"},
                                     0);
}

std::string nozzleSelect() {
    return "SELECT " + nozzleColumns() + " FROM " + innerJoin(nozzleJoinOperands());
}

std::shared_ptr<Aspersor> rowToAspersor(const Recordset& rs) {
    const std::string denominacion = rs.Fields("denominacion").toString();
    const double a = doubleField(rs, "a");
    const double b = doubleField(rs, "b");
    const double pmin = doubleField(rs, "pmin");
    const double pmax = doubleField(rs, "pmax");
    const double qmin = doubleField(rs, "qmin");
    const double qmax = doubleField(rs, "qmax");
    auto aspersor = AspersorLoader::create(denominacion, a, b, pmin, pmax, qmin, qmax, rowToModelo(rs));
    AspersorLoader::setId(*aspersor, rs.Fields("ID_Boquillas").toLong());
    return aspersor;
}

modelo rowToModelo(const Recordset& rs) {
    modelo result;
    result.id = rs.Fields("modelos_id_modelo").toLong();
    result.marca_id = rs.Fields("modelos_id_marca").toLong();
    result.nome = rs.Fields("modelos_modelo").toString();
    result.marca = rowToMarca(rs);
    return result;
}

marca rowToMarca(const Recordset& rs) {
    marca result;
    result.id = rs.Fields("marca_id_marca").toLong();
    result.nome = rs.Fields("marca_nome").toString();
    return result;
}

}  // namespace caudalis
