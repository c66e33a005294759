#pragma once

#include "caudalis/catalogue/Aspersor.hpp"

namespace caudalis {

class Connection;

/// Library-internal: inserts the nozzle `anAspersor` on the open connection, after its model
/// and brand when those are new. The keys generated go into a copy of the model; the
/// sprinkler and its model keep theirs. Raises `MarcaException::MissingNameException`,
/// `ModeloException::MissingNameException` or `ModeloException::MarcaIsNewRecordException`
/// for an incomplete model or brand. Not installed.
void saveAspersorOn(Connection& con, const Aspersor& anAspersor);

}  // namespace caudalis
