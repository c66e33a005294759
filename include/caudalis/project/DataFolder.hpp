#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace caudalis::project {

/// The folder of the shipped SQL files (schema/project.sql, schema/catalogue.sql,
/// sample/catalogue-data.sql, sample/pipe-materials.sql). Looked for, in this order: the
/// folder given on the command line, the environment variable CAUDALIS_DATA_DIR,
/// <folder of the program>/../share/caudalis (an installed program), and the source tree's
/// data folder (a program run from its build tree).
class DataFolder {
public:
    /// Raises `InputError` when a folder given on the command line or in the environment lacks
    /// the files, or when no folder is found at all.
    static std::filesystem::path locate(const std::optional<std::string>& given);
    /// True when `folder` holds every shipped file.
    static bool holdsData(const std::filesystem::path& folder);

    static constexpr const char* environmentVariable = "CAUDALIS_DATA_DIR";

private:
    static std::filesystem::path checked(const std::filesystem::path& folder, const std::string& origin);
    static std::optional<std::filesystem::path> besideProgram();
};

}  // namespace caudalis::project
