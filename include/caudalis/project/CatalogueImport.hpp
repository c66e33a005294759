#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "caudalis/core/Records.hpp"
#include "caudalis/project/CatalogueCsv.hpp"

namespace caudalis::project {

/// What an import added.
struct ImportSummary {
    long nozzles = 0;
    long newBrands = 0;
    long newModels = 0;
};

/// Imports checked CSV rows into a catalogue database, all or nothing: every row is stored in
/// one transaction. A catalogue file is imported into a copy, which replaces the original only
/// when every row is in (so a reader never waits on the import); on a PostgreSQL server the
/// transaction runs on the catalogue itself. Brands and models that the catalogue (or an
/// earlier row) already has are reused by their keys, never inserted again.
class CatalogueImport {
public:
    CatalogueImport(std::string cataloguePath, std::ostream& progress, bool showProgress);
    /// Raises `InputError` naming the row that failed; the catalogue is then as before.
    ImportSummary run(const std::vector<CatalogueRow>& rows) const;

private:
    /// Saves every row into the database at `copyPath`.
    ImportSummary importInto(const std::string& copyPath, const std::vector<CatalogueRow>& rows) const;
    ImportSummary importIntoFileCopy(const std::vector<CatalogueRow>& rows) const;
    ImportSummary importOnServer(const std::vector<CatalogueRow>& rows) const;

    std::string cataloguePath_;
    std::ostream& progress_;
    bool showProgress_;
};

}  // namespace caudalis::project
