#pragma once

#include <string>

#include "caudalis/report/ReportDocument.hpp"

namespace caudalis::design {

/// Renders a `ReportDocument` as one self-contained HTML page: the style sheet, the data of
/// every plot and the Chart.js script are inside the file, so it opens offline and loads
/// nothing from the network. Printed (or saved as PDF) it has numbered pages ("Page 3 of 7"
/// at the foot of each page), table headers repeated on every page and plots kept whole.
class HtmlReport {
public:
    static std::string render(const ReportDocument& document);
    /// Writes the page to `path`, replacing the file. Raises `std::runtime_error` naming the
    /// file when it cannot be written.
    static void writeFile(const std::string& path, const ReportDocument& document);

private:
    static std::string head(const ReportDocument& document);
    static std::string body(const ReportDocument& document, std::string& plotScripts);
};

}  // namespace caudalis::design
