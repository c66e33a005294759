#pragma once

#include <set>
#include <string>

namespace caudalis::design {

/// While one is alive, every field a `JsonFields` of this thread looks for (present or not) is
/// noted in it by its path, array indices written "[]" ("spans[].length_m"): what the reader
/// knows of a document, for comparing with the document's published description.
class FieldLog {
public:
    FieldLog();
    ~FieldLog();
    FieldLog(const FieldLog&) = delete;
    FieldLog& operator=(const FieldLog&) = delete;

    /// Notes `path` in the log alive on this thread, if there is one.
    static void note(const std::string& path);
    const std::set<std::string>& paths() const noexcept { return paths_; }

private:
    std::set<std::string> paths_;
    FieldLog* outer_;
};

}  // namespace caudalis::design
