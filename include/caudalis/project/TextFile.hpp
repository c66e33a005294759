#pragma once

#include <string>

#include "caudalis/design/DesignError.hpp"
#include "caudalis/design/TextFile.hpp"
#include "caudalis/project/ServiceError.hpp"

namespace caudalis::project {

/// The whole content of the file at `path`. Raises `InputError` naming the file by its `kind`
/// ("cannot open readings file x.txt: No such file or directory").
inline std::string readTextFile(const std::string& path, const std::string& kind) {
    try {
        return design::readTextFile(path, kind);
    } catch (const design::DesignError& error) {
        throw InputError(error.what());
    }
}

}  // namespace caudalis::project
