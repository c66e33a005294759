#include "caudalis/report/ChartJsLibrary.hpp"

#include <string_view>

namespace caudalis::design {

namespace embedded {
// Defined in the source that the build generates from the Chart.js script.
extern const char* const chartJsPieces[];
extern const unsigned chartJsPieceCount;
}  // namespace embedded

const std::string& ChartJsLibrary::source() {
    static const std::string script = [] {
        std::string joined;
        for (unsigned i = 0; i < embedded::chartJsPieceCount; ++i) {
            joined += embedded::chartJsPieces[i];
        }
        return joined;
    }();
    return script;
}

std::string ChartJsLibrary::version() {
    const std::string_view script = source();
    const auto start = script.find("Chart.js v");
    if (start == std::string_view::npos) {
        return "Chart.js";
    }
    const auto end = script.find_first_of("\r\n", start);
    return std::string(script.substr(start, end - start));
}

}  // namespace caudalis::design
