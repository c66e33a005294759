#include "caudalis/design/DesignResult.hpp"

#include <algorithm>

namespace caudalis::design {

bool DesignResult::has(Severity severity) const {
    return std::any_of(findings.begin(), findings.end(),
                       [severity](const Finding& finding) { return finding.severity == severity; });
}

bool DesignResult::fails(bool strict) const {
    return has(Severity::Error) || (strict && has(Severity::Warning));
}

}  // namespace caudalis::design
