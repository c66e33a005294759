#include "caudalis/core/Collection.hpp"

#include <algorithm>
#include <atomic>
#include <cctype>

namespace caudalis {
namespace {

std::string foldCase(const std::string& key) {
    std::string folded = key;
    std::transform(folded.begin(), folded.end(), folded.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return folded;
}

}  // namespace

std::uint64_t Collection::newStamp() noexcept {
    static std::atomic<std::uint64_t> last{0};
    return last.fetch_add(1, std::memory_order_relaxed) + 1;
}

CollectionRef Collection::create() {
    return std::make_shared<Collection>();
}

void Collection::Add(const Variant& item, const std::optional<std::string>& key) {
    if (key) {
        const std::string folded = foldCase(*key);
        if (keyed_.contains(folded)) {
            raiseError(RuntimeError::KeyAlreadyAssociated);
        }
        keyed_.emplace(folded, items_.size());
    }
    items_.push_back(item);
    entries_.push_back(key);
    stamp_ = newStamp();
}

Variant Collection::Item(Long index) const {
    if (index < 1 || index > Count()) {
        raiseError(RuntimeError::SubscriptOutOfRange);
    }
    return items_[static_cast<std::size_t>(index - 1)];
}

Variant Collection::Item(const std::string& key) const {
    return items_[positionOf(key)];
}

void Collection::Remove(Long index) {
    if (index < 1 || index > Count()) {
        raiseError(RuntimeError::SubscriptOutOfRange);
    }
    const auto position = static_cast<std::ptrdiff_t>(index - 1);
    items_.erase(items_.begin() + position);
    entries_.erase(entries_.begin() + position);
    reindex();
    stamp_ = newStamp();
}

void Collection::Remove(const std::string& key) {
    Remove(static_cast<Long>(positionOf(key)) + 1);
}

bool Collection::Contains(const std::string& key) const {
    return keyed_.contains(foldCase(key));
}

std::size_t Collection::positionOf(const std::string& key) const {
    const auto found = keyed_.find(foldCase(key));
    if (found == keyed_.end()) {
        raiseError(RuntimeError::InvalidProcedureCall);
    }
    return found->second;
}

void Collection::reindex() {
    keyed_.clear();
    for (std::size_t i = 0; i < entries_.size(); ++i) {
        if (entries_[i]) {
            keyed_.emplace(foldCase(*entries_[i]), i);
        }
    }
}

}  // namespace caudalis
