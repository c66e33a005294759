#pragma once

#include <optional>
#include <string>
#include <vector>

#include "caudalis/design/DesignResult.hpp"
#include "caudalis/design/Finding.hpp"
#include "caudalis/design/Units.hpp"

namespace caudalis::design {

/// The values a figure takes on working centre pivots (extension publications and makers'
/// literature). Outside [low, high] a design is unusual; beyond `farFactor` times past either
/// end it is almost always a typing mistake (psi typed as kPa, gpm as l/s).
struct TypicalRange {
    double low = 0;
    double high = 0;

    bool holds(double value) const { return value >= low && value <= high; }
    bool far(double value) const { return value < low / farFactor || value > high * farFactor; }
    /// The same range in a unit `factor` times smaller (each end multiplied by it).
    constexpr TypicalRange scaled(double factor) const { return {low * factor, high * factor}; }

    static constexpr double farFactor = 3;
};

/// Checks a computed design's figures against the typical ranges. Codes:
/// - warning `regulator-rating-unusual`: a regulator rated outside 41-172 kPa (6-25 psi);
/// - warning / note `flow-per-area-unusual`: system capacity outside 0.6-1.2 l/s per ha
///   (3.85-7.7 gpm per acre; a warning beyond three times past either end);
/// - warning / note `depth-per-revolution-unusual`: depth per revolution at 100 % timer outside
///   5-25 mm (likewise);
/// - warning `uniformity-below-zero`: the outlets' depths are so uneven that the Heermann-Hein
///   formula falls below 0, which is no uniformity: the design gives no CU.
/// Messages give figures in `units`.
class PlausibilityChecks {
public:
    static constexpr TypicalRange regulatorRatingKpa{41, 172};
    static constexpr TypicalRange flowPerAreaLpsPerHa{0.6, 1.2};
    static constexpr TypicalRange depthPerRevolutionMm{5, 25};

    static std::vector<Finding> check(const DesignResult& result, const Units& units);
    /// A finding for `value` outside `range` (empty inside it): a warning when far outside.
    static std::optional<Finding> outside(const TypicalRange& range, double value, const std::string& code,
                                          const std::string& what);

private:
    static void checkRegulators(const DesignResult& result, const Units& units,
                                std::vector<Finding>& findings);
    static void checkCapacity(const DesignResult& result, const Units& units, std::vector<Finding>& findings);
};

}  // namespace caudalis::design
