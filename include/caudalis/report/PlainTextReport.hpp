#pragma once

#include <string>

#include "caudalis/report/ReportDocument.hpp"

namespace caudalis::design {

/// Renders a `ReportDocument` as plain text for a terminal or a text file: the title and its
/// lines, each section's heading underlined, paragraphs wrapped at `width` characters, tables in
/// aligned columns (numeric columns to the right, label-value tables as two columns). Plots have
/// no text form and are left out; their data are in the tables.
class PlainTextReport {
public:
    static std::string render(const ReportDocument& document, std::size_t width = 100);

    /// The text of one table, every line ending in "\n".
    static std::string table(const ReportTable& table);
    /// A paragraph wrapped at `width` characters (words longer than that stay whole).
    static std::string wrap(const std::string& text, std::size_t width);
};

}  // namespace caudalis::design
