#pragma once

#include <caudalis/db/DatabaseCursor.hpp>
#include <optional>

#include "LateBinding.hpp"

namespace caudalis::com {

/// The rows of a host's record set, read by field name (`EOF`, `MoveNext`,
/// `Fields(name).Value`); the record set is closed once its last row is passed. A statement
/// without rows gives no record set, or one whose `State` is closed.
class AdoCursor final : public caudalis::DatabaseCursor {
public:
    explicit AdoCursor(std::optional<LateBound> records);
    ~AdoCursor() override;
    AdoCursor(const AdoCursor&) = delete;
    AdoCursor& operator=(const AdoCursor&) = delete;

    std::vector<std::string> columnNames() const override { return {}; }
    bool fetch(std::vector<caudalis::Variant>& row) override;
    bool readsByName() const noexcept override { return true; }
    caudalis::Variant field(const std::string& name) const override;

private:
    void close();

    std::optional<LateBound> records_;
    bool started_ = false;
};

}  // namespace caudalis::com
