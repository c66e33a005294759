#pragma once

#include <memory>

#include "caudalis/core/BoundedArray.hpp"
#include "caudalis/core/Records.hpp"
#include "caudalis/core/Variant.hpp"

namespace caudalis {

class Connection;
class Recordset;
class TableSchema;

/// Field evaluations stored in the table `pivot_evaluations` of the host's database. Every
/// operation runs on the open connection the host passes in: nothing is opened, closed or
/// bracketed in a transaction here. The readings of each pass are stored as text, one
/// "amount distance" line per reading, lines separated by "\r\n"; an empty pass is stored as
/// null. Names and conditions are placed into the statements as they stand (an apostrophe in
/// a name breaks the statement).
class PivotEvaluations {
public:
    /// The library-wide instance.
    static std::shared_ptr<PivotEvaluations> shared();

    /// An evaluation not yet stored: id 0, a gauge of diameter 0 and area 0, no readings.
    PivotEvaluation newEvaluation(const String& name) const;
    /// The names of all stored evaluations, in the order the database returns them.
    BoundedArray<String> Enumerate(Connection& con) const;
    /// Inserts a new evaluation (an id of 0 or less) and writes its generated id into `self`,
    /// or updates the stored row. A failed insert leaves `self.id` as it was.
    void save(Connection& con, PivotEvaluation& self) const;
    /// Whether any evaluation satisfies `conditions` (SQL text placed after " WHERE ").
    bool exists(Connection& con, const String& conditions) const;
    /// The first evaluation that satisfies `conditions`; when none does, the data-access error
    /// of reading an empty result (3021) is raised, so hosts ask `exists` first.
    PivotEvaluation find(Connection& con, const String& conditions) const;
    /// Deletes the stored row of `self`.
    void destroy(Connection& con, const PivotEvaluation& self) const;

private:
    /// The table's schema, made on first use and kept by this object.
    const TableSchema& evaluationSchema() const;
    void insertEvaluation(Connection& con, PivotEvaluation& self) const;
    void updateEvaluation(Connection& con, const PivotEvaluation& self) const;
    /// The values of name, gauge diameter and both passes as SQL text, in column order.
    BoundedArray<Variant> evaluationValues(const PivotEvaluation& self) const;
    /// The readings' text forms joined by "\r\n"; empty text for no readings.
    String samplesText(const BoundedArray<FieldSample>& samples) const;
    /// One reading per "\r\n"-separated piece, empty pieces included; none for blank text.
    BoundedArray<FieldSample> samplesFromText(const String& text) const;
    PivotEvaluation evaluationFromRecord(const Recordset& row) const;

    mutable std::shared_ptr<TableSchema> schema_;
};

}  // namespace caudalis
