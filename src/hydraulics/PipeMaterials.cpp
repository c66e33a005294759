#include "caudalis/hydraulics/PipeMaterials.hpp"

#include "caudalis/core/LazyInstance.hpp"
#include "caudalis/db/Connection.hpp"
#include "caudalis/db/TableSchema.hpp"

namespace caudalis {

std::shared_ptr<PipeMaterials> PipeMaterials::shared() {
    static LazyInstance<PipeMaterials> instance;
    return instance.get();
}

CollectionRef PipeMaterials::All(Connection& con) const {
    if (!all_) {
        all_ = Collection::create();
        const auto rs = con.Execute(
            materialSchema().selectSQL(std::nullopt, std::nullopt, std::nullopt, Variant("id asc")));
        while (!rs->EOF_()) {
            all_->Add(Variant::record(pipeMaterialFromRecord(*rs)));
            rs->MoveNext();
        }
    }
    return all_;
}

PipeMaterial PipeMaterials::NullPipeMaterial() const {
    return PipeMaterial{};
}

bool PipeMaterials::Equals(const PipeMaterial& self, const Variant& other) const {
    return other.holdsRecord<PipeMaterial>() && other.toRecord<PipeMaterial>().id == self.id;
}

PipeMaterial PipeMaterials::find(Connection& con, Long id) const {
    const auto rs = con.Execute(materialSchema().selectSQL(Variant(id)));
    if (rs->EOF_() || rs->BOF()) {
        return NullPipeMaterial();
    }
    return pipeMaterialFromRecord(*rs);
}

const TableSchema& PipeMaterials::materialSchema() const {
    if (!materialSchema_) {
        materialSchema_ =
            makeTableSchema("pipe_materials", BoundedArray<Variant>::of({"name", "rugosidade"}), "id");
    }
    return *materialSchema_;
}

PipeMaterial PipeMaterials::pipeMaterialFromRecord(const Recordset& rs) const {
    PipeMaterial material;
    material.id = rs.Fields("id").toLong();
    material.name = rs.Fields("name").toString();
    material.rugosidade = rs.Fields("rugosidade").toLong();
    return material;
}

}  // namespace caudalis
