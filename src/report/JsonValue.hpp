#pragma once

#include <optional>

#include <nlohmann/json.hpp>

namespace caudalis::fieldtests {

/// The value, or JSON null when there is none.
template <class T>
nlohmann::json optionalJson(const std::optional<T>& value) {
    return value ? nlohmann::json(*value) : nlohmann::json(nullptr);
}

}  // namespace caudalis::fieldtests
