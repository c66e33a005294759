#include "NozzleLawTable.hpp"

#include "caudalis/catalogue/Aspersor.hpp"

namespace caudalis {

const std::vector<NozzleLawTable::Law>& NozzleLawTable::lawsOf(const Collection& collection) {
    if (stamp_ != collection.stamp()) {
        laws_.clear();
        for (const Variant& element : collection) {
            laws_.push_back(lawOf(element));
        }
        stamp_ = collection.stamp();
    }
    return laws_;
}

NozzleLawTable::Law NozzleLawTable::lawOf(const Variant& element) {
    const Aspersor* sprinkler = element.objectIf<Aspersor>();
    if (sprinkler == nullptr || !sprinkler->flowA_ || !sprinkler->flowB_) {
        return Law{};
    }
    return Law{*sprinkler->flowA_, *sprinkler->flowB_, true};
}

}  // namespace caudalis
