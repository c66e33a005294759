#include "JsonPosition.hpp"

#include <vector>

namespace caudalis::design {

namespace {

/// One open object or array on the way to the offset.
struct Level {
    bool array = false;
    std::size_t index = 0;
    std::string key;
};

/// The index just past the string that starts (with its quote) at `start`; its text in `text`.
std::size_t skipString(const std::string& json, std::size_t start, std::string& text) {
    text.clear();
    std::size_t i = start + 1;
    while (i < json.size() && json[i] != '"') {
        if (json[i] == '\\' && i + 1 < json.size()) {
            ++i;
        }
        text += json[i];
        ++i;
    }
    return i + 1;
}

std::string pathOf(const std::vector<Level>& levels) {
    std::string path;
    for (const auto& level : levels) {
        if (level.array) {
            path += '[';
            path += std::to_string(level.index);
            path += ']';
        } else if (!level.key.empty()) {
            if (!path.empty()) {
                path += '.';
            }
            path += level.key;
        }
    }
    return path;
}

}  // namespace

std::string jsonPathAt(const std::string& json, std::size_t offset) {
    std::vector<Level> levels;
    bool expectingKey = false;
    std::string text;
    for (std::size_t i = 0; i < json.size() && i < offset;) {
        const char c = json[i];
        if (c == '"') {
            i = skipString(json, i, text);
            if (expectingKey && !levels.empty()) {
                levels.back().key = text;
                expectingKey = false;
            }
            continue;
        }
        if (c == '{' || c == '[') {
            levels.push_back(Level{c == '[', 0, ""});
            expectingKey = c == '{';
        } else if ((c == '}' || c == ']') && !levels.empty()) {
            levels.pop_back();
        } else if (c == ',' && !levels.empty()) {
            if (levels.back().array) {
                ++levels.back().index;
            } else {
                expectingKey = true;
            }
        }
        ++i;
    }
    return pathOf(levels);
}

}  // namespace caudalis::design
