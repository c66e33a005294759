#include "ReferenceFile.hpp"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace caudalis::testing {
namespace {

std::string keyOf(const std::string& series, long index) {
    return series + " " + std::to_string(index);
}

std::filesystem::path referenceFolder() {
    return std::filesystem::path(CAUDALIS_SOURCE_DIR) / "tests" / "reference" / "data";
}

}  // namespace

ReferenceFile::ReferenceFile(const std::string& name) {
    std::ifstream in(referenceFolder() / name);
    std::string line;
    while (std::getline(in, line)) {
        std::istringstream fields(line);
        std::string series;
        long index = 0;
        std::string third;
        std::string fourth;
        fields >> series >> index >> third;
        if (fields >> fourth) {
            values_[keyOf(series, index)].push_back({third, std::stoull(fourth, nullptr, 16)});
        } else {
            digests_[keyOf(series, index)] = std::stoull(third, nullptr, 16);
        }
    }
}

std::uint64_t ReferenceFile::digest(const std::string& series, long index) const {
    const auto found = digests_.find(keyOf(series, index));
    return found == digests_.end() ? 0 : found->second;
}

std::vector<OutputRecord::Entry> ReferenceFile::values(const std::string& series, long index) const {
    const auto found = values_.find(keyOf(series, index));
    return found == values_.end() ? std::vector<OutputRecord::Entry>{} : found->second;
}

std::string ReferenceFile::writeFolder() {
    const char* folder = std::getenv("CAUDALIS_WRITE_REFERENCES");
    return folder == nullptr ? std::string() : std::string(folder);
}

ReferenceWriter::ReferenceWriter(std::string folder, std::string name)
    : path_((std::filesystem::path(folder) / name).string()) {}

ReferenceWriter::~ReferenceWriter() {
    std::ofstream out(path_);
    out << digests_ << values_;
}

void ReferenceWriter::add(const std::string& series, long index, const OutputRecord& record,
                          bool withValues) {
    digests_ += keyOf(series, index) + " " + hex64(record.digest()) + "\n";
    if (withValues) {
        for (const auto& entry : record.entries()) {
            values_ += keyOf(series, index) + " " + entry.label + " " + hex64(entry.bits) + "\n";
        }
    }
}

std::string compareWithReference(const ReferenceFile& reference, const std::string& series, long index,
                                 const OutputRecord& record) {
    const std::uint64_t stored = reference.digest(series, index);
    if (stored == record.digest()) {
        return {};
    }
    std::string message =
        keyOf(series, index) + ": digest " + hex64(record.digest()) + ", stored " + hex64(stored);
    const auto values = reference.values(series, index);
    const auto& computed = record.entries();
    for (std::size_t i = 0; i < values.size() && i < computed.size(); ++i) {
        if (values[i].label != computed[i].label || values[i].bits != computed[i].bits) {
            return message + "; first difference at " + computed[i].label + ": " + hex64(computed[i].bits) +
                   ", stored " + values[i].label + " " + hex64(values[i].bits);
        }
    }
    return message;
}

}  // namespace caudalis::testing
