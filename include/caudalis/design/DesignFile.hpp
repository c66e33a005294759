#pragma once

#include <set>
#include <string>

#include "caudalis/design/DesignDescription.hpp"

namespace caudalis::design {

/// Reads a design file (JSON, see docs/design-file.md) into a validated `DesignDescription`.
/// Every failure raises `DesignError` (`InvalidInput`) with a message that names the file or
/// the bad field by its path ("spans[2].length_m must be > 0").
class DesignFile {
public:
    /// Reads and validates the file at `path`.
    static DesignDescription load(const std::string& path);
    /// Parses and validates `text`; `sourceName` names it in messages about malformed JSON.
    static DesignDescription parse(const std::string& text, const std::string& sourceName);
    /// Every field the reader looks for while it parses `text` (present or not), by path with
    /// array indices written "[]" ("spans[].length_m"); raises as `parse` does.
    static std::set<std::string> fieldsLookedFor(const std::string& text, const std::string& sourceName);
};

}  // namespace caudalis::design
