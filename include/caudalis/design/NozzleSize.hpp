#pragma once

#include <optional>
#include <string>

namespace caudalis::design {

/// The bore of a nozzle as its designation states it. Nozzles are sized in 1/128 inch steps
/// ("#24", "#24 (4.76 mm)", "24/128") or in millimetres ("4.5 mm", "4,5mm"); the printout gives
/// both.
struct NozzleSize {
    double millimetres = 0;
    /// The size in 1/128 inch: the designation's number, or the bore in millimetres converted.
    double inch128ths = 0;

    /// The size a designation states; empty when it states none.
    static std::optional<NozzleSize> fromDesignation(const std::string& designation);
};

}  // namespace caudalis::design
