#include "caudalis/catalogue/AspersoresStatic.hpp"

#include <exception>
#include <optional>

#include "AspersorLoader.hpp"
#include "CatalogueRows.hpp"
#include "CatalogueWrites.hpp"
#include "FlowTolerance.hpp"
#include "NozzleLawTable.hpp"
#include "QueryRows.hpp"
#include "caudalis/core/Error.hpp"
#include "caudalis/db/Connection.hpp"
#include "caudalis/db/SqlText.hpp"

namespace caudalis {
namespace {

const Collection& collectionOf(const CollectionRef& availlableAspersores) {
    if (!availlableAspersores) {
        raiseError(RuntimeError::TypeMismatch);
    }
    return *availlableAspersores;
}

/// The flow at `pressao` of a sprinkler with `law`.
double flowOf(const NozzleLawTable::Law& law, double pressao) {
    if (!law.usable) [[unlikely]] {
        raiseError(RuntimeError::TypeMismatch);
    }
    return Aspersor::lawFlow(law.a, law.b, pressao);
}

/// Calls `visit(position, flow)` for every element of the collection, in its order (positions
/// from 0), whose sprinkler's flow at `pressao` lies within `variacao` of `caudal`. The
/// tolerance range is the same for every sprinkler: it is worked out once, right after the
/// first flow, which is where a test of each sprinkler on its own would first work it out (and
/// fail, if it fails).
template <class Visit>
void forEachPossible(NozzleLawTable& table, const Collection& availlableAspersores, double pressao,
                     double caudal, double variacao, Visit&& visit) {
    const auto& laws = table.lawsOf(availlableAspersores);
    const std::size_t count = laws.size();
    if (count == 0) {
        return;
    }
    const double firstFlow = flowOf(laws.front(), pressao);
    const FlowRange range = flowRange(caudal, variacao);
    auto consider = [&](std::size_t position, double flow) {
        if (isWithin(flow, range)) {
            visit(position, flow);
        }
    };
    consider(0, firstFlow);
    for (std::size_t position = 1; position < count; ++position) {
        consider(position, flowOf(laws[position], pressao));
    }
}

/// The sprinkler at `position` (from 0) of the collection.
std::shared_ptr<Aspersor> aspersorAt(const Collection& collection, std::size_t position) {
    return collection.Item(static_cast<Long>(position) + 1).toObject<Aspersor>();
}

Variant aspersorOf(const Recordset& rs) {
    return Variant(rowToAspersor(rs));
}

CollectionRef loadAspersores(const String& connectionString, const std::string& statement) {
    return queryRows(connectionString, statement, aspersorOf);
}

/// The nozzles that satisfy `condition`.
CollectionRef findWhere(const String& connectionString, const std::string& condition) {
    return loadAspersores(connectionString, nozzleSelect() + " WHERE " + condition + " ;");
}

/// `condition` with its quoted mark filled by the raw name (quotes inside are not doubled).
std::string nameCondition(std::string condition, const String& name) {
    return substituteParams(condition, BoundedArray<Variant>::of({name}));
}

}  // namespace

CollectionRef AspersoresStatic::find(const String& connectionString) const {
    return loadAspersores(connectionString, nozzleSelect());
}

CollectionRef AspersoresStatic::find_by_marca(const String& connectionString, const String& marca) const {
    return findWhere(connectionString, nameCondition("marca.nome='?'", marca));
}

CollectionRef AspersoresStatic::find_by_modelo(const String& connectionString, const String& modelo) const {
    return findWhere(connectionString, nameCondition("modelos.modelo='?'", modelo));
}

void AspersoresStatic::save(const String& connectionString, const Aspersor& anAspersor) const {
    // An error leaves the transaction uncommitted; the connection rolls it back as it goes.
    Connection con(connectionString);
    con.Open();
    con.BeginTrans();
    saveAspersorOn(con, anAspersor);
    con.CommitTrans();
    con.Close();
}

CollectionRef AspersoresStatic::MarcasAll(const String& connectionString) const {
    return onOwnConnection(connectionString, [this](Connection& con) { return MarcasAllOn(con); });
}

CollectionRef AspersoresStatic::ModelosAll(const String& connectionString) const {
    return onOwnConnection(connectionString, [this](Connection& con) { return ModelosAllOn(con); });
}

void AspersoresStatic::saveOn(Connection& con, const Aspersor& anAspersor) const {
    saveAspersorOn(con, anAspersor);
}

CollectionRef AspersoresStatic::MarcasAllOn(Connection& con) const {
    const auto rs = con.Execute("SELECT " + marcaColumns() + " FROM marca");
    return collectRows(*rs, [](const Recordset& row) { return Variant::record(rowToMarca(row)); });
}

CollectionRef AspersoresStatic::ModelosAllOn(Connection& con) const {
    const auto operands =
        BoundedArray<Variant>::of({"Modelos", "Marca ON modelos.id_marca=marca.id_marca"}, 0);
    const auto rs =
        con.Execute("SELECT " + modeloColumns() + "," + marcaColumns() + " FROM " + innerJoin(operands));
    return collectRows(*rs, [](const Recordset& row) { return Variant::record(rowToModelo(row)); });
}

std::shared_ptr<Aspersor> AspersoresStatic::newAspersor(const String& boquilla, double a, double b,
                                                        double pmin, double pmax, double qmin, double qmax,
                                                        const modelo& aModelo) const {
    return AspersorLoader::create(boquilla, a, b, pmin, pmax, qmin, qmax, aModelo);
}

CollectionRef AspersoresStatic::getPossibleAspersores(const CollectionRef& availlableAspersores,
                                                      double pressao, double caudal, double variacao) const {
    const Collection& candidates = collectionOf(availlableAspersores);
    auto possible = Collection::create();
    forEachPossible(
        *lawTable_.get(), candidates, pressao, caudal, variacao,
        [&](std::size_t position, double) { possible->Add(Variant(aspersorAt(candidates, position))); });
    return possible;
}

std::shared_ptr<Aspersor> AspersoresStatic::getBestMatch(const CollectionRef& availlableAspersores,
                                                         double pressao, double caudal,
                                                         double variacaoMaxima) const {
    // One pass instead of a collection of candidates. The candidates are all selected before
    // any deviation is worked out, so a failing deviation is kept and raised only once every
    // element has been tested, and the deviations after it are not worked out.
    const Collection& candidates = collectionOf(availlableAspersores);
    std::optional<std::size_t> best;
    double bound = variacaoMaxima;
    std::exception_ptr failedDeviation;
    forEachPossible(*lawTable_.get(), candidates, pressao, caudal, variacaoMaxima,
                    [&](std::size_t position, double flow) {
                        if (failedDeviation) {
                            return;
                        }
                        try {
                            const double deviation = flowDeviation(flow, caudal);
                            if (deviation <= bound) {
                                best = position;
                                bound = deviation;
                            }
                        } catch (...) {
                            failedDeviation = std::current_exception();
                        }
                    });
    if (failedDeviation) {
        std::rethrow_exception(failedDeviation);
    }
    return best ? aspersorAt(candidates, *best) : nullptr;
}

std::shared_ptr<Aspersor> AspersoresStatic::NullAspersor() const {
    return nullAspersor_.get();
}

}  // namespace caudalis
