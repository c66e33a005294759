#include "caudalis/design/NozzleFlowIndex.hpp"

#include <algorithm>
#include <cmath>
#include <limits>

#include "caudalis/catalogue/Aspersor.hpp"

namespace caudalis::design {

namespace {

/// How far the indexed flows are widened on either side: many orders of magnitude more than
/// the few units in the last place by which a worked-out flow can stray.
constexpr double margin = 1e-9;

double widenedDown(double value) {
    return value - std::abs(value) * margin;
}

double widenedUp(double value) {
    return value + std::abs(value) * margin;
}

/// `count` + 1 pressures from `pmin` to `pmax`, evenly spaced on a logarithmic scale, never
/// decreasing, the ends exact.
std::vector<double> bracketEnds(double pmin, double pmax, std::size_t count) {
    std::vector<double> ends(count + 1, pmin);
    for (std::size_t j = 1; j < count; ++j) {
        const double step = static_cast<double>(j) / static_cast<double>(count);
        ends[j] = std::clamp(pmin * std::pow(pmax / pmin, step), ends[j - 1], pmax);
    }
    ends[count] = pmax;
    return ends;
}

/// The nozzle's flow at `pressure` when it is a normal number; NaN when it is not or fails.
double normalFlowAt(const Aspersor& nozzle, double pressure) {
    try {
        const double flow = nozzle.calculate(pressure);
        return std::isnormal(flow) ? flow : std::numeric_limits<double>::quiet_NaN();
    } catch (...) {
        return std::numeric_limits<double>::quiet_NaN();
    }
}

}  // namespace

NozzleFlowIndex::NozzleFlowIndex(const std::vector<std::shared_ptr<Aspersor>>& nozzles, double pmin,
                                 double pmax)
    : nozzles_(nozzles) {
    usable_ = buildBrackets(pmin, pmax);
    if (!usable_) {
        brackets_.clear();
    }
}

bool NozzleFlowIndex::buildBrackets(double pmin, double pmax) {
    if (nozzles_.empty() || nozzles_.size() > std::numeric_limits<std::uint32_t>::max() || !(pmin > 0) ||
        !(pmin <= pmax) || !std::isfinite(pmax)) {
        return false;
    }
    pressures_ = bracketEnds(pmin, pmax, brackets);
    std::vector<double> lower(nozzles_.size());
    for (std::size_t i = 0; i < nozzles_.size(); ++i) {
        lower[i] = normalFlowAt(*nozzles_[i], pressures_[0]);
    }
    brackets_.resize(brackets);
    for (std::size_t j = 0; j < brackets; ++j) {
        Bracket& bracket = brackets_[j];
        bracket.byLowFlow.reserve(nozzles_.size());
        for (std::size_t i = 0; i < nozzles_.size(); ++i) {
            const double upper = normalFlowAt(*nozzles_[i], pressures_[j + 1]);
            if (std::isnan(lower[i]) || std::isnan(upper)) {
                return false;
            }
            const Entry entry{widenedDown(std::min(lower[i], upper)), widenedUp(std::max(lower[i], upper)),
                              static_cast<std::uint32_t>(i)};
            bracket.spread = std::max(bracket.spread, widenedUp(entry.highFlow / entry.lowFlow));
            bracket.byLowFlow.push_back(entry);
            lower[i] = upper;
        }
        std::sort(bracket.byLowFlow.begin(), bracket.byLowFlow.end(),
                  [](const Entry& x, const Entry& y) { return x.lowFlow < y.lowFlow; });
    }
    return true;
}

bool NozzleFlowIndex::covers(double pressure) const {
    return usable_ && pressure >= pressures_.front() && pressure <= pressures_.back();
}

bool NozzleFlowIndex::answers(double pressure, double flow, double tolerance) const {
    return covers(pressure) && std::isnormal(flow) && flow > 0 && std::isfinite(tolerance) &&
           std::isfinite((1.0 - tolerance) * flow) && std::isfinite((tolerance + 1.0) * flow);
}

const NozzleFlowIndex::Bracket& NozzleFlowIndex::bracketFor(double pressure) const {
    const auto above = std::upper_bound(pressures_.begin() + 1, pressures_.end() - 1, pressure);
    return brackets_[static_cast<std::size_t>(above - pressures_.begin()) - 1];
}

template <class Visit>
void NozzleFlowIndex::forEachNear(double pressure, double low, double high, Visit&& visit) const {
    const Bracket& bracket = bracketFor(pressure);
    // A nozzle whose high flow reaches `low` has a low flow of at least `low` / spread.
    const double lowestLowFlow =
        low > 0 ? widenedDown(low / bracket.spread) : -std::numeric_limits<double>::infinity();
    auto entry = std::lower_bound(bracket.byLowFlow.begin(), bracket.byLowFlow.end(), lowestLowFlow,
                                  [](const Entry& e, double value) { return e.lowFlow < value; });
    for (; entry != bracket.byLowFlow.end() && entry->lowFlow <= high; ++entry) {
        if (entry->highFlow >= low) {
            visit(*entry);
        }
    }
}

std::shared_ptr<Aspersor> NozzleFlowIndex::bestMatch(double pressure, double flow, double tolerance) const {
    std::shared_ptr<Aspersor> best;
    std::uint32_t bestPosition = 0;
    double bestDeviation = tolerance;
    forEachNear(pressure, (1.0 - tolerance) * flow, (tolerance + 1.0) * flow, [&](const Entry& entry) {
        const Aspersor& nozzle = *nozzles_[entry.position];
        if (!nozzle.flowWithin(pressure, flow, tolerance)) {
            return;
        }
        const double deviation = nozzle.variacaoCaudal(pressure, flow);
        // The last in collection order wins among equal deviations, as in a scan that keeps
        // every candidate whose deviation is at most the best so far.
        const bool better =
            deviation < bestDeviation || (deviation == bestDeviation && entry.position >= bestPosition);
        if (better && deviation <= tolerance) {
            best = nozzles_[entry.position];
            bestPosition = entry.position;
            bestDeviation = deviation;
        }
    });
    return best;
}

double NozzleFlowIndex::smallestFlow(double pressure) const {
    double smallest = std::numeric_limits<double>::infinity();
    for (const Entry& entry : bracketFor(pressure).byLowFlow) {
        if (entry.lowFlow > smallest) {
            break;
        }
        smallest = std::min(smallest, nozzles_[entry.position]->calculate(pressure));
    }
    return smallest;
}

}  // namespace caudalis::design
