#pragma once

#include <memory>

#include "caudalis/catalogue/Aspersor.hpp"

namespace caudalis {

/// Library-internal access to a sprinkler's initialisers, for the code that builds sprinklers
/// from stored rows (catalogue and chart readers). This header is not installed, so hosts
/// cannot change a sprinkler once it is initialised.
class AspersorLoader {
public:
    /// A new sprinkler initialised with the given data; its `id` stays 0. Raises
    /// `AspersorException::MissingAsperorDataException` when the data are incomplete.
    static std::shared_ptr<Aspersor> create(const String& boquilla, double a, double b, double pmin,
                                            double pmax, double qmin, double qmax, const modelo& aModelo);
    /// Validates and stores the data of `target` (every field but `id`); nothing is stored when
    /// it raises `AspersorException::MissingAsperorDataException`.
    static void initAspersor(Aspersor& target, const String& boquilla, double a, double b, double pmin,
                             double pmax, double qmin, double qmax, const modelo& aModelo);
    /// Stores the catalogue key of a sprinkler just created from a stored row.
    static void setId(Aspersor& target, Long id) noexcept;
};

}  // namespace caudalis
