#include "NozzleLawTable.hpp"

#include "caudalis/catalogue/Aspersor.hpp"

namespace caudalis {

const std::vector<NozzleLawTable::Law>& NozzleLawTable::lawsOf(const Collection& collection) {
    if (byCollection_.size() >= keptCollections && !byCollection_.contains(&collection)) {
        byCollection_.clear();
    }
    Laws& known = byCollection_[&collection];
    if (known.stamp != collection.stamp()) {
        known.laws.clear();
        for (const Variant& element : collection) {
            known.laws.push_back(lawOf(element));
        }
        known.stamp = collection.stamp();
    }
    return known.laws;
}

NozzleLawTable::Law NozzleLawTable::lawOf(const Variant& element) {
    const Aspersor* sprinkler = element.objectIf<Aspersor>();
    if (sprinkler == nullptr || !sprinkler->flowA_ || !sprinkler->flowB_) {
        return Law{};
    }
    return Law{*sprinkler->flowA_, *sprinkler->flowB_, true};
}

}  // namespace caudalis
