#include "CatalogueWrites.hpp"

#include <string>

#include "QueryRows.hpp"
#include "caudalis/core/Errors.hpp"
#include "caudalis/db/Connection.hpp"
#include "caudalis/db/SqlText.hpp"

namespace caudalis {
namespace {

void validateMarca(const marca& aMarca) {
    if (isBlank(aMarca.nome)) {
        raiseCode(MarcaException::MissingNameException);
    }
}

void validateModelo(const modelo& aModelo) {
    if (isBlank(aModelo.nome)) {
        raiseCode(ModeloException::MissingNameException);
    }
    if (isNewRecord(aModelo.marca)) {
        raiseCode(ModeloException::MarcaIsNewRecordException);
    }
}

void insertMarca(Connection& con, marca& aMarca) {
    executeFilled(con, "INSERT INTO marca (nome) VALUES (?);",
                  BoundedArray<Variant>::of({sqlQuote(aMarca.nome)}));
    aMarca.id = lastIdentity(con).toLong();
}

void saveMarca(Connection& con, marca& aMarca) {
    validateMarca(aMarca);
    if (isNewRecord(aMarca)) {
        insertMarca(con, aMarca);
    }
}

void insertModelo(Connection& con, modelo& aModelo) {
    executeFilled(con, "INSERT INTO Modelos (Modelo,ID_Marca) VALUES (?,?);",
                  BoundedArray<Variant>::of({sqlQuote(aModelo.nome), aModelo.marca.id}));
    aModelo.id = lastIdentity(con).toLong();
}

void saveModelo(Connection& con, modelo& aModelo) {
    saveMarca(con, aModelo.marca);
    validateModelo(aModelo);
    if (!isNewRecord(aModelo) && aModelo.marca_id == aModelo.marca.id) {
        return;
    }
    insertModelo(con, aModelo);
}

void insertBoquilla(Connection& con, const Aspersor& anAspersor, Long id_modelo) {
    // The coefficients go through their text form, as the sprinkler gives them.
    const double a = Variant(anAspersor.a()).toDouble();
    const double b = Variant(anAspersor.b()).toDouble();
    executeFilled(
        con,
        "INSERT INTO Boquillas (denominacion,pmin,pmax,a,b,qmin,qmax,id_modelo)VALUES (?,?,?,?,?,?,?,?);",
        BoundedArray<Variant>::of({sqlQuote(anAspersor.nome()), sqlDouble(anAspersor.pmin()),
                                   sqlDouble(anAspersor.pmax()), sqlDouble(a), sqlDouble(b),
                                   sqlDouble(anAspersor.qmin()), sqlDouble(anAspersor.qmax()), id_modelo}));
}

}  // namespace

void saveAspersorOn(Connection& con, const Aspersor& anAspersor) {
    modelo copy = anAspersor.modelo();
    saveModelo(con, copy);
    insertBoquilla(con, anAspersor, copy.id);
}

}  // namespace caudalis
