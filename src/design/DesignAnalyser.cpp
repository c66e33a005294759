#include "caudalis/design/DesignAnalyser.hpp"

#include <algorithm>
#include <set>

#include <fmt/printf.h>

#include "caudalis/catalogue/Aspersor.hpp"
#include "caudalis/design/ApplicationProfile.hpp"
#include "caudalis/design/PipePressures.hpp"
#include "caudalis/design/ResultLabels.hpp"
#include "caudalis/design/SpeedTable.hpp"
#include "caudalis/design/Uniformity.hpp"
#include "caudalis/machine/Pivots.hpp"

namespace caudalis::design {

namespace {

ElevationRange elevationOf(const DesignResult& result) {
    ElevationRange range;
    range.atPivotM = result.machine.cota;
    range.highestM = range.lowestM = range.atPivotM;
    const auto consider = [&range](double elevation, double distance) {
        if (elevation > range.highestM) {
            range.highestM = elevation;
            range.highestAtM = distance;
        }
        range.lowestM = std::min(range.lowestM, elevation);
    };
    for (const auto& row : result.outlets) {
        if (row.place != OutletPlace::EndGun) {
            consider(row.outlet.cota, row.outlet.distanciaAoPivot);
        }
    }
    double end = 0;
    for (const auto& row : result.spans) {
        end += row.span.longitude;
        consider(row.span.site.end_cota, end);
    }
    return range;
}

double ringWidthOf(const DesignResult& result, const OutletResult& row) {
    if (row.place == OutletPlace::EndGun) {
        return result.machine.endGun.rs;
    }
    return result.spans[static_cast<std::size_t>(row.span - 1)].span.separacionSaidas;
}

std::optional<DepthFigures> depthsOf(const DesignResult& result) {
    std::vector<OutletRing> rings;
    for (const auto& row : result.outlets) {
        rings.push_back(
            OutletRing{row.outlet.distanciaAoPivot, ringWidthOf(result, row), row.outlet.caudal_do_aspersor});
    }
    const auto& s = result.summary;
    if (rings.empty() || s.revolutionTimeH <= 0 || s.irrigatedAreaM2 <= 0) {
        return std::nullopt;
    }
    return DepthBalance::compute(rings, s.computedFlowLps, s.revolutionTimeH, s.irrigatedAreaM2);
}

/// The wetted diameter of the nozzle fitted at a span outlet; empty without nozzle or diameter.
std::optional<double> wettedDiameterAt(const OutletResult& row,
                                       const std::map<Long, double>& wettedDiameters) {
    if (!row.outlet.obj_aspersor) {
        return std::nullopt;
    }
    const auto found = wettedDiameters.find(row.outlet.obj_aspersor->modelo().id);
    return found == wettedDiameters.end() ? std::nullopt : std::optional(found->second);
}

std::string modelName(const Aspersor& nozzle) {
    return nozzle.marca().nome + " " + nozzle.modelo().nome;
}

std::vector<std::string> modelsWithoutDiameter(const DesignResult& result,
                                               const std::map<Long, double>& wettedDiameters) {
    std::set<std::string> names;
    for (const auto& row : result.outlets) {
        if (row.place != OutletPlace::EndGun && row.outlet.obj_aspersor &&
            !wettedDiameterAt(row, wettedDiameters)) {
            names.insert(modelName(*row.outlet.obj_aspersor));
        }
    }
    return {names.begin(), names.end()};
}

bool usableSoil(const DesignResult& result) {
    const auto& check = result.design.pluviometryCheck;
    return check && check->kostiakov.k > 0 && check->kostiakov.a > 0 && check->kostiakov.a <= 1 &&
           result.summary.revolutionTimeH > 0;
}

/// "At P-650 (198.1 m) the peak application rate of 42.9 mm/h exceeds ..." in the units of `text`.
std::string runoffAtPointText(const std::string& code, const RunoffEstimate& e, const UnitText& text) {
    std::string sentence = "At ";
    sentence += code;
    sentence += " (";
    sentence += text.text(Quantity::Length, e.distanceM, -1);
    sentence += ") the peak application rate of ";
    sentence += text.text(Quantity::Rate, e.peakRateMmH);
    sentence += " exceeds the soil's intake: ";
    sentence += text.depth(e.runoffMm);
    sentence += " of the ";
    sentence += text.depth(e.appliedMm);
    sentence += " applied per revolution may run off.";
    return sentence;
}

void addRunoffFindings(const DesignAnalysis& analysis, const UnitText& text, std::vector<Finding>& findings) {
    for (const auto& point : analysis.runoffAtCheckPoints) {
        const auto& e = point.estimate;
        if (e.verdict == RunoffVerdict::Runoff) {
            findings.push_back(
                {Severity::Warning, "runoff-at-check-point", runoffAtPointText(point.code, e, text)});
        }
    }
    const auto first =
        std::find_if(analysis.runoffAlongMachine.begin(), analysis.runoffAlongMachine.end(),
                     [](const RunoffAtPoint& p) { return p.estimate.verdict == RunoffVerdict::Runoff; });
    if (first != analysis.runoffAlongMachine.end()) {
        const auto worst =
            std::max_element(analysis.runoffAlongMachine.begin(), analysis.runoffAlongMachine.end(),
                             [](const RunoffAtPoint& a, const RunoffAtPoint& b) {
                                 return a.estimate.runoffMm < b.estimate.runoffMm;
                             });
        std::string sentence = "Potential runoff from ";
        sentence += text.text(Quantity::Length, first->estimate.distanceM, -1);
        sentence += " outwards, up to ";
        sentence += text.depth(worst->estimate.runoffMm);
        sentence += " per revolution at ";
        sentence += text.text(Quantity::Length, worst->estimate.distanceM, -1);
        sentence += " (outlet ";
        sentence += worst->code;
        sentence += ").";
        findings.push_back({Severity::Warning, "runoff-along-machine", sentence});
    }
}

}  // namespace

void DesignAnalyser::analyseRunoff(const DesignResult& result, const std::map<Long, double>& wettedDiameters,
                                   const UnitText& text, DesignAnalysis& analysis) {
    if (!result.design.pluviometryCheck) {
        return;
    }
    if (!usableSoil(result)) {
        analysis.findings.push_back(
            {Severity::Note, "runoff-not-checked",
             "Runoff is not checked: the Kostiakov law needs k > 0 and 0 < a <= 1 and the "
             "revolution time must be greater than 0 h."});
        return;
    }
    const KostiakovParameters soil{result.design.pluviometryCheck->kostiakov.k,
                                   result.design.pluviometryCheck->kostiakov.a};
    const RunoffCheck check(soil, result.summary.revolutionTimeH);
    for (const auto& peak : result.summary.peakRates) {
        analysis.runoffAtCheckPoints.push_back(
            {peak.point.code, check.at(peak.point.distanceToCenter, peak.point.wetDiameter, peak.rateMmH)});
    }
    const auto pivots = Pivots::shared();
    for (const auto& row : result.outlets) {
        const auto diameter = wettedDiameterAt(row, wettedDiameters);
        if (row.place == OutletPlace::EndGun || !diameter) {
            continue;
        }
        const PivotSample point{row.outlet.distanciaAoPivot, *diameter, ""};
        const double peak = pivots->pluviosidadeMaxima(result.machine, point);
        analysis.runoffAlongMachine.push_back(
            {outletLabel(row), check.at(point.distanceToCenter, *diameter, peak)});
    }
    addRunoffFindings(analysis, text, analysis.findings);
}

void DesignAnalyser::analyseProfile(const DesignResult& result, const std::map<Long, double>& wettedDiameters,
                                    DesignAnalysis& analysis) {
    if (!analysis.modelsWithoutWettedDiameter.empty() || result.summary.revolutionTimeH <= 0) {
        return;
    }
    std::vector<SprinklerSource> sources;
    double firstOutletM = 0;
    for (const auto& row : result.outlets) {
        const auto diameter = wettedDiameterAt(row, wettedDiameters);
        if (row.place != OutletPlace::EndGun && diameter) {
            firstOutletM = sources.empty() ? row.outlet.distanciaAoPivot : firstOutletM;
            sources.push_back({row.outlet.distanciaAoPivot, row.outlet.caudal_do_aspersor, *diameter / 2});
        }
    }
    if (sources.empty()) {
        return;
    }
    const auto pivots = Pivots::shared();
    const double spansEndM = pivots->AllSpanLenght(result.machine);
    if (pivots->hasEndGun(result.machine) && result.summary.endGunFlowLps > 0) {
        const double ring = result.machine.endGun.rs;
        sources.push_back({spansEndM + ring / 2, result.summary.endGunFlowLps, ring / 2});
    }
    const ApplicationProfile profile(sources, result.summary.revolutionTimeH);
    analysis.profile = profile.along(0, result.summary.irrigatedLengthM, profileStepM);
    const auto samples = profile.samples(firstOutletM, spansEndM, profileStepM);
    analysis.profileUniformityCoefficient = Uniformity::heermannHein(samples);
    analysis.profileLowQuarterUniformity = Uniformity::lowQuarter(samples);
    const auto minimum = result.design.checks.minimumUniformityPercent;
    if (analysis.profileUniformityCoefficient && *analysis.profileUniformityCoefficient < minimum) {
        analysis.findings.push_back(
            {Severity::Warning, "profile-uniformity-low",
             fmt::sprintf("The application profile of the overlapping sprinkler patterns "
                          "has a CU of %.1f %%, under the "
                          "%.1f %% asked for.",
                          *analysis.profileUniformityCoefficient, minimum)});
    }
}

DesignAnalysis DesignAnalyser::analyse(const DesignResult& result,
                                       const std::map<Long, double>& wettedDiameters, const UnitText& text) {
    DesignAnalysis analysis;
    analysis.pipePressuresKpa = PipePressures::of(result.machine);
    analysis.elevation = elevationOf(result);
    analysis.depths = depthsOf(result);
    const auto& s = result.summary;
    const double endTowerM =
        Pivots::shared()->tramoAte(result.machine, Pivots::shared()->FixedSpansCount(result.machine));
    if (s.revolutionTimeH > 0 && endTowerM > 0 && analysis.depths) {
        analysis.speeds = SpeedTable::build(s.revolutionTimeH, endTowerM, analysis.depths->volumeOverAreaMm);
    }
    analysis.modelsWithoutWettedDiameter = modelsWithoutDiameter(result, wettedDiameters);
    if (!analysis.modelsWithoutWettedDiameter.empty()) {
        std::string names;
        for (const auto& name : analysis.modelsWithoutWettedDiameter) {
            names += (names.empty() ? "" : ", ") + name;
        }
        analysis.findings.push_back(
            {Severity::Note, "wetted-diameter-unknown",
             "The catalogue gives no wetted diameter for " + names +
                 ": the application profile is not drawn and the runoff along the machine "
                 "leaves those outlets out."});
    }
    if (analysis.depths &&
        std::abs(analysis.depths->distanceWeightedMeanMm - analysis.depths->volumeOverAreaMm) >
            0.01 * analysis.depths->volumeOverAreaMm) {
        analysis.findings.push_back(
            {Severity::Note, "depth-per-revolution", DepthBalance::explanation(*analysis.depths, text)});
    }
    analyseRunoff(result, wettedDiameters, text, analysis);
    analyseProfile(result, wettedDiameters, analysis);
    return analysis;
}

}  // namespace caudalis::design
