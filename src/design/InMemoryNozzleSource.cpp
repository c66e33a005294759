#include "caudalis/design/InMemoryNozzleSource.hpp"

#include "caudalis/catalogue/Aspersor.hpp"
#include "caudalis/design/DesignError.hpp"

namespace caudalis::design {

namespace {

bool allowed(const Aspersor& nozzle, const NozzleSelection& selection) {
    return (!selection.brand || nozzle.marca().nome == *selection.brand) &&
           (!selection.model || nozzle.modelo().nome == *selection.model);
}

}  // namespace

void requireSomeNozzles(const CollectionRef& nozzles, const NozzleSelection& selection) {
    if (nozzles && nozzles->Count() > 0) {
        return;
    }
    std::string what = "the catalogue holds no nozzles";
    if (selection.brand) {
        what += " of brand \"" + *selection.brand + "\"";
    }
    if (selection.model) {
        what += std::string(selection.brand ? " and" : "") + " of model \"" + *selection.model + "\"";
    }
    throw DesignError::invalid(what + " (nozzle_selection)");
}

InMemoryNozzleSource::InMemoryNozzleSource(CollectionRef nozzles) : all_(std::move(nozzles)) {}

CollectionRef InMemoryNozzleSource::nozzles(const NozzleSelection& selection) {
    auto chosen = Collection::create();
    for (Long i = 1; all_ && i <= all_->Count(); ++i) {
        const auto nozzle = all_->objectAt<Aspersor>(i);
        if (allowed(*nozzle, selection)) {
            chosen->Add(Variant(nozzle));
        }
    }
    requireSomeNozzles(chosen, selection);
    return chosen;
}

}  // namespace caudalis::design
