#include "CatalogueImport.hpp"

#include <unistd.h>

#include <algorithm>
#include <filesystem>

#include "CatalogueDatabase.hpp"
#include "CliErrors.hpp"
#include "DatabaseFile.hpp"
#include "InterruptCleanup.hpp"
#include "ProgressBar.hpp"
#include "caudalis/catalogue/AspersoresStatic.hpp"
#include "caudalis/core/Error.hpp"
#include "caudalis/core/Statics.hpp"
#include "caudalis/db/Connection.hpp"
#include "caudalis/design/WettedDiameters.hpp"

namespace caudalis::cli {

namespace {

/// The brands and models of the catalogue being imported into, looked up by name.
class KnownNames {
public:
    explicit KnownNames(const CatalogueDatabase& catalogue) : catalogue_(catalogue) { reload(); }

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
        brands_ = catalogue_.brands();
        models_ = catalogue_.models();
    }

private:
    const CatalogueDatabase& catalogue_;
    std::vector<marca> brands_;
    std::vector<modelo> models_;
};

/// The catalogue's tables with their generated keys, in the order their rows may be deleted.
const std::vector<std::pair<std::string, std::string>>& keyedTables() {
    static const std::vector<std::pair<std::string, std::string>> tables{
        {"Boquillas", "ID_Boquillas"}, {"Modelos", "id_modelo"}, {"marca", "id_marca"}};
    return tables;
}

/// The highest key of each catalogue table, in the order of `keyedTables`.
std::vector<long> highestKeys(const DatabaseFile& catalogue) {
    std::vector<long> keys;
    for (const auto& [table, key] : keyedTables()) {
        keys.push_back(
            catalogue.wholeNumbers("SELECT coalesce(max(" + key + "), 0) AS k FROM " + table, "k").front());
    }
    return keys;
}

/// Deletes the rows whose keys are above the given highest keys.
void deleteRowsAbove(const DatabaseFile& catalogue, const std::vector<long>& keys) {
    Connection connection(catalogue.connectionString());
    connection.Open();
    connection.BeginTrans();
    for (std::size_t i = 0; i < keys.size(); ++i) {
        const auto& [table, key] = keyedTables()[i];
        connection.Execute("DELETE FROM " + table + " WHERE " + key + " > " + std::to_string(keys[i]));
    }
    connection.CommitTrans();
}

std::shared_ptr<Aspersor> nozzleOf(const CatalogueRow& row, const modelo& model) {
    return Statics::application()->Aspersores()->newAspersor(row.nozzle, row.a, row.b, row.pmin, row.pmax,
                                                             row.qmin, row.qmax, model);
}

/// Stores the wetted diameters the rows give, the last one given for a model winning.
void storeWettedDiameters(const std::string& connection, const std::string& cataloguePath,
                          const KnownNames& known, const std::vector<CatalogueRow>& rows) {
    Connection catalogue(connection);
    catalogue.Open();
    for (const auto& row : rows) {
        if (!row.wettedDiameterM) {
            continue;
        }
        if (!design::WettedDiameters::available(catalogue)) {
            throw InputError("catalogue database " + cataloguePath +
                             " has no table for wetted diameters: load data/schema/catalogue.sql into it "
                             "again (it adds the table and keeps every row)");
        }
        design::WettedDiameters::store(catalogue, known.modelOf(row).id, *row.wettedDiameterM);
    }
}

}  // namespace

CatalogueImport::CatalogueImport(std::string cataloguePath, std::ostream& progress, bool showProgress)
    : cataloguePath_(std::move(cataloguePath)), progress_(progress), showProgress_(showProgress) {}

ImportSummary CatalogueImport::importInto(const std::string& copyPath,
                                          const std::vector<CatalogueRow>& rows) const {
    const CatalogueDatabase copy(copyPath);
    const auto connection = copy.file().connectionString();
    const auto catalogue = Statics::application()->Aspersores();
    KnownNames known(copy);
    ImportSummary summary;
    ProgressBar bar(progress_, static_cast<long>(rows.size()), showProgress_, "importing");
    for (const auto& row : rows) {
        const auto model = known.modelOf(row);
        try {
            catalogue->save(connection, *nozzleOf(row, model));
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
    storeWettedDiameters(connection, cataloguePath_, known, rows);
    return summary;
}

ImportSummary CatalogueImport::run(const std::vector<CatalogueRow>& rows) const {
    const DatabaseFile catalogue(cataloguePath_, DatabaseKind::Catalogue);
    catalogue.requireUsable();
    return catalogue.onServer() ? importOnServer(rows) : importIntoFileCopy(rows);
}

ImportSummary CatalogueImport::importOnServer(const std::vector<CatalogueRow>& rows) const {
    const DatabaseFile catalogue(cataloguePath_, DatabaseKind::Catalogue);
    const auto before = highestKeys(catalogue);
    try {
        return importInto(cataloguePath_, rows);
    } catch (...) {
        deleteRowsAbove(catalogue, before);
        throw;
    }
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

}  // namespace caudalis::cli
