#pragma once

#include <memory>

#include "caudalis/core/Records.hpp"

namespace caudalis {

/// Makes, tests, prints and parses outlet addresses: span and outlet number, or -1, -1 for the
/// end gun. Text form "span-outlet" (span 3, outlet 12 is "3-12"). Stateless.
class CoordenadasSaidas {
public:
    /// The library-wide instance.
    static std::shared_ptr<CoordenadasSaidas> shared();

    /// Both fields non-zero (the end gun's -1, -1 is valid).
    bool isValid(const CoordenadasSaida& self) const;
    /// The end gun's address, -1, -1.
    CoordenadasSaida newEndGunCoordenadas() const;
    /// The address as given; no range check.
    CoordenadasSaida newTramoCoordenadas(Integer tramo, Integer saida) const;
    /// Both fields -1.
    bool isAtEndGun(const CoordenadasSaida& self) const;
    /// Span number, "-", outlet number, in plain decimal.
    String ToString(const CoordenadasSaida& self) const;
    /// Splits at every "-" and reads the first and the last part as Integers (parts between are
    /// ignored). Raises 13 when either is not a number (the end gun's text "-1--1" included)
    /// and 6 when it is outside the Integer range.
    CoordenadasSaida Parse(const String& serialized) const;
};

}  // namespace caudalis
