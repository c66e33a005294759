#include "caudalis/project/StorableText.hpp"

#include <algorithm>

#include <fmt/format.h>

#include "caudalis/project/ServiceError.hpp"

namespace caudalis::project {
namespace {

bool isControl(unsigned char c) {
    return c < 0x20 || c == 0x7F;
}

bool isRefused(char c) {
    return c == '?' || c == '\'' || isControl(static_cast<unsigned char>(c));
}

/// The text with control characters shown as \xNN, so that the message stays one line.
std::string shown(const std::string& text) {
    std::string result;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        result += isControl(byte) ? fmt::format("\\x{:02X}", byte) : std::string(1, c);
    }
    return result;
}

}  // namespace

void requireStorableText(const std::string& text, const std::string& what) {
    if (std::any_of(text.begin(), text.end(), isRefused)) {
        throw InputError(what + " \"" + shown(text) +
                         "\" may not contain ?, an apostrophe or a control character");
    }
}

}  // namespace caudalis::project
