#pragma once

#include <memory>

#include "caudalis/core/Collection.hpp"
#include "caudalis/core/Records.hpp"
#include "caudalis/core/Variant.hpp"

namespace caudalis {

class Connection;
class Recordset;
class TableSchema;

/// The catalogue of pipe materials and their Hazen-Williams coefficients (table
/// `pipe_materials` of the project database).
class PipeMaterials {
public:
    static std::shared_ptr<PipeMaterials> shared();

    /// Every material of the table in the order "id asc", each as a `PipeMaterial` record.
    /// The list is read on the first call only and kept: later calls return the same
    /// collection object, without querying, whatever connection they pass.
    CollectionRef All(Connection& con) const;
    /// A material with every field zero or empty.
    PipeMaterial NullPipeMaterial() const;
    /// True when `other` holds a pipe material with the same id.
    bool Equals(const PipeMaterial& self, const Variant& other) const;
    /// The material stored under `id`; the null material when there is none.
    PipeMaterial find(Connection& con, Long id) const;

private:
    /// The description of `pipe_materials`, made on first use.
    const TableSchema& materialSchema() const;
    /// The material in the current row of `rs`.
    PipeMaterial pipeMaterialFromRecord(const Recordset& rs) const;

    mutable std::shared_ptr<TableSchema> materialSchema_;
    mutable CollectionRef all_;
};

}  // namespace caudalis
