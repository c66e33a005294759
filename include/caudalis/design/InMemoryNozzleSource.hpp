#pragma once

#include "caudalis/design/NozzleSource.hpp"

namespace caudalis::design {

/// Nozzles held in memory (made with `AspersoresStatic::newAspersor`), filtered by the brand
/// and model names of the selection.
class InMemoryNozzleSource : public NozzleSource {
public:
    explicit InMemoryNozzleSource(CollectionRef nozzles);
    CollectionRef nozzles(const NozzleSelection& selection) override;

private:
    CollectionRef all_;
};

/// Raises `DesignError` (`InvalidInput`) naming the selection when `nozzles` is empty.
void requireSomeNozzles(const CollectionRef& nozzles, const NozzleSelection& selection);

}  // namespace caudalis::design
