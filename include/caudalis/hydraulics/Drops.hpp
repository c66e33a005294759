#pragma once

#include <memory>

#include "caudalis/core/Records.hpp"

namespace caudalis {

class Connection;
class DropStorage;
class Recordset;
class TableSchema;

/// Operations on the drop hose between an outlet and its sprinkler.
///
/// The drop of a sprinkler chart is stored in table `tb_drop` (one row per chart, keyed by
/// `carta_id`). Those storage procedures are private: the chart persistence reaches them
/// through the library-internal `DropStorage` (src/hydraulics/DropStorage.hpp), which is not
/// installed, so hosts cannot call them.
class Drops {
public:
    static std::shared_ptr<Drops> shared();

    /// Diameter > 0, a stored pipe material (id >= 1) and length > 0.
    bool isValid(const Drop& self) const;
    bool Differs(const Drop& self, const Drop& other) const;
    /// Same diameter, null flag, length and pipe material (installed flag and id ignored).
    bool Equals(const Drop& self, const Drop& other) const;
    /// Hazen-Williams loss over the hose length at `discharge`; 0 for the null drop.
    Double PressureLoss(const Drop& self, Double discharge) const;
    /// The null drop: no hose at all.
    Drop createNull() const;
    Drop newDrop(Double diameter, Double longitud, const PipeMaterial& pipe_material) const;
    /// Marks the drop installed; raises DropIncompleteException for an invalid drop.
    void Install(Drop& self) const;
    void Uninstall(Drop& self) const;
    bool IsInstalled(const Drop& self) const;
    /// True for the null drop and for a drop equal to an all-zero one.
    bool IsEmpty(const Drop& self) const;

private:
    friend class DropStorage;

    /// Replaces the chart's stored drop by `aDrop`; an empty or null drop leaves no row.
    void saveDrop(Connection& con, const Drop& aDrop, Integer carta_id) const;
    /// The chart's stored drop with its pipe material; the null drop when none is stored.
    Drop loadDrop(Connection& con, Integer carta_id) const;
    void deleteDropsOf(Connection& con, Integer carta_id) const;
    void insertDrop(Connection& con, const Drop& aDrop, Integer carta_id) const;
    /// Reads diameter, length, material id and installed flag of the current row into `aDrop`
    /// (Null fields as 0).
    void dropFromRecord(const Recordset& rs, Drop& aDrop) const;
    /// Fills `aDrop.pipe_material` with the stored material of `aDrop.p_pipe_material_id`.
    void attachPipeMaterial(Connection& con, Drop& aDrop) const;
    /// The description of `tb_drop`, made on first use.
    const TableSchema& dropSchema() const;

    mutable std::shared_ptr<TableSchema> dropSchema_;
};

}  // namespace caudalis
