#pragma once

#include <string>

namespace caudalis::design {

/// The Chart.js charting library (MIT licence) that HTML reports embed, so that a report draws
/// its plots without any network access. The build reads Debian's `libjs-chart.js`
/// (`/usr/share/javascript/chart.js/chart.min.js`, or the file named by the CMake cache
/// variable `CAUDALIS_CHARTJS_FILE`) into a generated source file.
class ChartJsLibrary {
public:
    /// The whole minified script, as the package ships it.
    static const std::string& source();
    /// The version line of the script's banner, e.g. "Chart.js v3.9.1".
    static std::string version();
};

}  // namespace caudalis::design
