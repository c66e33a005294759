#include "caudalis/design/TextFile.hpp"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "caudalis/design/DesignError.hpp"

namespace caudalis::design {

std::string readTextFile(const std::string& path, const std::string& kind) {
    std::error_code ignored;
    if (std::filesystem::is_directory(path, ignored)) {
        throw DesignError::invalid("cannot open " + kind + " " + path + ": it is a directory");
    }
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        throw DesignError::invalid("cannot open " + kind + " " + path + ": " + std::strerror(errno));
    }
    std::ostringstream content;
    content << file.rdbuf();
    if (file.bad()) {
        throw DesignError::invalid("cannot read " + kind + " " + path);
    }
    return content.str();
}

}  // namespace caudalis::design
