#include "caudalis/project/DataFolder.hpp"

#include <array>
#include <cstdlib>

#include "caudalis/project/ServiceError.hpp"

namespace caudalis::project {

namespace {

constexpr std::array shippedFiles{"schema/project.sql", "schema/catalogue.sql", "sample/catalogue-data.sql",
                                  "sample/pipe-materials.sql"};

}  // namespace

bool DataFolder::holdsData(const std::filesystem::path& folder) {
    std::error_code ignored;
    for (const char* file : shippedFiles) {
        if (!std::filesystem::is_regular_file(folder / file, ignored)) {
            return false;
        }
    }
    return true;
}

std::filesystem::path DataFolder::checked(const std::filesystem::path& folder, const std::string& origin) {
    if (!holdsData(folder)) {
        throw InputError("data folder " + folder.string() + " (" + origin +
                         ") does not hold the schema and sample files (schema/project.sql, ...)");
    }
    return folder;
}

std::optional<std::filesystem::path> DataFolder::besideProgram() {
    std::error_code error;
    const auto program = std::filesystem::read_symlink("/proc/self/exe", error);
    if (error) {
        return std::nullopt;
    }
    return program.parent_path() / ".." / "share" / "caudalis";
}

std::filesystem::path DataFolder::locate(const std::optional<std::string>& given) {
    if (given) {
        return checked(*given, "--data-dir");
    }
    if (const char* fromEnvironment = std::getenv(environmentVariable);
        fromEnvironment != nullptr && *fromEnvironment != '\0') {
        return checked(fromEnvironment, environmentVariable);
    }
    if (const auto installed = besideProgram(); installed && holdsData(*installed)) {
        return installed->lexically_normal();
    }
    const std::filesystem::path sourceTree(CAUDALIS_SOURCE_DATA_DIR);
    if (holdsData(sourceTree)) {
        return sourceTree;
    }
    throw InputError(std::string("cannot find the data folder with the schema and sample files; give it with "
                                 "--data-dir or ") +
                     environmentVariable);
}

}  // namespace caudalis::project
