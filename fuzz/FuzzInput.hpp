#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace caudalis::fuzz {

/// The fuzzer's bytes as text.
inline std::string textOf(const std::uint8_t* data, std::size_t size) {
    return std::string(reinterpret_cast<const char*>(data), size);
}

/// The text cut at every `separator` byte (an input with none is one piece).
inline std::vector<std::string> piecesOf(const std::string& text, char separator) {
    std::vector<std::string> pieces(1);
    for (const char c : text) {
        if (c == separator) {
            pieces.emplace_back();
        } else {
            pieces.back() += c;
        }
    }
    return pieces;
}

/// Stops the run (libFuzzer reports it as a crash with the input) when a property fails.
inline void require(bool property) {
    if (!property) {
        __builtin_trap();
    }
}

}  // namespace caudalis::fuzz
