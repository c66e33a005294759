#include "ScriptRecordset.hpp"

#include <caudalis/core/Error.hpp>
#include <caudalis/db/DatabaseErrors.hpp>

#include "ScriptFields.hpp"
#include "db/TextHelpers.hpp"

namespace caudalis::com {
ScriptRecordset::ScriptRecordset(const std::shared_ptr<caudalis::Recordset>& rows)
    : names_(rows->fieldNames()) {
    for (; !rows->EOF_(); rows->MoveNext()) {
        std::vector<caudalis::Variant> row;
        row.reserve(names_.size());
        for (const auto& name : names_) {
            row.push_back(rows->Fields(name));
        }
        rows_.push_back(std::move(row));
    }
}

std::shared_ptr<ScriptFields> ScriptRecordset::fields() {
    requireOpen();
    return std::make_shared<ScriptFields>(shared_from_this());
}

bool ScriptRecordset::EOF_() const {
    requireOpen();
    return position_ >= rows_.size();
}

bool ScriptRecordset::BOF() const {
    requireOpen();
    return rows_.empty();
}

caudalis::Long ScriptRecordset::RecordCount() const {
    requireOpen();
    return static_cast<caudalis::Long>(rows_.size());
}

void ScriptRecordset::MoveNext() {
    if (EOF_()) {
        raiseError(RuntimeError::DataAccess);
    }
    ++position_;
}

void ScriptRecordset::MoveFirst() {
    if (BOF()) {
        raiseError(RuntimeError::DataAccess);
    }
    position_ = 0;
}

void ScriptRecordset::Close() {
    requireOpen();
    open_ = false;
    rows_.clear();
    position_ = 0;
}

std::size_t ScriptRecordset::columnCount() const {
    requireOpen();
    return names_.size();
}

const std::string& ScriptRecordset::columnName(std::size_t column) const {
    requireOpen();
    return names_.at(column);
}

std::size_t ScriptRecordset::columnOf(const caudalis::Variant& index) const {
    requireOpen();
    if (index.isString()) {
        for (std::size_t column = 0; column < names_.size(); ++column) {
            if (texthelpers::equalsIgnoringCase(names_[column], index.toString())) {
                return column;
            }
        }
    } else if (index.isNumeric()) {
        const caudalis::Long position = index.toLong();
        if (position >= 0 && static_cast<std::size_t>(position) < names_.size()) {
            return static_cast<std::size_t>(position);
        }
    }
    raiseDatabaseError(DatabaseError::ItemNotFound);
}

const caudalis::Variant& ScriptRecordset::value(std::size_t column) const {
    if (EOF_()) {
        raiseError(RuntimeError::DataAccess);
    }
    return rows_[position_].at(column);
}

void ScriptRecordset::requireOpen() const {
    if (!open_) {
        raiseDatabaseError(DatabaseError::ObjectClosed);
    }
}

}  // namespace caudalis::com
