#pragma once

#include <string>

#include <nlohmann/json.hpp>

#include "DesignDescription.hpp"

namespace caudalis::cli {

/// Reads a design file (JSON, see docs/design-file.md) into a validated `DesignDescription`.
/// Every failure raises `InputError` with a message that names the file or the bad field.
class DesignFile {
public:
    /// Reads and validates the file at `path`.
    static DesignDescription load(const std::string& path);
    /// Parses and validates `text`; `sourceName` names it in messages about malformed JSON.
    static DesignDescription parse(const std::string& text, const std::string& sourceName);
    /// Validates a parsed document.
    static DesignDescription fromJson(const nlohmann::json& document);
};

}  // namespace caudalis::cli
