#pragma once

#include "caudalis/design/NozzleSource.hpp"

namespace caudalis::design {

/// Nozzles held in memory (made with `AspersoresStatic::newAspersor`), filtered by the brand
/// and model names of the selection.
class InMemoryNozzleSource : public NozzleSource {
public:
    explicit InMemoryNozzleSource(CollectionRef nozzles, std::map<Long, double> wettedDiameters = {});
    CollectionRef nozzles(const NozzleSelection& selection) override;
    std::map<Long, double> wettedDiameters() override { return wettedDiameters_; }

private:
    CollectionRef all_;
    std::map<Long, double> wettedDiameters_;
};

/// Raises `DesignError` (`InvalidInput`) naming the selection when `nozzles` is empty.
void requireSomeNozzles(const CollectionRef& nozzles, const NozzleSelection& selection);

}  // namespace caudalis::design
