#include "OutputRecord.hpp"

#include <bit>
#include <cstdio>

namespace caudalis::testing {
namespace {

constexpr std::uint64_t fnvPrime = 1099511628211ULL;

std::uint64_t foldByte(std::uint64_t hash, unsigned char byte) {
    return (hash ^ byte) * fnvPrime;
}

std::uint64_t foldWord(std::uint64_t hash, std::uint64_t word) {
    for (int shift = 0; shift < 64; shift += 8) {
        hash = foldByte(hash, static_cast<unsigned char>(word >> shift));
    }
    return hash;
}

std::string labelOf(const char* name, long first, long second) {
    std::string label = name;
    if (first >= 0) {
        label += '.' + std::to_string(first);
    }
    if (second >= 0) {
        label += '.' + std::to_string(second);
    }
    return label;
}

}  // namespace

void OutputRecord::number(const char* name, double value, long first, long second) {
    add(name, std::bit_cast<std::uint64_t>(value), first, second);
}

void OutputRecord::integer(const char* name, long long value, long first, long second) {
    add(name, static_cast<std::uint64_t>(value), first, second);
}

void OutputRecord::text(const char* name, const std::string& value, long first, long second) {
    add(name, textBits(value), first, second);
}

void OutputRecord::add(const char* name, std::uint64_t bits, long first, long second) {
    digest_ = foldWord(digest_, bits);
    if (keepEntries_) {
        entries_.push_back({labelOf(name, first, second), bits});
    }
}

std::uint64_t textBits(const std::string& value) {
    std::uint64_t hash = 14695981039346656037ULL;
    for (const char c : value) {
        hash = foldByte(hash, static_cast<unsigned char>(c));
    }
    return foldWord(hash, value.size());
}

std::string hex64(std::uint64_t value) {
    char buffer[17];
    std::snprintf(buffer, sizeof buffer, "%016llx", static_cast<unsigned long long>(value));
    return buffer;
}

}  // namespace caudalis::testing
