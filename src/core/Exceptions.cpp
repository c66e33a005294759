#include "caudalis/core/Exceptions.hpp"

#include "caudalis/core/LazyInstance.hpp"

namespace caudalis {

std::shared_ptr<Exceptions> Exceptions::shared() {
    static LazyInstance<Exceptions> instance;
    return instance.get();
}

void Exceptions::throw_(const Variant& exception) {
    raiseError(exception.toLong());
}

}  // namespace caudalis
