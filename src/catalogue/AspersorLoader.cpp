#include "AspersorLoader.hpp"

namespace caudalis {

std::shared_ptr<Aspersor> AspersorLoader::create(const String& boquilla, double a, double b, double pmin,
                                                 double pmax, double qmin, double qmax,
                                                 const modelo& aModelo) {
    auto aspersor = std::make_shared<Aspersor>();
    initAspersor(*aspersor, boquilla, a, b, pmin, pmax, qmin, qmax, aModelo);
    return aspersor;
}

void AspersorLoader::initAspersor(Aspersor& target, const String& boquilla, double a, double b, double pmin,
                                  double pmax, double qmin, double qmax, const modelo& aModelo) {
    target.initAspersor(boquilla, a, b, pmin, pmax, qmin, qmax, aModelo);
}

void AspersorLoader::setId(Aspersor& target, Long id) noexcept {
    target.setId(id);
}

}  // namespace caudalis
