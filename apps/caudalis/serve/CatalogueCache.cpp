#include "CatalogueCache.hpp"

#include <chrono>
#include <map>
#include <mutex>
#include <tuple>

#include "caudalis/project/CatalogueDatabaseNozzleSource.hpp"

namespace caudalis::web {

namespace {

using Clock = std::chrono::steady_clock;

template <class Value>
struct Kept {
    Value value;
    Clock::time_point until;
};

/// What a catalogue gave, by database and by the brand and model asked for.
struct Store {
    std::mutex lock;
    std::map<std::tuple<std::string, std::string, std::string>, Kept<CollectionRef>> nozzles;
    std::map<std::string, Kept<std::map<Long, double>>> wettedDiameters;
};

Store& store() {
    static Store kept;
    return kept;
}

/// The kept answer for `key`, or the one `read` gives (kept when it gives one).
template <class Map, class Key, class Read>
auto keptOr(Map& map, const Key& key, Read read) {
    auto& kept = store();
    {
        const std::lock_guard guard(kept.lock);
        const auto found = map.find(key);
        if (found != map.end() && Clock::now() < found->second.until) {
            return found->second.value;
        }
    }
    auto value = read();
    const std::lock_guard guard(kept.lock);
    map[key] = {value, Clock::now() + std::chrono::seconds(CatalogueCache::keptSeconds)};
    return value;
}

class CachedNozzleSource : public design::NozzleSource {
public:
    explicit CachedNozzleSource(std::string path) : path_(path), database_(std::move(path)) {}

    CollectionRef nozzles(const design::NozzleSelection& selection) override {
        const auto key = std::make_tuple(path_, selection.brand ? "=" + *selection.brand : std::string(),
                                         selection.model ? "=" + *selection.model : std::string());
        return keptOr(store().nozzles, key, [&] { return database_.nozzles(selection); });
    }

    std::map<Long, double> wettedDiameters() override {
        return keptOr(store().wettedDiameters, path_, [&] { return database_.wettedDiameters(); });
    }

private:
    std::string path_;
    project::CatalogueDatabaseNozzleSource database_;
};

}  // namespace

std::unique_ptr<design::NozzleSource> CatalogueCache::source(const std::string& path) {
    return std::make_unique<CachedNozzleSource>(path);
}

void CatalogueCache::forget() {
    auto& kept = store();
    const std::lock_guard guard(kept.lock);
    kept.nozzles.clear();
    kept.wettedDiameters.clear();
}

}  // namespace caudalis::web
