#pragma once

#include <memory>

#include "caudalis/core/Variant.hpp"

namespace caudalis {

/// Raises numbered errors on behalf of the library's own raise sites.
class Exceptions {
public:
    /// The library-wide instance used by the library's raise sites.
    static std::shared_ptr<Exceptions> shared();

    /// Raises the number held by `exception` (a number or a text holding one; 13 otherwise)
    /// with the number only: the source is the library and the description the standard text.
    [[noreturn]] void throw_(const Variant& exception);
};

}  // namespace caudalis
