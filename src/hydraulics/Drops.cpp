#include "caudalis/hydraulics/Drops.hpp"

#include "DropLoss.hpp"

#include "caudalis/core/Errors.hpp"
#include "caudalis/core/Exceptions.hpp"
#include "caudalis/core/LazyInstance.hpp"
#include "caudalis/db/Connection.hpp"
#include "caudalis/db/SqlText.hpp"
#include "caudalis/db/TableSchema.hpp"
#include "caudalis/hydraulics/PipeMaterials.hpp"

namespace caudalis {
namespace {

/// The filter on the chart key of `tb_drop`.
Variant chartCondition(Integer carta_id) {
    std::string condition = "carta_id=?";
    return Variant(substituteParams(condition, BoundedArray<Variant>::of({Variant(carta_id)})));
}

}  // namespace

std::shared_ptr<Drops> Drops::shared() {
    static LazyInstance<Drops> instance;
    return instance.get();
}

bool Drops::isValid(const Drop& self) const {
    return self.diametro > 0 && self.p_pipe_material_id >= 1 && self.longitud > 0;
}

bool Drops::Differs(const Drop& self, const Drop& other) const {
    return !Equals(self, other);
}

bool Drops::Equals(const Drop& self, const Drop& other) const {
    return self.diametro == other.diametro && self.p_is_null == other.p_is_null &&
           self.longitud == other.longitud &&
           PipeMaterials::shared()->Equals(self.pipe_material, Variant::record(other.pipe_material));
}

Double Drops::PressureLoss(const Drop& self, Double discharge) const {
    return DropLoss(self).at(discharge);
}

Drop Drops::createNull() const {
    Drop result;
    result.p_is_null = true;
    return result;
}

Drop Drops::newDrop(Double diameter, Double longitud, const PipeMaterial& pipe_material) const {
    Drop result;
    result.longitud = longitud;
    result.diametro = diameter;
    result.pipe_material = pipe_material;
    result.p_pipe_material_id = pipe_material.id;
    return result;
}

void Drops::Install(Drop& self) const {
    if (!isValid(self)) {
        Exceptions::shared()->throw_(Variant(errorNumber(DropException::DropIncompleteException)));
    }
    self.p_installed = true;
}

void Drops::Uninstall(Drop& self) const {
    self.p_installed = false;
}

bool Drops::IsInstalled(const Drop& self) const {
    return self.p_installed;
}

bool Drops::IsEmpty(const Drop& self) const {
    return Equals(self, newDrop(0, 0, PipeMaterials::shared()->NullPipeMaterial())) || self.p_is_null;
}

void Drops::saveDrop(Connection& con, const Drop& aDrop, Integer carta_id) const {
    deleteDropsOf(con, carta_id);
    if (!IsEmpty(aDrop)) {
        insertDrop(con, aDrop, carta_id);
    }
}

Drop Drops::loadDrop(Connection& con, Integer carta_id) const {
    const auto rs = con.Execute(
        dropSchema().selectSQL(std::nullopt, std::nullopt, chartCondition(carta_id), std::nullopt));
    if (rs->EOF_() && rs->BOF()) {
        return createNull();
    }
    Drop result;
    dropFromRecord(*rs, result);
    attachPipeMaterial(con, result);
    return result;
}

void Drops::deleteDropsOf(Connection& con, Integer carta_id) const {
    con.Execute(dropSchema().deleteSQL(std::nullopt, chartCondition(carta_id)));
}

void Drops::insertDrop(Connection& con, const Drop& aDrop, Integer carta_id) const {
    const auto values =
        BoundedArray<Variant>::of({Variant(sqlDouble(aDrop.longitud)), Variant(sqlDouble(aDrop.diametro)),
                                   Variant(aDrop.p_pipe_material_id),
                                   Variant(sqlBoolean(Variant(aDrop.p_installed))), Variant(carta_id)});
    con.Execute(dropSchema().insertSQL(values));
}

void Drops::dropFromRecord(const Recordset& rs, Drop& aDrop) const {
    aDrop.diametro = nullToZero(rs.Fields("diametro")).toDouble();
    aDrop.longitud = nullToZero(rs.Fields("longitud")).toDouble();
    aDrop.p_pipe_material_id = nullToZero(rs.Fields("pipe_material_id")).toLong();
    aDrop.p_installed = nullToZero(rs.Fields("installed")).toBoolean();
}

void Drops::attachPipeMaterial(Connection& con, Drop& aDrop) const {
    aDrop.pipe_material = PipeMaterials::shared()->find(con, aDrop.p_pipe_material_id);
}

const TableSchema& Drops::dropSchema() const {
    if (!dropSchema_) {
        dropSchema_ = makeTableSchema(
            "tb_drop",
            BoundedArray<Variant>::of({"longitud", "diametro", "pipe_material_id", "installed", "carta_id"}),
            "");
    }
    return *dropSchema_;
}

}  // namespace caudalis
