#pragma once

#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "caudalis/core/Records.hpp"
#include "caudalis/design/Units.hpp"
#include "caudalis/project/CatalogueImport.hpp"

namespace caudalis::project {

/// The models of a catalogue, as listed: every model, or those of one brand.
struct ModelListing {
    std::vector<modelo> models;
};

/// A catalogue database as every host uses it: its brands, its models (of one brand, which
/// must exist), and the import of a CSV file of nozzles written in either unit system.
class CatalogueService {
public:
    explicit CatalogueService(std::string cataloguePath);

    std::vector<marca> brands() const;
    /// Every model, or the models of `brand`; raises `InputError` for a brand the catalogue
    /// does not have.
    ModelListing models(const std::optional<std::string>& brand) const;
    /// Adds the nozzles of the CSV file at `csvPath`, whose pressures, flows and coefficient
    /// are in `units`, all or none; a bar is drawn on `progress` when `showProgress`.
    ImportSummary importCsv(const std::string& csvPath, design::UnitSystem units, std::ostream& progress,
                            bool showProgress) const;

    /// A row written in `units`, in SI.
    static CatalogueRow inSI(CatalogueRow row, const design::Units& units);

private:
    std::string cataloguePath_;
};

}  // namespace caudalis::project
