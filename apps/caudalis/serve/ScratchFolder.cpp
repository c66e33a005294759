#include "ScratchFolder.hpp"

#include <cstdlib>
#include <fstream>
#include <stdexcept>
#include <system_error>
#include <vector>

namespace caudalis::web {

ScratchFolder::ScratchFolder() {
    auto pattern = (std::filesystem::temp_directory_path() / "caudalis-serve-XXXXXX").string();
    std::vector<char> name(pattern.begin(), pattern.end());
    name.push_back('\0');
    if (::mkdtemp(name.data()) == nullptr) {
        throw std::runtime_error("cannot make a scratch folder for the request");
    }
    folder_ = name.data();
}

ScratchFolder::~ScratchFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
}

std::string ScratchFolder::path(const std::string& name) const {
    return (folder_ / name).string();
}

std::string ScratchFolder::write(const std::string& name, const std::string& content) const {
    const auto file = path(name);
    std::ofstream stream(file, std::ios::binary);
    stream << content;
    stream.close();
    if (!stream) {
        throw std::runtime_error("cannot keep the request's " + name);
    }
    return file;
}

std::string ScratchFolder::withoutFolder(std::string text) const {
    const auto prefix = folder_.string() + "/";
    for (auto at = text.find(prefix); at != std::string::npos; at = text.find(prefix, at)) {
        text.erase(at, prefix.size());
    }
    return text;
}

}  // namespace caudalis::web
