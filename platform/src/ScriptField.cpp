#include "ScriptField.hpp"

#include "ScriptRecordset.hpp"

namespace caudalis::com {

ScriptField::ScriptField(std::shared_ptr<ScriptRecordset> records, std::size_t column)
    : records_(std::move(records)), column_(column) {}

caudalis::Variant ScriptField::Value() const {
    return records_->value(column_);
}

std::string ScriptField::Name() const {
    return records_->columnName(column_);
}

}  // namespace caudalis::com
