#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "caudalis/core/Collection.hpp"

namespace caudalis {
class Aspersor;
}

namespace caudalis::design {

/// The nozzles of one rated pressure range [pmin, pmax], indexed by their flows so that a
/// choice at a pressure of that range visits only the nozzles whose flow can be near the wanted
/// one, instead of working out the flow of every nozzle.
///
/// The range is cut into brackets of pressure; for each bracket the nozzles are sorted by their
/// flow at its lower end. A flow grows with the pressure, so at a pressure inside a bracket a
/// nozzle gives between its flows at the two ends. Those bounds only narrow the candidates,
/// with a margin far wider than the rounding of a flow: the candidates are then judged by the
/// nozzles' own `flowWithin` and `variacaoCaudal`, so that every answer is the one a scan of
/// the whole collection gives.
class NozzleFlowIndex {
public:
    /// How many brackets of pressure the rated range is cut into.
    static constexpr std::size_t brackets = 32;

    /// Indexes `nozzles` (in their order), all rated for [pmin, pmax].
    NozzleFlowIndex(const std::vector<std::shared_ptr<Aspersor>>& nozzles, double pmin, double pmax);

    /// Whether `smallestFlow` can answer at `pressure`: within the rated range, and every
    /// nozzle's flow over the range a normal number (else its flow could fail or lose its
    /// precision, and a full scan answers).
    bool covers(double pressure) const;
    /// Whether `bestMatch` can answer for these arguments. It cannot where it does not
    /// cover the pressure, for a flow that is not a positive normal number, or for a tolerance
    /// whose flow range is not finite.
    bool answers(double pressure, double flow, double tolerance) const;
    /// What `AspersoresStatic::getBestMatch` gives for the indexed nozzles: among those whose
    /// flow at `pressure` lies within `tolerance` of `flow`, the smallest deviation, the last
    /// in collection order among equal ones; empty when none fits.
    std::shared_ptr<Aspersor> bestMatch(double pressure, double flow, double tolerance) const;
    /// The smallest flow of the indexed nozzles at `pressure` (infinity when there are none).
    double smallestFlow(double pressure) const;

private:
    /// One nozzle in a bracket: its flows at the bracket's ends, widened by the margin.
    struct Entry {
        double lowFlow;
        double highFlow;
        std::uint32_t position;
    };
    struct Bracket {
        std::vector<Entry> byLowFlow;
        /// The largest ratio of a nozzle's high to low flow, widened by the margin.
        double spread = 1;
    };

    bool buildBrackets(double pmin, double pmax);
    const Bracket& bracketFor(double pressure) const;
    /// Calls `visit(entry)` for every entry of the bracket of `pressure` whose flows may
    /// reach into [low, high].
    template <class Visit>
    void forEachNear(double pressure, double low, double high, Visit&& visit) const;

    std::vector<std::shared_ptr<Aspersor>> nozzles_;
    std::vector<double> pressures_;
    std::vector<Bracket> brackets_;
    bool usable_ = false;
};

}  // namespace caudalis::design
