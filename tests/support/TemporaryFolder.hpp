#pragma once

#include <atomic>
#include <chrono>
#include <filesystem>
#include <string>
#include <system_error>

namespace caudalis::testing {

/// A fresh folder under the system's temporary directory, removed with everything in it when
/// the object goes away.
class TemporaryFolder {
public:
    TemporaryFolder() : path_(uniquePath()) { std::filesystem::create_directories(path_); }
    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const std::filesystem::path& path() const noexcept { return path_; }
    /// The path of a file `name` inside the folder, as text.
    std::string file(const std::string& name) const { return (path_ / name).string(); }

private:
    static std::filesystem::path uniquePath() {
        static std::atomic<int> counter{0};
        const auto stamp = std::chrono::steady_clock::now().time_since_epoch().count();
        return std::filesystem::temp_directory_path() /
               ("caudalis-test-" + std::to_string(stamp) + "-" + std::to_string(++counter));
    }

    std::filesystem::path path_;
};

}  // namespace caudalis::testing
