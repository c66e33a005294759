#pragma once

#include <caudalis/db/DatabaseBackend.hpp>

#include "LateBinding.hpp"

namespace caudalis::com {

/// A database connection of the host's own (an ADO connection, or any object of its shape:
/// `Execute` giving a record set with `EOF`, `MoveNext`, `Fields(name).Value` and `Close`, and
/// `BeginTrans`, `CommitTrans`, `RollbackTrans`), driven through late binding. Its engine reads
/// the Access (Jet) dialect itself, so statements go as written; record sets are read by field
/// name; what the host's object raises comes back with its number and description.
///
/// Only the transactions begun through this backend are its own: letting it go rolls those
/// back. The host's connection stays open; it is the host's to close.
class AdoBackend final : public caudalis::DatabaseBackend {
public:
    explicit AdoBackend(LateBound connection);
    ~AdoBackend() override;
    AdoBackend(const AdoBackend&) = delete;
    AdoBackend& operator=(const AdoBackend&) = delete;

    std::unique_ptr<caudalis::DatabaseCursor> execute(const caudalis::JetStatement& statement) override;
    void beginTransaction() override;
    void commitTransaction() override;
    void rollbackTransaction() override;
    bool inTransaction() const noexcept override { return depth_ > 0; }

private:
    LateBound connection_;
    int depth_ = 0;
};

}  // namespace caudalis::com
