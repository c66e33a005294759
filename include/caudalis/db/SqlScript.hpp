#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace caudalis {

class Connection;

/// The statements of an SQL script, split at the semicolons that stand outside string
/// literals, quoted or bracketed names and comments; comments are dropped and blank
/// statements skipped.
std::vector<std::string> splitStatements(std::string_view script);

/// Runs every statement of `script` on the open connection, one `Execute` each.
void runScript(Connection& connection, std::string_view script);

/// Runs the script held in a file; raises error 53 (file not found) when it cannot be read.
void runScriptFile(Connection& connection, const std::filesystem::path& file);

}  // namespace caudalis
