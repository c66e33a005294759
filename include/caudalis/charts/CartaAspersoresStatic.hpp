#pragma once

#include <functional>
#include <memory>

#include "caudalis/core/Basic.hpp"
#include "caudalis/core/Collection.hpp"
#include "caudalis/core/Records.hpp"

namespace caudalis {

class Aspersor;
class CartaAspersores;
class Connection;
class MountedAspersor;
class Recordset;

/// Loads, lists, saves and deletes the sprinkler charts of the host's irrigation systems in the
/// project database (`tb_cartas`, `tb_aspersores`, `tb_reguladores`, `tb_indicadores`,
/// `tb_pluviometria` and `tb_drop`). The nozzles of a loaded chart are read from the separate
/// catalogue database named by its path.
///
/// Every operation opens its own connection from the host's connection string and closes it
/// before returning; nothing is kept between calls. `save` and `destroy` work inside one
/// transaction: when they fail, nothing of the call is left in the database.
///
/// Values are written into the statements without escaping: a chart name that holds an
/// apostrophe makes the statements fail. The chart id travels as a 16-bit integer to the child
/// tables, so ids above 32767 raise overflow (6).
class CartaAspersoresStatic {
public:
    /// A new mounted sprinkler at `coordenadas`.
    std::shared_ptr<MountedAspersor> newMountedAspersor(const CoordenadasSaida& coordenadas,
                                                        const std::shared_ptr<Aspersor>& umAspersor) const;
    /// Deletes the chart and every row that belongs to it.
    void destroy(const String& connectionString, Integer id_carta) const;
    /// The stored chart `id_carta` with its nozzles joined from the catalogue database at
    /// `asperdbpath`; an empty chart (id 0) when there is no such chart. A chart without its
    /// indicators or pluviometry row raises the data-access error 3021.
    std::shared_ptr<CartaAspersores> find(const String& connectionString, const String& asperdbpath,
                                          Integer id_carta) const;
    /// Name and id (`CartaInfo` records) of every chart of the system.
    CollectionRef enumerateAll(const String& connectionString, Long id_sistema) const;
    /// True when the system has at least one chart.
    bool AnyFor(const String& connectionString, Long id_sistema) const;
    /// Stores the chart as a new one and sets its id. When the name is already taken in the
    /// system, raises `CartaExceptions::NomeDaCartaJaExistente` and the chart keeps its id;
    /// on any other error the chart's id is left 0.
    void saveAsNew(const String& connectionString, Long id_sistema, CartaAspersores& carta) const;
    /// Inserts the chart when it has no row in the system (setting its id), else updates it;
    /// then rewrites all its child rows. A new chart whose name is taken in the system raises
    /// `CartaExceptions::NomeDaCartaJaExistente`; a renamed one may share a name. When the call
    /// fails, the database and the chart's id are left as they were.
    void save(const String& connectionString, Long id_sistema, CartaAspersores& carta) const;

    /// `saveAsNew` and `save` on a connection that the caller has opened and in which it has
    /// begun a transaction, so that the chart is stored together with the caller's own rows:
    /// the same statements, without a transaction or a connection of their own. The caller
    /// commits. A name clash rolls the caller's transaction back and closes the connection
    /// before it raises, as the connection-string forms do with their own.
    void saveAsNewOn(Connection& con, Long id_sistema, CartaAspersores& carta) const;
    void saveOn(Connection& con, Long id_sistema, CartaAspersores& carta) const;
    /// `destroy` on the caller's open connection, inside the transaction it has begun.
    void destroyOn(Connection& con, Integer id_carta) const;

private:
    /// Runs `store`; when it raises the name clash, the chart gets back the id it had before.
    static void keepIdOnNameClash(CartaAspersores& carta, const std::function<void()>& store);
    /// Runs `write`; when it fails, the chart gets back the id it had before.
    static void restoreIdOnFailure(CartaAspersores& carta, const std::function<void()>& write);
    /// The work of `save`, in one transaction on its own connection.
    void writeChart(const String& connectionString, Long id_sistema, CartaAspersores& carta) const;
    /// The statements of `save`, on an open connection inside the caller's transaction.
    void writeChartOn(Connection& con, Long id_sistema, CartaAspersores& carta) const;
    bool isNewChart(Connection& con, Long id_sistema, const CartaAspersores& carta) const;
    void insertChart(Connection& con, Long id_sistema, CartaAspersores& carta) const;
    void checkNameIsFree(Connection& con, Long id_sistema, const CartaAspersores& carta) const;
    void updateChart(Connection& con, Long id_sistema, const CartaAspersores& carta) const;
    void saveChartContents(Connection& con, CartaAspersores& carta) const;
    void saveMountedSprinklers(Connection& con, Integer id, const CartaAspersores& carta) const;
    void saveIndicadores(Connection& con, Integer id, const indicadores& aIndicadores) const;
    void savePluviometry(Connection& con, Integer id, const PluviometryCheck& check) const;
    void saveRegulators(Connection& con, Integer id, const CollectionRef& reguladores) const;

    void readChartHeader(const Recordset& rs, CartaAspersores& carta) const;
    void loadMountedSprinklers(Connection& con, CartaAspersores& carta, const String& asperdbpath,
                               Integer id) const;
    void loadIndicadores(Connection& con, CartaAspersores& carta, Integer id) const;
    void loadPluviometry(Connection& con, CartaAspersores& carta, Integer id) const;
    void loadRegulators(Connection& con, CartaAspersores& carta, Integer id) const;
};

}  // namespace caudalis
