#include "caudalis/machine/IntegerArithmetic.hpp"

#include "caudalis/core/Variant.hpp"

namespace caudalis::integer {

Integer from(double value) {
    return Variant(value).toInteger();
}

Integer add(Integer a, double b) {
    return from(static_cast<double>(a) + b);
}

Integer sub(Integer a, double b) {
    return from(static_cast<double>(a) - b);
}

}  // namespace caudalis::integer
