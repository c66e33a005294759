#pragma once

#include "caudalis/core/Basic.hpp"
#include "caudalis/core/Records.hpp"

namespace caudalis {

class Connection;

/// Library-internal access to the storage of a chart's drop hose in `tb_drop`, for the chart
/// persistence. Every call goes through the shared `Drops` instance (whose cached table
/// description it uses). This header is not installed: hosts cannot call these procedures.
class DropStorage {
public:
    /// Deletes the chart's drop row, then writes `aDrop` unless it is empty or null.
    static void saveDrop(Connection& con, const Drop& aDrop, Integer carta_id);
    /// The chart's drop with its pipe material; the null drop when the chart has no row.
    static Drop loadDrop(Connection& con, Integer carta_id);
    /// Deletes the chart's drop rows.
    static void deleteDropsOf(Connection& con, Integer carta_id);
};

}  // namespace caudalis
