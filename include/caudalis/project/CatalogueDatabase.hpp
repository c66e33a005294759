#pragma once

#include <optional>
#include <string>
#include <vector>

#include "caudalis/core/Collection.hpp"
#include "caudalis/core/Records.hpp"
#include "caudalis/design/DesignDescription.hpp"
#include "caudalis/project/DatabaseFile.hpp"

namespace caudalis {
class Connection;
}

namespace caudalis::project {

/// A catalogue database file read through `AspersoresStatic`: its brands, its models and the
/// nozzles a selection allows. Every read first checks that the file is a catalogue database;
/// every failure raises `InputError` naming the file (or the unknown brand or model).
class CatalogueDatabase {
public:
    explicit CatalogueDatabase(std::string path);

    const DatabaseFile& file() const noexcept { return file_; }

    std::vector<marca> brands() const;
    /// The brands and the models as `connection` reads them, inside the transaction it may have
    /// begun; library errors pass unchanged.
    static std::vector<marca> brandsOn(Connection& connection);
    static std::vector<modelo> modelsOn(Connection& connection);
    /// Every model, with its brand.
    std::vector<modelo> models() const;
    /// The nozzles of the selection's brand and/or model (every nozzle when it names neither),
    /// in catalogue order. Raises for a brand or model the catalogue does not have, and when
    /// no nozzle is left.
    CollectionRef nozzles(const design::NozzleSelection& selection) const;

    /// Raises `InputError` unless `brand` is one of `brands`.
    void requireBrand(const std::vector<marca>& brands, const std::string& brand) const;
    /// Raises `InputError` unless a model named `model` exists (of `brand`, when given).
    void requireModel(const std::vector<modelo>& models, const std::string& model,
                      const std::optional<std::string>& brand) const;

private:
    /// Runs a library read, turning its errors into `InputError` naming the file.
    template <class Read>
    auto reading(Read read) const;

    DatabaseFile file_;
};

}  // namespace caudalis::project
