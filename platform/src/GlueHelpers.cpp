// The few conversions that operations need beyond argument and result types: collection
// indexes and keys, optional arguments, the enumerator that For Each walks.

#include <vector>

#include "AdoBackend.hpp"
#include "CaudalisRecords.hpp"

namespace caudalis::com {
namespace {

bool isOmitted(const std::optional<caudalis::Variant>& value) {
    return !value || value->isEmpty();
}

/// IEnumVARIANT over a snapshot of a collection's items.
class Enumerator final : public IEnumVARIANT {
public:
    explicit Enumerator(std::vector<caudalis::Variant> items, std::size_t position = 0)
        : items_(std::move(items)), position_(position) {
        objectCreated();
    }
    ~Enumerator() { objectDestroyed(); }
    Enumerator(const Enumerator&) = delete;
    Enumerator& operator=(const Enumerator&) = delete;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** object) override {
        if (IsEqualIID(riid, IID_IUnknown) || IsEqualIID(riid, IID_IEnumVARIANT)) {
            *object = static_cast<IEnumVARIANT*>(this);
            AddRef();
            return S_OK;
        }
        *object = nullptr;
        return E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return references_.add(); }
    ULONG STDMETHODCALLTYPE Release() override { return references_.release(this); }
    HRESULT STDMETHODCALLTYPE Next(ULONG wanted, VARIANT* items, ULONG* fetched) override {
        ULONG given = 0;
        const HRESULT hr = guard([&] {
            for (; given < wanted && position_ < items_.size(); ++given, ++position_) {
                toCom(items_[position_], items[given]);
            }
        });
        if (fetched) {
            *fetched = given;
        }
        return FAILED(hr) ? hr : (given == wanted ? S_OK : S_FALSE);
    }
    HRESULT STDMETHODCALLTYPE Skip(ULONG count) override {
        position_ = std::min<std::size_t>(items_.size(), position_ + count);
        return position_ < items_.size() ? S_OK : S_FALSE;
    }
    HRESULT STDMETHODCALLTYPE Reset() override {
        position_ = 0;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE Clone(IEnumVARIANT** copy) override {
        *copy = new Enumerator(items_, position_);
        return S_OK;
    }

private:
    std::vector<caudalis::Variant> items_;
    std::size_t position_;
    ReferenceCount references_;
};

}  // namespace

void toCom(const caudalis::Collection& l, IUnknown*& c) {
    c = new Enumerator(std::vector<caudalis::Variant>(l.begin(), l.end()));
}

void toCom(const ScriptFields& l, IUnknown*& c) {
    c = new Enumerator(l.all());
}

caudalis::Variant itemOf(const caudalis::Collection& collection, const caudalis::Variant& index) {
    if (index.isString()) {
        return collection.Item(index.toString());
    }
    return collection.Item(index.toLong());
}

void removeFrom(caudalis::Collection& collection, const caudalis::Variant& index) {
    if (index.isString()) {
        collection.Remove(index.toString());
    } else {
        collection.Remove(index.toLong());
    }
}

std::optional<std::string> keyOf(const std::optional<caudalis::Variant>& key) {
    if (isOmitted(key)) {
        return std::nullopt;
    }
    return key->toString();
}

void openWith(caudalis::Connection& connection, const std::optional<caudalis::Variant>& connectionString) {
    if (isOmitted(connectionString)) {
        connection.Open();
    } else {
        connection.Open(connectionString->toString());
    }
}

double averageOf(const caudalis::WaterDepths& depths,
                 const caudalis::BoundedArray<caudalis::WaterDepthSample>& list,
                 std::optional<caudalis::Variant>& limit) {
    if (isOmitted(limit)) {
        return depths.Average(list);
    }
    caudalis::Long used = limit->toLong();
    const double average = depths.Average(list, used);
    limit = caudalis::Variant(used);
    return average;
}

caudalis::compareWhat compareWhatOf(const std::optional<caudalis::Variant>& key) {
    return isOmitted(key) ? caudalis::compareWhat::depth : static_cast<caudalis::compareWhat>(key->toLong());
}

/// A connection of the host's own (an ADO connection, or any object of its shape) is driven
/// through late binding for the length of the call.
std::shared_ptr<caudalis::Connection> HostAdapter<caudalis::Connection>::adapt(IUnknown* object) {
    return std::make_shared<caudalis::Connection>(std::make_unique<AdoBackend>(LateBound::of(object)));
}

}  // namespace caudalis::com
