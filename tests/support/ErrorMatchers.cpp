#include "ErrorMatchers.hpp"

namespace caudalis::testing {

std::int32_t raisedNumber(const std::function<void()>& action) {
    try {
        action();
    } catch (const Error& error) {
        return error.number();
    }
    return 0;
}

}  // namespace caudalis::testing
