#include <string_view>

#include "Bindings.hpp"
#include "Docstrings.hpp"

namespace caudalis::python {

const char* doc(std::string_view key, int overload) {
    for (const auto& entry : generated::docEntries) {
        if (key == entry.key && overload-- == 0) {
            return entry.text;
        }
    }
    return "";
}

}  // namespace caudalis::python
