#include "AdoBackend.hpp"

#include <algorithm>

#include "AdoCursor.hpp"

namespace caudalis::com {

AdoBackend::AdoBackend(LateBound connection) : connection_(std::move(connection)) {}

AdoBackend::~AdoBackend() {
    try {
        while (inTransaction()) {
            rollbackTransaction();
        }
    } catch (...) {
        // The host's engine abandons the transaction when its connection closes.
    }
}

std::unique_ptr<caudalis::DatabaseCursor> AdoBackend::execute(const caudalis::JetStatement& statement) {
    VARIANT sql;
    toCom(statement.text(), sql);
    VARIANT result;
    try {
        result = connection_.invoke(L"Execute", &sql);
    } catch (...) {
        VariantClear(&sql);
        throw;
    }
    VariantClear(&sql);
    std::optional<LateBound> records = LateBound::from(result);
    VariantClear(&result);
    return std::make_unique<AdoCursor>(std::move(records));
}

void AdoBackend::beginTransaction() {
    connection_.call(L"BeginTrans");
    ++depth_;
}

void AdoBackend::commitTransaction() {
    connection_.call(L"CommitTrans");
    depth_ = std::max(0, depth_ - 1);
}

void AdoBackend::rollbackTransaction() {
    connection_.call(L"RollbackTrans");
    depth_ = std::max(0, depth_ - 1);
}

}  // namespace caudalis::com
