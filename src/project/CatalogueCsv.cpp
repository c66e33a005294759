#include "caudalis/project/CatalogueCsv.hpp"

#include <sstream>

#include "caudalis/fieldtests/ReadingsText.hpp"
#include "caudalis/project/PlainText.hpp"
#include "caudalis/project/ServiceError.hpp"
#include "caudalis/project/StorableText.hpp"
#include "caudalis/project/TextFile.hpp"

namespace caudalis::project {

namespace {

constexpr const char* columnNames[] = {"brand", "model", "nozzle", "a",    "b",
                                       "pmin",  "pmax",  "qmin",   "qmax", "wetted_diameter_m"};
constexpr std::size_t requiredColumns = 9;
constexpr std::size_t columnCount = std::size(columnNames);

std::string name(const std::string& field, const std::string& where, const char* column) {
    const auto text = withoutBlanksAround(field);
    if (text.empty()) {
        throw InputError(where + ": " + column + " must not be blank");
    }
    requireStorableText(text, where + ": " + column);
    return text;
}

double positive(const std::string& field, const std::string& where, const char* column) {
    const auto text = withoutBlanksAround(field);
    const auto value = numberIn(text);
    if (!value) {
        throw InputError(where + ": " + column + " must be a number (\"" + text + "\")");
    }
    if (*value <= 0) {
        throw InputError(where + ": " + column + " must be > 0");
    }
    return *value;
}

void requireOrdered(double low, double high, const std::string& where, const char* lowName,
                    const char* highName) {
    if (high < low) {
        throw InputError(where + ": " + highName + " must be >= " + lowName);
    }
}

}  // namespace

std::vector<std::string> CatalogueCsv::fields(const std::string& line) {
    bool unclosedQuote = false;
    return design::ReadingsTextTools::csvFields(line, unclosedQuote);
}

CatalogueRow CatalogueCsv::row(const std::vector<std::string>& fields, const std::string& where) {
    if (fields.size() != requiredColumns && fields.size() != columnCount) {
        throw InputError(where + ": " + std::to_string(fields.size()) + " fields, expected " +
                         std::to_string(requiredColumns) +
                         " (brand, model, nozzle, a, b, pmin, pmax, qmin, qmax) or " +
                         std::to_string(columnCount) + " (and wetted_diameter_m)");
    }
    CatalogueRow row;
    row.brand = name(fields[0], where, columnNames[0]);
    row.model = name(fields[1], where, columnNames[1]);
    row.nozzle = name(fields[2], where, columnNames[2]);
    double* numbers[] = {&row.a, &row.b, &row.pmin, &row.pmax, &row.qmin, &row.qmax};
    for (std::size_t i = 0; i < std::size(numbers); ++i) {
        *numbers[i] = positive(fields[i + 3], where, columnNames[i + 3]);
    }
    requireOrdered(row.pmin, row.pmax, where, "pmin", "pmax");
    requireOrdered(row.qmin, row.qmax, where, "qmin", "qmax");
    if (fields.size() == columnCount && !withoutBlanksAround(fields.back()).empty()) {
        row.wettedDiameterM = positive(fields.back(), where, columnNames[columnCount - 1]);
    }
    return row;
}

std::vector<CatalogueRow> CatalogueCsv::parse(const std::string& text, const std::string& source) {
    std::vector<CatalogueRow> rows;
    std::istringstream lines(text);
    std::string line;
    bool first = true;
    for (long number = 1; std::getline(lines, line); ++number) {
        if (withoutBlanksAround(line).empty()) {
            continue;
        }
        const auto split = fields(line);
        const bool header = first && withoutBlanksAround(split.front()) == columnNames[0];
        first = false;
        if (!header) {
            auto read = row(split, source + " line " + std::to_string(number));
            read.line = number;
            rows.push_back(read);
        }
    }
    if (rows.empty()) {
        throw InputError("catalogue CSV file " + source + " holds no nozzles");
    }
    return rows;
}

std::vector<CatalogueRow> CatalogueCsv::load(const std::string& path) {
    return parse(readTextFile(path, "catalogue CSV file"), path);
}

}  // namespace caudalis::project
