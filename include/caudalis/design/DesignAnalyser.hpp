#pragma once

#include <map>

#include "caudalis/design/DesignAnalysis.hpp"
#include "caudalis/design/DesignResult.hpp"
#include "caudalis/design/UnitText.hpp"

namespace caudalis::design {

/// Works out a `DesignAnalysis` from a computed design and the catalogue's wetted diameters
/// (by model id). Its findings state their figures in the units of `text`.
class DesignAnalyser {
public:
    static DesignAnalysis analyse(const DesignResult& result, const std::map<Long, double>& wettedDiameters,
                                  const UnitText& text);

    /// The spacing of the application profile's points (m).
    static constexpr double profileStepM = 0.5;

private:
    static void analyseRunoff(const DesignResult& result, const std::map<Long, double>& wettedDiameters,
                              const UnitText& text, DesignAnalysis& analysis);
    static void analyseProfile(const DesignResult& result, const std::map<Long, double>& wettedDiameters,
                               DesignAnalysis& analysis);
};

}  // namespace caudalis::design
