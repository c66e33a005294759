#pragma once

#include <optional>
#include <string>
#include <vector>

namespace caudalis::project {

/// One nozzle of a catalogue CSV file, checked.
struct CatalogueRow {
    long line = 0;
    std::string brand;
    std::string model;
    std::string nozzle;
    double a = 0;
    double b = 0;
    double pmin = 0;
    double pmax = 0;
    double qmin = 0;
    double qmax = 0;
    /// The model's wetted diameter (m), from the optional tenth column.
    std::optional<double> wettedDiameterM;
};

/// A catalogue CSV file: one nozzle a row, the columns brand, model, nozzle, a, b, pmin,
/// pmax, qmin, qmax (flow law q = a * p^b, pressures in kPa, flows in l/s), and optionally
/// wetted_diameter_m, the model's wetted diameter in metres (may be blank). Fields may be put
/// between double quotes (a doubled quote stands for one); an optional first row whose first
/// field is "brand" names the columns; blank lines are skipped. Every row is checked before
/// anything is imported; the first bad one raises `InputError` naming the file, line and column.
class CatalogueCsv {
public:
    static std::vector<CatalogueRow> load(const std::string& path);
    static std::vector<CatalogueRow> parse(const std::string& text, const std::string& source);

    /// The fields of one CSV line.
    static std::vector<std::string> fields(const std::string& line);

private:
    static CatalogueRow row(const std::vector<std::string>& fields, const std::string& where);
};

}  // namespace caudalis::project
