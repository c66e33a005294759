#pragma once

#include <memory>
#include <string>
#include <vector>

#include "caudalis/core/Collection.hpp"
#include "caudalis/design/DesignDescription.hpp"

namespace caudalis {
class Aspersor;
}

namespace caudalis::design {

/// Why an outlet got its nozzle, or none.
enum class ChoiceReason {
    /// The closest flow within the tolerance among the nozzles rated for the acting pressure.
    WithinTolerance,
    /// No nozzle was within the tolerance; the closest rated one was fitted (`NearestSize`).
    NearestSize,
    /// Nozzles are rated for the pressure, but none is within the tolerance: left empty.
    NoneWithinTolerance,
    /// Every nozzle rated for the pressure gives more than the outlet needs, beyond the
    /// tolerance: the outlet is plugged, as designers do near the centre.
    BelowSmallestNozzle,
    /// No nozzle of the package is rated for the acting pressure: left empty.
    NoneRatedForPressure,
    /// The package has no nozzles for this outlet: left empty.
    NoPackage,
};

/// What the package gives one outlet.
struct NozzleChoice {
    std::shared_ptr<Aspersor> nozzle;
    ChoiceReason reason = ChoiceReason::NoPackage;
};

/// The nozzles one section of a machine may get (one model as a rule), grouped by their rated
/// pressure range so that a choice visits only the groups whose range holds the acting
/// pressure, without copying the nozzles. A nozzle is rated for a pressure p when
/// pmin <= p and it is not `isHighPressure(p)`.
class NozzleSet {
public:
    NozzleSet() = default;
    /// `label` names the set in reasons and findings ("Aquarion LDN-360 Spray").
    explicit NozzleSet(std::string label);
    /// The nozzles of a collection, in its order.
    static NozzleSet of(const CollectionRef& nozzles, std::string label);
    /// One set per model (brand and model name) of the collection, in order of first appearance.
    static std::vector<NozzleSet> byModel(const CollectionRef& nozzles);

    void add(const std::shared_ptr<Aspersor>& nozzle);
    const std::string& label() const noexcept { return label_; }
    long count() const noexcept { return count_; }
    bool empty() const noexcept { return count_ == 0; }
    /// The largest `qmax` of the set: how much water its biggest nozzle gives.
    double largestFlow() const noexcept { return largestFlow_; }
    /// Whether any nozzle is rated for `pressure`.
    bool hasRatedFor(double pressure) const;
    /// The nozzle for `flow` at `pressure`: among the nozzles rated for the pressure, the
    /// closest flow within `tolerance` (`AspersoresStatic::getBestMatch`); else none when even
    /// the smallest rated nozzle gives too much, and otherwise, as `policy` says, none or the
    /// closest rated one.
    NozzleChoice choose(double pressure, double flow, double tolerance, NoFitPolicy policy) const;

private:
    struct RangeGroup {
        double pmin = 0;
        double pmax = 0;
        CollectionRef nozzles;
        bool holds(double pressure) const;
    };
    std::shared_ptr<Aspersor> nearestRated(double pressure, double flow) const;
    double smallestRatedFlow(double pressure) const;
    /// Calls `visit(nozzle)` for every nozzle rated for `pressure`.
    template <class Visit>
    void forEachRated(double pressure, Visit visit) const {
        for (const auto& group : groups_) {
            if (group.holds(pressure)) {
                for (Long i = 1; i <= group.nozzles->Count(); ++i) {
                    visit(group.nozzles->objectAt<Aspersor>(i));
                }
            }
        }
    }

    std::string label_;
    std::vector<RangeGroup> groups_;
    long count_ = 0;
    double largestFlow_ = 0;
};

}  // namespace caudalis::design
