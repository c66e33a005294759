#include "AdoCursor.hpp"

namespace caudalis::com {
namespace {

/// ADO's `State` of a record set that holds no rows (the statement returned none).
constexpr long closedState = 0;

bool holdsRows(const LateBound& records) {
    return !records.has(L"State") || records.value(L"State").toLong() != closedState;
}

}  // namespace

AdoCursor::AdoCursor(std::optional<LateBound> records) : records_(std::move(records)) {
    if (records_ && !holdsRows(*records_)) {
        records_.reset();
    }
}

AdoCursor::~AdoCursor() {
    try {
        close();
    } catch (...) {
        // The host's record set goes with its last reference anyway.
    }
}

bool AdoCursor::fetch(std::vector<caudalis::Variant>&) {
    if (!records_) {
        return false;
    }
    if (started_) {
        records_->call(L"MoveNext");
    }
    started_ = true;
    if (records_->value(L"EOF").toBoolean()) {
        close();
        return false;
    }
    return true;
}

caudalis::Variant AdoCursor::field(const std::string& name) const {
    VARIANT key;
    toCom(name, key);
    try {
        const caudalis::Variant value = records_->object(L"Fields").object(L"Item", &key).value(L"Value");
        VariantClear(&key);
        return value;
    } catch (...) {
        VariantClear(&key);
        throw;
    }
}

void AdoCursor::close() {
    if (records_) {
        const LateBound records = *records_;
        records_.reset();
        if (records.has(L"Close")) {
            records.call(L"Close");
        }
    }
}

}  // namespace caudalis::com
