#include "caudalis/report/PlainTextReport.hpp"

#include <algorithm>
#include <sstream>

namespace caudalis::design {

namespace {

/// Characters as a terminal counts them: UTF-8 continuation bytes take no column.
std::size_t columnsOf(const std::string& text) {
    return static_cast<std::size_t>(std::count_if(
        text.begin(), text.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; }));
}

std::string padded(const std::string& text, std::size_t width, bool right) {
    const std::string fill(width > columnsOf(text) ? width - columnsOf(text) : 0, ' ');
    return right ? fill + text : text + fill;
}

std::vector<std::size_t> columnWidths(const ReportTable& table) {
    std::vector<std::size_t> widths(table.headers.size());
    const auto widen = [&widths](const std::vector<std::string>& cells) {
        widths.resize(std::max(widths.size(), cells.size()));
        for (std::size_t i = 0; i < cells.size(); ++i) {
            widths[i] = std::max(widths[i], columnsOf(cells[i]));
        }
    };
    widen(table.headers);
    for (const auto& row : table.rows) {
        widen(row);
    }
    return widths;
}

std::string line(const ReportTable& table, const std::vector<std::string>& cells,
                 const std::vector<std::size_t>& widths) {
    std::string text;
    for (std::size_t i = 0; i < cells.size(); ++i) {
        const bool right = i < table.numericColumns.size() && table.numericColumns[i];
        const bool last = i + 1 == cells.size();
        text += (i > 0 ? "  " : "") + (last && !right ? cells[i] : padded(cells[i], widths[i], right));
    }
    return text + "\n";
}

}  // namespace

std::string PlainTextReport::wrap(const std::string& text, std::size_t width) {
    std::istringstream words(text);
    std::string word;
    std::string result;
    std::size_t used = 0;
    while (words >> word) {
        if (used > 0 && used + 1 + columnsOf(word) > width) {
            result += "\n";
            used = 0;
        }
        result += (used > 0 ? " " : "") + word;
        used += (used > 0 ? 1 : 0) + columnsOf(word);
    }
    return result + "\n";
}

std::string PlainTextReport::table(const ReportTable& table) {
    const auto widths = columnWidths(table);
    std::string text = table.caption.empty() ? "" : table.caption + "\n";
    if (table.headers.empty()) {
        for (const auto& row : table.rows) {
            text += "  " + line(table, row, widths);
        }
        return text;
    }
    text += line(table, table.headers, widths);
    for (const auto& row : table.rows) {
        text += line(table, row, widths);
    }
    return text;
}

std::string PlainTextReport::render(const ReportDocument& document, std::size_t width) {
    std::string text = document.title + "\n";
    for (const auto& subtitle : document.subtitle) {
        text += subtitle + "\n";
    }
    for (const auto& section : document.sections) {
        text += "\n" + section.heading + "\n" + std::string(columnsOf(section.heading), '-') + "\n";
        for (const auto& block : section.blocks) {
            if (const auto* paragraph = std::get_if<ReportParagraph>(&block)) {
                text += wrap(paragraph->text, width);
            } else if (const auto* tableBlock = std::get_if<ReportTable>(&block)) {
                text += PlainTextReport::table(*tableBlock);
            }
        }
    }
    return text;
}

}  // namespace caudalis::design
