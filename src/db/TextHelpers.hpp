#pragma once

#include <algorithm>
#include <cctype>
#include <string>
#include <string_view>

namespace caudalis::texthelpers {

/// The text with ASCII letters in lower case.
inline std::string lowerCase(std::string_view text) {
    std::string result(text);
    std::transform(result.begin(), result.end(), result.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return result;
}

/// The character with an ASCII capital letter made small.
inline char asciiLower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

/// Whether two texts are equal without regard to the case of ASCII letters.
inline bool equalsIgnoringCase(std::string_view first, std::string_view second) {
    return first.size() == second.size() &&
           std::equal(first.begin(), first.end(), second.begin(),
                      [](char a, char b) { return asciiLower(a) == asciiLower(b); });
}

/// The text between two `mark` characters.
inline std::string enclosed(std::string_view text, char mark) {
    std::string result(1, mark);
    result.append(text);
    result += mark;
    return result;
}

}  // namespace caudalis::texthelpers
