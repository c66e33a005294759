#include "caudalis/machine/CoordenadasSaidas.hpp"

#include <string>

#include "caudalis/core/Arrays.hpp"
#include "caudalis/core/LazyInstance.hpp"

namespace caudalis {
namespace {

constexpr char separator = '-';
constexpr Integer endGunNumber = -1;

// Every part between separators, empty ones included; an empty text is one empty part.
BoundedArray<String> splitParts(const String& text) {
    BoundedArray<String> parts;
    const auto arrays = Arrays::shared();
    std::string::size_type start = 0;
    for (;;) {
        const auto found = text.find(separator, start);
        if (found == std::string::npos) {
            arrays->Push(parts, text.substr(start));
            return parts;
        }
        arrays->Push(parts, text.substr(start, found - start));
        start = found + 1;
    }
}

Integer partToInteger(const std::optional<String>& part) {
    return Variant(part.value_or(String())).toInteger();
}

}  // namespace

std::shared_ptr<CoordenadasSaidas> CoordenadasSaidas::shared() {
    static LazyInstance<CoordenadasSaidas> instance;
    return instance.get();
}

bool CoordenadasSaidas::isValid(const CoordenadasSaida& self) const {
    return self.saida != 0 && self.numeroTramo != 0;
}

CoordenadasSaida CoordenadasSaidas::newEndGunCoordenadas() const {
    return newTramoCoordenadas(endGunNumber, endGunNumber);
}

CoordenadasSaida CoordenadasSaidas::newTramoCoordenadas(Integer tramo, Integer saida) const {
    return CoordenadasSaida{tramo, Long{saida}};
}

bool CoordenadasSaidas::isAtEndGun(const CoordenadasSaida& self) const {
    return self.numeroTramo == endGunNumber && self.saida == endGunNumber;
}

String CoordenadasSaidas::ToString(const CoordenadasSaida& self) const {
    return std::to_string(self.numeroTramo) + separator + std::to_string(self.saida);
}

CoordenadasSaida CoordenadasSaidas::Parse(const String& serialized) const {
    const BoundedArray<String> parts = splitParts(serialized);
    const auto arrays = Arrays::shared();
    const Integer numeroTramo = partToInteger(arrays->First(parts));
    const Integer saida = partToInteger(arrays->Last(parts));
    return newTramoCoordenadas(numeroTramo, saida);
}

}  // namespace caudalis
