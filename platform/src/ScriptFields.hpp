#pragma once

#include <caudalis/core/Variant.hpp>
#include <memory>
#include <vector>

namespace caudalis::com {

class ScriptRecordset;
class ScriptField;

/// The fields of a `ScriptRecordset`: `Count`, `Item(name or position)` and For Each.
class ScriptFields {
public:
    explicit ScriptFields(std::shared_ptr<ScriptRecordset> records);

    caudalis::Long Count() const;
    /// 3265 (item not found) for a name or position the record set does not have.
    std::shared_ptr<ScriptField> Item(const caudalis::Variant& index) const;
    /// Every field in column order, for For Each.
    std::vector<caudalis::Variant> all() const;

private:
    std::shared_ptr<ScriptRecordset> records_;
};

}  // namespace caudalis::com
