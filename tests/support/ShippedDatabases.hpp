#pragma once

#include <filesystem>
#include <string>

namespace caudalis::testing {

/// A file of the source tree's `data` folder (schemas and sample data).
std::filesystem::path shippedDataFile(const std::string& relative);

/// Creates a project database at `file` from the shipped schema, with the sample pipe materials.
void createProjectDatabase(const std::string& file);

/// Creates a catalogue database at `file` from the shipped schema, with the sample catalogue
/// when `withSample` is true.
void createCatalogueDatabase(const std::string& file, bool withSample = true);

}  // namespace caudalis::testing
