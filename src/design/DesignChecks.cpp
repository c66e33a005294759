#include "caudalis/design/DesignChecks.hpp"

#include <algorithm>
#include <string>

namespace caudalis::design {

void DesignChecks::checkEmptyOutlets(const DesignResult& result, std::vector<Finding>& findings) {
    const auto empty = result.summary.unfittedOutlets;
    if (empty > 0) {
        findings.push_back({Severity::Warning, "outlets-without-nozzle",
                            std::to_string(empty) + " outlets have no nozzle within the tolerance"});
    }
}

std::vector<Finding> DesignChecks::check(const DesignResult& result) {
    std::vector<Finding> findings;
    checkEmptyOutlets(result, findings);
    std::stable_sort(findings.begin(), findings.end(),
                     [](const Finding& a, const Finding& b) { return a.severity < b.severity; });
    return findings;
}

}  // namespace caudalis::design
