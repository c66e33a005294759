#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "OutputRecord.hpp"

namespace caudalis::testing {

/// Stored reference outputs: one digest per case ("name index digest" lines) and the full
/// values of a few cases ("name index label bits" lines), in tests/reference/data.
class ReferenceFile {
public:
    /// Reads the file `name` of the reference data folder.
    explicit ReferenceFile(const std::string& name);

    /// The stored digest of case `index` of `series`; 0 when there is none.
    std::uint64_t digest(const std::string& series, long index) const;
    /// The stored values of case `index` of `series`, in order (empty when none were kept).
    std::vector<OutputRecord::Entry> values(const std::string& series, long index) const;

    /// When the environment names a folder in CAUDALIS_WRITE_REFERENCES, the references are
    /// written there instead of compared (to refresh them after a deliberate change).
    static std::string writeFolder();

private:
    std::map<std::string, std::uint64_t> digests_;
    std::map<std::string, std::vector<OutputRecord::Entry>> values_;
};

/// Collects references and writes them to `folder`/`name`.
class ReferenceWriter {
public:
    ReferenceWriter(std::string folder, std::string name);
    ~ReferenceWriter();
    ReferenceWriter(const ReferenceWriter&) = delete;
    ReferenceWriter& operator=(const ReferenceWriter&) = delete;

    void add(const std::string& series, long index, const OutputRecord& record, bool withValues);

private:
    std::string path_;
    std::string digests_;
    std::string values_;
};

/// Compares a computed record with the stored one; on a difference the message names the
/// first value that changed when the stored file holds the case's values.
std::string compareWithReference(const ReferenceFile& reference, const std::string& series, long index,
                                 const OutputRecord& record);

}  // namespace caudalis::testing
