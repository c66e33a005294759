#include "caudalis/db/Recordset.hpp"

#include "TextHelpers.hpp"
#include "caudalis/core/Error.hpp"
#include "caudalis/db/DatabaseCursor.hpp"
#include "caudalis/db/DatabaseErrors.hpp"

namespace caudalis {

Recordset::Recordset() = default;

Recordset::Recordset(std::unique_ptr<DatabaseCursor> cursor)
    : names_(cursor->columnNames()), cursor_(std::move(cursor)), byName_(cursor_->readsByName()) {
    hasRow_ = cursor_->fetch(current_);
    anyRow_ = hasRow_;
    if (!hasRow_) {
        cursor_.reset();
    }
}

Recordset::~Recordset() = default;

void Recordset::MoveNext() {
    if (EOF_()) {
        raiseError(RuntimeError::DataAccess);
    }
    if (!readAhead_.empty()) {
        current_ = std::move(readAhead_.front());
        readAhead_.pop_front();
        return;
    }
    hasRow_ = cursor_ && cursor_->fetch(current_);
    if (!hasRow_) {
        cursor_.reset();
    }
}

void Recordset::readRemaining() {
    if (!cursor_ || byName_) {
        return;
    }
    std::vector<Variant> row;
    while (cursor_->fetch(row)) {
        readAhead_.push_back(std::move(row));
    }
    cursor_.reset();
}

Variant Recordset::Fields(const std::string& name) const {
    if (byName_) {
        if (EOF_()) {
            raiseError(RuntimeError::DataAccess);
        }
        return cursor_->field(name);
    }
    const std::size_t index = fieldIndex(name);
    if (EOF_()) {
        raiseError(RuntimeError::DataAccess);
    }
    return current_.at(index);
}

std::size_t Recordset::fieldIndex(const std::string& name) const {
    for (const auto& [asked, index] : resolved_) {
        if (asked == name) {
            return index;
        }
    }
    for (std::size_t i = 0; i < names_.size(); ++i) {
        if (texthelpers::equalsIgnoringCase(names_[i], name)) {
            resolved_.emplace_back(name, i);
            return i;
        }
    }
    raiseDatabaseError(DatabaseError::ItemNotFound);
}

}  // namespace caudalis
