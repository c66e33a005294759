#include "caudalis/db/Recordset.hpp"

#include "TextHelpers.hpp"
#include "caudalis/core/Error.hpp"
#include "caudalis/db/DatabaseCursor.hpp"
#include "caudalis/db/DatabaseErrors.hpp"

namespace caudalis {

Recordset::Recordset(DatabaseCursor& cursor) : names_(cursor.columnNames()) {
    std::vector<Variant> row;
    while (cursor.fetch(row)) {
        rows_.push_back(std::move(row));
    }
}

bool Recordset::EOF_() const noexcept {
    return position_ >= rows_.size();
}

bool Recordset::BOF() const noexcept {
    return rows_.empty();
}

void Recordset::MoveNext() {
    if (EOF_()) {
        raiseError(RuntimeError::DataAccess);
    }
    ++position_;
}

Variant Recordset::Fields(const std::string& name) const {
    const std::size_t index = fieldIndex(name);
    if (EOF_()) {
        raiseError(RuntimeError::DataAccess);
    }
    return rows_[position_].at(index);
}

std::size_t Recordset::fieldIndex(const std::string& name) const {
    for (std::size_t i = 0; i < names_.size(); ++i) {
        if (texthelpers::equalsIgnoringCase(names_[i], name)) {
            return i;
        }
    }
    raiseDatabaseError(DatabaseError::ItemNotFound);
}

}  // namespace caudalis
