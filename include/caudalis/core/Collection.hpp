#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "caudalis/core/Basic.hpp"
#include "caudalis/core/Variant.hpp"

namespace caudalis {

class Collection;
/// Collections are shared by reference: charts and callers hold the same object.
using CollectionRef = std::shared_ptr<Collection>;

/// An ordered list of Variants indexed from 1, with optional unique text keys (compared
/// without regard to case). A duplicate key raises 457, a missing key 5, a bad index 9.
class Collection {
public:
    static CollectionRef create();

    void Add(const Variant& item, const std::optional<std::string>& key = std::nullopt);
    Variant Item(Long index) const;
    Variant Item(const std::string& key) const;
    void Remove(Long index);
    void Remove(const std::string& key);
    Long Count() const noexcept { return static_cast<Long>(entries_.size()); }
    bool Contains(const std::string& key) const;

    /// Typed access for collections of objects (13 when an item is something else).
    template <class T>
    std::shared_ptr<T> objectAt(Long index) const {
        return Item(index).toObject<T>();
    }

    /// A number that identifies the collection's current contents: it changes with every Add
    /// and Remove, and no other collection state ever had it (a copy has the contents and the
    /// number of its original). Lets readers keep what they derive from a collection.
    std::uint64_t stamp() const noexcept { return stamp_; }

    auto begin() const noexcept { return items_.begin(); }
    auto end() const noexcept { return items_.end(); }

private:
    std::size_t positionOf(const std::string& key) const;
    void reindex();

    std::vector<Variant> items_;
    std::vector<std::optional<std::string>> entries_;
    std::unordered_map<std::string, std::size_t> keyed_;
    std::uint64_t stamp_ = newStamp();

    static std::uint64_t newStamp() noexcept;
};

}  // namespace caudalis
