#pragma once

#include <locale>

namespace caudalis::testing {

/// Makes the global C++ locale use `separator` as decimal point for the guard's lifetime.
class DecimalSeparatorGuard {
public:
    explicit DecimalSeparatorGuard(char separator);
    ~DecimalSeparatorGuard();
    DecimalSeparatorGuard(const DecimalSeparatorGuard&) = delete;
    DecimalSeparatorGuard& operator=(const DecimalSeparatorGuard&) = delete;

private:
    std::locale previous_;
};

}  // namespace caudalis::testing
