#pragma once

#include <cstdint>
#include <memory>
#include <stdexcept>
#include <vector>

#include "caudalis/catalogue/Aspersor.hpp"
#include "caudalis/core/Collection.hpp"
#include "caudalis/core/Records.hpp"
#include "caudalis/hydraulics/CalculosStrategy.hpp"

namespace caudalis::testing {

/// How a reference machine's strategy chooses nozzles.
enum class ChoiceRule {
    OneNozzle,     ///< the same nozzle on every outlet
    BestAtActing,  ///< the best match at the outlet's acting pressure, in every pass
    BestAtIdeal,   ///< the best match at the outlet's ideal pressure
    ByPosition     ///< a nozzle picked by the outlet's position in the pass; some left empty
};

/// A regulator to fit: span number, setting and whether it is installed.
struct ReferenceRegulator {
    Integer tramo = 0;
    Double pression = 0;
    bool installed = true;
};

/// One randomly drawn machine with everything a design run needs.
struct ReferenceMachine {
    pivot machine;
    std::vector<std::shared_ptr<Aspersor>> nozzles;
    CollectionRef catalogue;
    ChoiceRule rule = ChoiceRule::OneNozzle;
    Double tolerance = 0.1;
    std::vector<ReferenceRegulator> regulators;
    bool hasDrop = false;
    Drop drop;
    bool dropInstalled = false;
    Double boost = 0;
    Double revolutionHours = 20;
    PivotSample sample;
};

/// The machine number `index` of the fixed random series.
ReferenceMachine referenceMachine(std::uint64_t index);

/// Raised by the reference strategy when a computation goes on past its pass limit.
class PassLimitReached : public std::runtime_error {
public:
    PassLimitReached() : std::runtime_error("pass limit reached") {}
};

/// The strategy of a reference machine. Counts its calls and stops a computation that has not
/// settled after `passLimit` passes.
class ReferenceStrategy : public CalculosStrategy {
public:
    ReferenceStrategy(const ReferenceMachine& reference, long outletsPerPass);

    void beforeCompute(PivotWrapper& pivot_wrapper) override;
    std::shared_ptr<Aspersor> aspersorFor(const saida& aSaida) override;
    std::shared_ptr<CartaAspersores> carta() override { return chart_; }

    long calls() const noexcept { return calls_; }

    static constexpr long passLimit = 60;

private:
    const ReferenceMachine& reference_;
    long outletsPerPass_;
    long calls_ = 0;
    std::shared_ptr<CartaAspersores> chart_;
};

}  // namespace caudalis::testing
