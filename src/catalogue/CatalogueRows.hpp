#pragma once

#include <memory>
#include <string>

#include "caudalis/catalogue/Aspersor.hpp"
#include "caudalis/core/BoundedArray.hpp"
#include "caudalis/core/Records.hpp"
#include "caudalis/core/Variant.hpp"

namespace caudalis {

class Recordset;

// Library-internal pieces of the statements that read the sprinkler catalogue, and the
// construction of sprinklers, models and brands from their rows. The chart reader uses them
// too, joining the catalogue tables to the mounted sprinklers. Not installed.

/// The nozzle, model and brand columns of a catalogue row, built on first use and kept.
const std::string& nozzleColumns();
/// The model columns, aliased "modelos_id_modelo", "modelos_id_marca", "modelos_modelo".
const std::string& modeloColumns();
/// The brand columns, aliased "marca_id_marca", "marca_nome".
const std::string& marcaColumns();
/// The three join operands of nozzles, models and brands, indexed from 0.
BoundedArray<Variant> nozzleJoinOperands();
/// "SELECT " nozzle columns " FROM " the nested joins of nozzles, models and brands.
std::string nozzleSelect();

/// The sprinkler of the current row, validated by `initAspersor` and keyed by `ID_Boquillas`.
/// Raises `AspersorException::MissingAsperorDataException` for incomplete data.
std::shared_ptr<Aspersor> rowToAspersor(const Recordset& rs);
/// The model (with its brand) of the current row.
modelo rowToModelo(const Recordset& rs);
/// The brand of the current row.
marca rowToMarca(const Recordset& rs);

}  // namespace caudalis
