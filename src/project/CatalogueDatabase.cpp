#include "caudalis/project/CatalogueDatabase.hpp"

#include <algorithm>

#include "caudalis/catalogue/Aspersor.hpp"
#include "caudalis/catalogue/AspersoresStatic.hpp"
#include "caudalis/core/Error.hpp"
#include "caudalis/core/Errors.hpp"
#include "caudalis/core/Statics.hpp"
#include "caudalis/design/InMemoryNozzleSource.hpp"
#include "caudalis/project/ServiceError.hpp"

namespace caudalis::project {

namespace {

template <class Record>
std::vector<Record> recordsOf(const CollectionRef& collection) {
    std::vector<Record> records;
    for (const auto& item : *collection) {
        records.push_back(item.toRecord<Record>());
    }
    return records;
}

/// The names joined with ", ", or "none".
template <class Record>
std::string namesOf(const std::vector<Record>& records) {
    std::string names;
    for (const auto& record : records) {
        names += (names.empty() ? "" : ", ") + record.nome;
    }
    return names.empty() ? "none" : names;
}

CollectionRef ofBrand(const CollectionRef& nozzles, const std::string& brand) {
    auto chosen = Collection::create();
    for (Long i = 1; i <= nozzles->Count(); ++i) {
        const auto nozzle = nozzles->objectAt<Aspersor>(i);
        if (nozzle->marca().nome == brand) {
            chosen->Add(Variant(nozzle));
        }
    }
    return chosen;
}

}  // namespace

CatalogueDatabase::CatalogueDatabase(std::string path) : file_(std::move(path), DatabaseKind::Catalogue) {}

template <class Read>
auto CatalogueDatabase::reading(Read read) const {
    file_.requireUsable();
    try {
        return read(*Statics::application()->Aspersores(), file_.connectionString());
    } catch (const Error& error) {
        if (error.number() == errorNumber(AspersorException::MissingAsperorDataException)) {
            throw InputError("catalogue database " + file_.path() +
                             " holds a nozzle with a blank name or a value <= 0");
        }
        throw InputError("cannot read catalogue database " + file_.path() + ": " + error.description());
    }
}

std::vector<marca> CatalogueDatabase::brands() const {
    return reading([](const AspersoresStatic& catalogue, const std::string& connection) {
        return recordsOf<marca>(catalogue.MarcasAll(connection));
    });
}

std::vector<marca> CatalogueDatabase::brandsOn(Connection& connection) {
    return recordsOf<marca>(Statics::application()->Aspersores()->MarcasAllOn(connection));
}

std::vector<modelo> CatalogueDatabase::modelsOn(Connection& connection) {
    return recordsOf<modelo>(Statics::application()->Aspersores()->ModelosAllOn(connection));
}

std::vector<modelo> CatalogueDatabase::models() const {
    return reading([](const AspersoresStatic& catalogue, const std::string& connection) {
        return recordsOf<modelo>(catalogue.ModelosAll(connection));
    });
}

void CatalogueDatabase::requireBrand(const std::vector<marca>& brands, const std::string& brand) const {
    if (std::none_of(brands.begin(), brands.end(), [&](const marca& known) { return known.nome == brand; })) {
        throw InputError("unknown brand \"" + brand + "\" in catalogue " + file_.path() +
                         " (brands: " + namesOf(brands) + ")");
    }
}

void CatalogueDatabase::requireModel(const std::vector<modelo>& models, const std::string& model,
                                     const std::optional<std::string>& brand) const {
    const bool known = std::any_of(models.begin(), models.end(), [&](const modelo& m) {
        return m.nome == model && (!brand || m.marca.nome == *brand);
    });
    if (!known) {
        throw InputError("unknown model \"" + model + "\"" + (brand ? " of brand \"" + *brand + "\"" : "") +
                         " in catalogue " + file_.path());
    }
}

CollectionRef CatalogueDatabase::nozzles(const design::NozzleSelection& selection) const {
    if (selection.brand) {
        requireBrand(brands(), *selection.brand);
    }
    if (selection.model) {
        requireModel(models(), *selection.model, selection.brand);
    }
    auto found = reading([&](const AspersoresStatic& catalogue, const std::string& connection) {
        if (selection.model) {
            return catalogue.find_by_modelo(connection, *selection.model);
        }
        if (selection.brand) {
            return catalogue.find_by_marca(connection, *selection.brand);
        }
        return catalogue.find(connection);
    });
    if (selection.model && selection.brand) {
        found = ofBrand(found, *selection.brand);
    }
    if (found->Count() == 0 && !selection.brand && !selection.model) {
        throw InputError("catalogue database " + file_.path() + " holds no nozzles");
    }
    design::requireSomeNozzles(found, selection);
    return found;
}

}  // namespace caudalis::project
