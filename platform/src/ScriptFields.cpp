#include "ScriptFields.hpp"

#include "ScriptField.hpp"
#include "ScriptRecordset.hpp"

namespace caudalis::com {

ScriptFields::ScriptFields(std::shared_ptr<ScriptRecordset> records) : records_(std::move(records)) {}

caudalis::Long ScriptFields::Count() const {
    return static_cast<caudalis::Long>(records_->columnCount());
}

std::shared_ptr<ScriptField> ScriptFields::Item(const caudalis::Variant& index) const {
    return std::make_shared<ScriptField>(records_, records_->columnOf(index));
}

std::vector<caudalis::Variant> ScriptFields::all() const {
    std::vector<caudalis::Variant> fields;
    for (std::size_t column = 0; column < records_->columnCount(); ++column) {
        fields.emplace_back(std::make_shared<ScriptField>(records_, column));
    }
    return fields;
}

}  // namespace caudalis::com
