#pragma once

#include <optional>
#include <ostream>

#include <nlohmann/json.hpp>

#include "DesignResult.hpp"

namespace caudalis::cli {

/// The value, or JSON null when there is none.
template <class T>
nlohmann::json optionalJson(const std::optional<T>& value) {
    return value ? nlohmann::json(*value) : nlohmann::json(nullptr);
}

/// The whole result as JSON. Spans and outlets use the library's record field names
/// (`distanciaAoPivot`, `pressao_actuante`, `caudal_do_aspersor`, `entry_conditions`, ...).
class JsonReport {
public:
    static nlohmann::json toJson(const DesignResult& result);
    static void write(std::ostream& out, const DesignResult& result);

private:
    static nlohmann::json spanJson(const SpanResult& span);
    static nlohmann::json outletJson(const OutletResult& outlet);
    static nlohmann::json summaryJson(const DesignSummary& summary);
};

}  // namespace caudalis::cli
