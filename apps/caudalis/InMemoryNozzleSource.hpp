#pragma once

#include "NozzleSource.hpp"

namespace caudalis::cli {

/// Nozzles held in memory (made with `AspersoresStatic::newAspersor`), filtered by the brand
/// and model names of the selection.
class InMemoryNozzleSource : public NozzleSource {
public:
    explicit InMemoryNozzleSource(CollectionRef nozzles);
    CollectionRef nozzles(const NozzleSelection& selection) override;

private:
    CollectionRef all_;
};

/// Raises `InputError` naming the selection when `nozzles` is empty.
void requireSomeNozzles(const CollectionRef& nozzles, const NozzleSelection& selection);

}  // namespace caudalis::cli
