#pragma once

#include <caudalis/core/Object.hpp>
#include <caudalis/core/Variant.hpp>
#include <cstddef>
#include <memory>
#include <string>

namespace caudalis::com {

class ScriptRecordset;

/// One column of a `ScriptRecordset`. Like ADO's field it follows the record set: `Value` is
/// the column's value in the row that is current when it is read.
class ScriptField final : public caudalis::Object {
public:
    ScriptField(std::shared_ptr<ScriptRecordset> records, std::size_t column);

    /// 3021 (no current row) at EOF; 3704 once the record set is closed.
    caudalis::Variant Value() const;
    std::string Name() const;

private:
    std::shared_ptr<ScriptRecordset> records_;
    std::size_t column_;
};

}  // namespace caudalis::com
