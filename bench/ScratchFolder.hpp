#pragma once

#include <chrono>
#include <filesystem>
#include <string>
#include <system_error>

namespace caudalis::bench {

/// A new folder of the temporary directory, named after `purpose` and the time, removed with
/// everything in it when the object goes away.
class ScratchFolder {
public:
    explicit ScratchFolder(const std::string& purpose)
        : path_(std::filesystem::temp_directory_path() /
                ("caudalis-" + purpose + "-" +
                 std::to_string(std::chrono::steady_clock::now().time_since_epoch().count()))) {
        std::filesystem::create_directories(path_);
    }
    ~ScratchFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;

    const std::filesystem::path& path() const noexcept { return path_; }

private:
    std::filesystem::path path_;
};

}  // namespace caudalis::bench
