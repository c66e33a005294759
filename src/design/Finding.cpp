#include "caudalis/design/Finding.hpp"

namespace caudalis::design {

std::string severityName(Severity severity) {
    switch (severity) {
        case Severity::Error:
            return "error";
        case Severity::Warning:
            return "warning";
        case Severity::Note:
            break;
    }
    return "note";
}

}  // namespace caudalis::design
