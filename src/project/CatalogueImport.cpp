#include "caudalis/project/CatalogueImport.hpp"

#include <unistd.h>

#include <algorithm>
#include <filesystem>

#include "caudalis/catalogue/AspersoresStatic.hpp"
#include "caudalis/core/Error.hpp"
#include "caudalis/core/Statics.hpp"
#include "caudalis/db/Connection.hpp"
#include "caudalis/design/WettedDiameters.hpp"
#include "caudalis/project/CatalogueDatabase.hpp"
#include "caudalis/project/DatabaseFile.hpp"
#include "caudalis/project/InterruptCleanup.hpp"
#include "caudalis/project/ProgressBar.hpp"
#include "caudalis/project/ServiceError.hpp"

namespace caudalis::project {

namespace {

/// The brands and models of the catalogue being imported into, looked up by name, as the
/// import's own connection reads them (so with what it has stored so far).
class KnownNames {
public:
    explicit KnownNames(Connection& catalogue) : catalogue_(catalogue) { reload(); }

    /// The stored model of `row` (id > 0), or a new one (id 0) of its stored or new brand.
    modelo modelOf(const CatalogueRow& row) const {
        const auto model = std::find_if(models_.begin(), models_.end(), [&](const modelo& m) {
            return m.nome == row.model && m.marca.nome == row.brand;
        });
        if (model != models_.end()) {
            return *model;
        }
        const auto brand =
            std::find_if(brands_.begin(), brands_.end(), [&](const marca& b) { return b.nome == row.brand; });
        const marca owner = brand != brands_.end() ? *brand : marca{0, row.brand};
        return modelo{0, row.model, owner, owner.id};
    }

    void reload() {
        brands_ = CatalogueDatabase::brandsOn(catalogue_);
        models_ = CatalogueDatabase::modelsOn(catalogue_);
    }

private:
    Connection& catalogue_;
    std::vector<marca> brands_;
    std::vector<modelo> models_;
};

std::shared_ptr<Aspersor> nozzleOf(const CatalogueRow& row, const modelo& model) {
    return Statics::application()->Aspersores()->newAspersor(row.nozzle, row.a, row.b, row.pmin, row.pmax,
                                                             row.qmin, row.qmax, model);
}

/// Raises unless the catalogue can keep the wetted diameters that the rows give. Asked before
/// the import's transaction begins, since a failed statement ends a PostgreSQL transaction.
void requireDiameterTable(Connection& catalogue, const std::string& cataloguePath,
                          const std::vector<CatalogueRow>& rows) {
    const bool anyDiameter = std::any_of(
        rows.begin(), rows.end(), [](const CatalogueRow& row) { return row.wettedDiameterM.has_value(); });
    if (anyDiameter && !design::WettedDiameters::available(catalogue)) {
        throw InputError("catalogue database " + cataloguePath +
                         " has no table for wetted diameters: load data/schema/catalogue.sql into it "
                         "again (it adds the table and keeps every row)");
    }
}

/// Stores the wetted diameters the rows give, the last one given for a model winning.
void storeWettedDiameters(Connection& catalogue, const KnownNames& known,
                          const std::vector<CatalogueRow>& rows) {
    for (const auto& row : rows) {
        if (row.wettedDiameterM) {
            design::WettedDiameters::store(catalogue, known.modelOf(row).id, *row.wettedDiameterM);
        }
    }
}

}  // namespace

CatalogueImport::CatalogueImport(std::string cataloguePath, std::ostream& progress, bool showProgress)
    : cataloguePath_(std::move(cataloguePath)), progress_(progress), showProgress_(showProgress) {}

ImportSummary CatalogueImport::importInto(const std::string& copyPath,
                                          const std::vector<CatalogueRow>& rows) const {
    // One transaction for the whole import: whatever fails, or however the process ends, before
    // the commit, the catalogue keeps nothing of it.
    const CatalogueDatabase copy(copyPath);
    Connection connection(copy.file().connectionString());
    connection.Open();
    requireDiameterTable(connection, cataloguePath_, rows);
    connection.BeginTrans();
    const auto catalogue = Statics::application()->Aspersores();
    KnownNames known(connection);
    ImportSummary summary;
    ProgressBar bar(progress_, static_cast<long>(rows.size()), showProgress_, "importing");
    for (const auto& row : rows) {
        const auto model = known.modelOf(row);
        try {
            catalogue->saveOn(connection, *nozzleOf(row, model));
        } catch (const Error& error) {
            throw InputError("cannot import the nozzle of CSV line " + std::to_string(row.line) + " into " +
                             cataloguePath_ + ": " + error.description());
        }
        if (model.id <= 0) {
            summary.newModels += 1;
            summary.newBrands += model.marca.id <= 0 ? 1 : 0;
            known.reload();
        }
        summary.nozzles += 1;
        bar.advance();
    }
    storeWettedDiameters(connection, known, rows);
    connection.CommitTrans();
    connection.Close();
    return summary;
}

ImportSummary CatalogueImport::run(const std::vector<CatalogueRow>& rows) const {
    const DatabaseFile catalogue(cataloguePath_, DatabaseKind::Catalogue);
    catalogue.requireUsable();
    return catalogue.onServer() ? importOnServer(rows) : importIntoFileCopy(rows);
}

ImportSummary CatalogueImport::importOnServer(const std::vector<CatalogueRow>& rows) const {
    return importInto(cataloguePath_, rows);
}

ImportSummary CatalogueImport::importIntoFileCopy(const std::vector<CatalogueRow>& rows) const {
    const auto copyPath = cataloguePath_ + ".import-" + std::to_string(::getpid());
    const auto discardCopy = [&copyPath] {
        std::error_code ignored;
        std::filesystem::remove(copyPath, ignored);
        std::filesystem::remove(copyPath + "-journal", ignored);
    };
    const InterruptCleanup interrupted({copyPath, copyPath + "-journal"});
    try {
        std::filesystem::copy_file(cataloguePath_, copyPath,
                                   std::filesystem::copy_options::overwrite_existing);
        const auto summary = importInto(copyPath, rows);
        std::filesystem::rename(copyPath, cataloguePath_);
        return summary;
    } catch (const std::filesystem::filesystem_error& error) {
        discardCopy();
        throw InputError("cannot import into catalogue database " + cataloguePath_ + ": " +
                         error.code().message());
    } catch (...) {
        discardCopy();
        throw;
    }
}

}  // namespace caudalis::project
