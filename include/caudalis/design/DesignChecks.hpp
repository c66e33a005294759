#pragma once

#include <vector>

#include "caudalis/design/DesignResult.hpp"
#include "caudalis/design/Finding.hpp"

namespace caudalis::design {

/// Looks over a computed design the way a dealer checks a package before signing it, and
/// lists what it finds, errors first, then warnings, then notes.
class DesignChecks {
public:
    static std::vector<Finding> check(const DesignResult& result);

private:
    static void checkEmptyOutlets(const DesignResult& result, std::vector<Finding>& findings);
};

}  // namespace caudalis::design
