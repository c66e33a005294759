#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace caudalis::testing {

/// The outputs of one computation, as their exact bit patterns, folded into a 64-bit digest.
/// When asked to, it also keeps every value with a label, so that a differing digest can be
/// traced to the first value that changed.
class OutputRecord {
public:
    struct Entry {
        std::string label;
        std::uint64_t bits = 0;
    };

    explicit OutputRecord(bool keepEntries = false) : keepEntries_(keepEntries) {}

    /// A label is a name and up to two positions (span and outlet, for instance).
    void number(const char* name, double value, long first = -1, long second = -1);
    void integer(const char* name, long long value, long first = -1, long second = -1);
    void text(const char* name, const std::string& value, long first = -1, long second = -1);

    std::uint64_t digest() const noexcept { return digest_; }
    const std::vector<Entry>& entries() const noexcept { return entries_; }

private:
    void add(const char* name, std::uint64_t bits, long first, long second);

    bool keepEntries_;
    std::uint64_t digest_ = 14695981039346656037ULL;
    std::vector<Entry> entries_;
};

/// 64-bit FNV-1a of the bytes of a text.
std::uint64_t textBits(const std::string& value);

/// A 64-bit value as 16 lower-case hexadecimal digits.
std::string hex64(std::uint64_t value);

}  // namespace caudalis::testing
