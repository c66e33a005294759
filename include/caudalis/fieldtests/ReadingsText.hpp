#pragma once

#include <optional>
#include <string>
#include <vector>

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
