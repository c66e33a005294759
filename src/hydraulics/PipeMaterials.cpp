#include "caudalis/hydraulics/PipeMaterials.hpp"

#include "caudalis/core/LazyInstance.hpp"

namespace caudalis {

std::shared_ptr<PipeMaterials> PipeMaterials::shared() {
    static LazyInstance<PipeMaterials> instance;
    return instance.get();
}

PipeMaterial PipeMaterials::NullPipeMaterial() const {
    return PipeMaterial{};
}

bool PipeMaterials::Equals(const PipeMaterial& self, const Variant& other) const {
    return other.holdsRecord<PipeMaterial>() && other.toRecord<PipeMaterial>().id == self.id;
}

}  // namespace caudalis
