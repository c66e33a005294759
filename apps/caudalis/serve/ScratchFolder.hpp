#pragma once

#include <filesystem>
#include <string>

namespace caudalis::web {

/// A fresh private folder for the files one request hands to a command (a design, readings),
/// removed with everything in it when the request is done. Requests never name a file of the
/// server: the names inside are the server's own.
class ScratchFolder {
public:
    ScratchFolder();
    ~ScratchFolder();
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;

    /// Writes `content` into the folder's file `name` and returns its path.
    std::string write(const std::string& name, const std::string& content) const;
    /// The path of the folder's file `name`.
    std::string path(const std::string& name) const;
    /// `text` with the folder's own path taken out, so messages name files as "design.json".
    std::string withoutFolder(std::string text) const;

private:
    std::filesystem::path folder_;
};

}  // namespace caudalis::web
