#include "caudalis/design/NozzleSet.hpp"

#include <algorithm>
#include <cmath>
#include <limits>

#include "caudalis/catalogue/Aspersor.hpp"
#include "caudalis/catalogue/AspersoresStatic.hpp"
#include "caudalis/core/Statics.hpp"

namespace caudalis::design {

namespace {

std::string modelLabel(const Aspersor& nozzle) {
    return nozzle.marca().nome + " " + nozzle.modelo().nome;
}

/// The flow's relative deviation from `flow`, or infinity when the nozzle cannot say.
double deviationOf(const Aspersor& nozzle, double pressure, double flow) {
    const double deviation = nozzle.variacaoCaudal(pressure, flow);
    return std::isfinite(deviation) ? deviation : std::numeric_limits<double>::infinity();
}

}  // namespace

NozzleSet::NozzleSet(std::string label) : label_(std::move(label)) {}

NozzleSet NozzleSet::of(const CollectionRef& nozzles, std::string label) {
    NozzleSet set(std::move(label));
    for (Long i = 1; nozzles && i <= nozzles->Count(); ++i) {
        set.add(nozzles->objectAt<Aspersor>(i));
    }
    return set;
}

std::vector<NozzleSet> NozzleSet::byModel(const CollectionRef& nozzles) {
    std::vector<NozzleSet> sets;
    for (Long i = 1; nozzles && i <= nozzles->Count(); ++i) {
        const auto nozzle = nozzles->objectAt<Aspersor>(i);
        const auto label = modelLabel(*nozzle);
        auto found =
            std::find_if(sets.begin(), sets.end(), [&](const NozzleSet& s) { return s.label() == label; });
        if (found == sets.end()) {
            sets.emplace_back(label);
            found = sets.end() - 1;
        }
        found->add(nozzle);
    }
    return sets;
}

bool NozzleSet::RangeGroup::holds(double pressure) const {
    // Every nozzle of the group shares pmin and pmax: the first answers for all.
    const auto first = nozzles->objectAt<Aspersor>(1);
    return pressure >= first->pmin() && !first->isHighPressure(pressure);
}

void NozzleSet::add(const std::shared_ptr<Aspersor>& nozzle) {
    auto group = std::find_if(groups_.begin(), groups_.end(), [&](const RangeGroup& g) {
        return g.pmin == nozzle->pmin() && g.pmax == nozzle->pmax();
    });
    if (group == groups_.end()) {
        groups_.push_back(RangeGroup{nozzle->pmin(), nozzle->pmax(), Collection::create()});
        group = groups_.end() - 1;
    }
    group->nozzles->Add(Variant(nozzle));
    ++count_;
    largestFlow_ = std::max(largestFlow_, nozzle->qmax());
}

bool NozzleSet::hasRatedFor(double pressure) const {
    return std::any_of(groups_.begin(), groups_.end(),
                       [&](const RangeGroup& g) { return g.holds(pressure); });
}

NozzleChoice NozzleSet::choose(double pressure, double flow, double tolerance, NoFitPolicy policy) const {
    if (empty()) {
        return {nullptr, ChoiceReason::NoPackage};
    }
    if (!hasRatedFor(pressure)) {
        return {nullptr, ChoiceReason::NoneRatedForPressure};
    }
    if (flow <= 0) {
        return {nullptr, ChoiceReason::NoneWithinTolerance};
    }
    const auto catalogue = Statics::application()->Aspersores();
    std::shared_ptr<Aspersor> best;
    double bound = tolerance;
    for (const auto& group : groups_) {
        if (!group.holds(pressure)) {
            continue;
        }
        const auto match = catalogue->getBestMatch(group.nozzles, pressure, flow, tolerance);
        if (match && deviationOf(*match, pressure, flow) <= bound) {
            best = match;
            bound = deviationOf(*match, pressure, flow);
        }
    }
    if (best) {
        return {best, ChoiceReason::WithinTolerance};
    }
    if (smallestRatedFlow(pressure) > flow) {
        return {nullptr, ChoiceReason::BelowSmallestNozzle};
    }
    if (policy == NoFitPolicy::NearestSize) {
        return {nearestRated(pressure, flow), ChoiceReason::NearestSize};
    }
    return {nullptr, ChoiceReason::NoneWithinTolerance};
}

double NozzleSet::smallestRatedFlow(double pressure) const {
    double smallest = std::numeric_limits<double>::infinity();
    forEachRated(pressure, [&](const std::shared_ptr<Aspersor>& nozzle) {
        smallest = std::min(smallest, nozzle->calculate(pressure));
    });
    return smallest;
}

std::shared_ptr<Aspersor> NozzleSet::nearestRated(double pressure, double flow) const {
    std::shared_ptr<Aspersor> nearest;
    double smallest = std::numeric_limits<double>::infinity();
    forEachRated(pressure, [&](const std::shared_ptr<Aspersor>& nozzle) {
        const double deviation = deviationOf(*nozzle, pressure, flow);
        if (deviation < smallest || !nearest) {
            nearest = nozzle;
            smallest = deviation;
        }
    });
    return nearest;
}

}  // namespace caudalis::design
