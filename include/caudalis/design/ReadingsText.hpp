#pragma once

#include <optional>
#include <string>
#include <vector>

#include "caudalis/core/BoundedArray.hpp"

namespace caudalis::design {

/// The text of a readings file and the name it is known by in messages (its path).
struct ReadingsText {
    std::string source;
    std::string text;
};

/// Helpers for the line-based text forms (readings, CSV): blanks, numbers, fields and lines.
class ReadingsTextTools {
public:
    /// The fields of one CSV row: separated by commas, a field may be double-quoted ("" for a
    /// quote inside). `unclosedQuote` tells whether a quoted field runs on to the end of the row.
    static std::vector<std::string> csvFields(const std::string& row, bool& unclosedQuote);
    /// The items as a 1-based array (unallocated when there are none).
    template <typename T>
    static BoundedArray<T> oneBased(const std::vector<T>& items) {
        BoundedArray<T> array;
        if (!items.empty()) {
            array.redim(1, static_cast<Long>(items.size()));
            for (Long i = 1; i <= array.count(); ++i) {
                array(i) = items[static_cast<std::size_t>(i - 1)];
            }
        }
        return array;
    }
    /// `text` without the blanks (spaces, tabs, carriage returns) around it.
    static std::string trimmed(const std::string& text);
    /// The finite number `text` is, written with "." as decimal point and nothing around it.
    static std::optional<double> number(const std::string& text);
    /// The lines of `text` (without their line breaks), numbered from 1 by position.
    template <typename Visit>
    static void eachLine(const std::string& text, Visit&& visit) {
        long number = 1;
        std::string::size_type start = 0;
        while (start < text.size()) {
            auto end = text.find('\n', start);
            if (end == std::string::npos) {
                end = text.size();
            }
            visit(text.substr(start, end - start), number++);
            start = end + 1;
        }
    }
};

}  // namespace caudalis::design
