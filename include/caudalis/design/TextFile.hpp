#pragma once

#include <string>

namespace caudalis::design {

/// The whole content of the file at `path`. Raises `DesignError` (`InvalidInput`) naming the
/// file by its `kind` ("cannot open design file x.json: No such file or directory").
std::string readTextFile(const std::string& path, const std::string& kind);

}  // namespace caudalis::design
