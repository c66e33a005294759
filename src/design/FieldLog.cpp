#include "FieldLog.hpp"

namespace caudalis::design {

namespace {

thread_local FieldLog* current = nullptr;

/// `path` with every array index left out: "spans[2].length_m" is "spans[].length_m".
std::string withoutIndices(const std::string& path) {
    std::string plain;
    plain.reserve(path.size());
    bool inIndex = false;
    for (const char c : path) {
        if (c == '[') {
            inIndex = true;
            plain += c;
        } else if (c == ']') {
            inIndex = false;
            plain += c;
        } else if (!inIndex) {
            plain += c;
        }
    }
    return plain;
}

}  // namespace

FieldLog::FieldLog() : outer_(current) {
    current = this;
}

FieldLog::~FieldLog() {
    current = outer_;
}

void FieldLog::note(const std::string& path) {
    if (current != nullptr) {
        current->paths_.insert(withoutIndices(path));
    }
}

}  // namespace caudalis::design
