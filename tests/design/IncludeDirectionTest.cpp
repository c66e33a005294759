#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

// The services' rooms depend one way: the report uses the field tests and the design run, the
// field tests use the design run, and the design run uses neither.
namespace {

namespace fs = std::filesystem;

/// Every "#include" line of the sources and headers of a room that names one of `rooms`.
std::vector<std::string> includesOf(const std::string& room, const std::vector<std::string>& rooms) {
    std::vector<std::string> found;
    const fs::path root(CAUDALIS_SOURCE_DIR);
    for (const auto& folder : {root / "src" / room, root / "include" / "caudalis" / room}) {
        for (const auto& entry : fs::directory_iterator(folder)) {
            std::ifstream file(entry.path());
            for (std::string line; std::getline(file, line);) {
                for (const auto& other : rooms) {
                    if (line.rfind("#include", 0) == 0 &&
                        line.find("caudalis/" + other + "/") != std::string::npos) {
                        found.push_back(entry.path().filename().string() + ": " + line);
                    }
                }
            }
        }
    }
    return found;
}

}  // namespace

TEST(IncludeDirection, TheDesignRunIncludesNeitherReportNorFieldTests) {
    EXPECT_EQ(includesOf("design", {"report", "fieldtests"}), std::vector<std::string>{});
}

TEST(IncludeDirection, FieldTestsDoNotIncludeTheReport) {
    EXPECT_EQ(includesOf("fieldtests", {"report"}), std::vector<std::string>{});
}

TEST(IncludeDirection, TheCheckSeesAnInclude) {
    EXPECT_FALSE(includesOf("report", {"design"}).empty());
}
