// Library-side stand-ins for objects of the host: a strategy, an applier or a comparator of the
// host's own class, a collection of the host's runtime.

#include "CaudalisRecords.hpp"
#include "LateBinding.hpp"
#include "Marshal.hpp"

namespace caudalis::com {
namespace {

/// A host interface pointer, released with the stand-in.
template <class I>
class Held {
public:
    Held(IUnknown* object) {
        if (FAILED(object->QueryInterface(InterfaceOf<I>::iid(), reinterpret_cast<void**>(&pointer_)))) {
            raiseError(RuntimeError::TypeMismatch,
                       "The object does not implement the interface this argument needs.");
        }
    }
    ~Held() { pointer_->Release(); }
    Held(const Held&) = delete;
    Held& operator=(const Held&) = delete;
    I* operator->() const noexcept { return pointer_; }

private:
    I* pointer_ = nullptr;
};

/// The host's server object for a library object handed to it by reference (a wrapper the host
/// made itself), or an empty reference when there is none.
template <class I, class T>
I* comFor(T& object) {
    I* result = nullptr;
    if (IUnknown* unknown = findWrapper(&object)) {
        unknown->QueryInterface(InterfaceOf<I>::iid(), reinterpret_cast<void**>(&result));
        unknown->Release();
    }
    return result;
}

/// Calls a host method that takes a record by reference; the record is released afterwards.
template <class C, class L, class F>
void withRecord(const L& value, F&& call) {
    C record;
    std::memset(static_cast<void*>(&record), 0, sizeof(C));
    toCom(value, record);
    try {
        call(&record);
    } catch (...) {
        clearCom(record);
        throw;
    }
    clearCom(record);
}

class HostStrategy final : public caudalis::CalculosStrategy, public HostObject {
public:
    explicit HostStrategy(IUnknown* object) : HostObject(object), host_(object) {}

    void setAvaillableAspersores(const CollectionRef& all_aspersores) override {
        IDispatch* collection = nullptr;
        toCom(all_aspersores, collection);
        const HRESULT hr = host_->setAvaillableAspersores(&collection);
        clearCom(collection);
        check(hr);
    }
    void beforeCompute(PivotWrapper& pivot_wrapper) override {
        notify(pivot_wrapper, &_CalculosStrategy::beforeCompute);
    }
    void afterCompute(PivotWrapper& pivot_wrapper) override {
        notify(pivot_wrapper, &_CalculosStrategy::afterCompute);
    }
    std::shared_ptr<Aspersor> aspersorFor(const saida& aSaida) override {
        _Aspersor* chosen = nullptr;
        withRecord<::saida>(aSaida, [&](::saida* record) { check(host_->aspersorFor(record, &chosen)); });
        const auto result = in<std::shared_ptr<Aspersor>>(chosen);
        clearCom(chosen);
        return result;
    }
    std::shared_ptr<CartaAspersores> carta() override {
        _CartaAspersores* chart = nullptr;
        check(host_->carta(&chart));
        const auto result = in<std::shared_ptr<CartaAspersores>>(chart);
        clearCom(chart);
        return result;
    }

private:
    void notify(PivotWrapper& pivot_wrapper,
                HRESULT (STDMETHODCALLTYPE _CalculosStrategy::*step)(_PivotWrapper**)) {
        _PivotWrapper* wrapper = comFor<_PivotWrapper>(pivot_wrapper);
        const HRESULT hr = ((*host_.operator->()).*step)(&wrapper);
        clearCom(wrapper);
        check(hr);
    }

    Held<_CalculosStrategy> host_;
};

class HostApplier final : public caudalis::PivotApplier, public HostObject {
public:
    explicit HostApplier(IUnknown* object) : HostObject(object), host_(object) {}

    void apply(pivot& apivot) override {
        withRecord<::pivot>(apivot, [&](::pivot* record) {
            check(host_->apply(record));
            fromCom(*record, apivot);
        });
    }

private:
    Held<_PivotApplier> host_;
};

class HostComparator final : public caudalis::Comparator, public HostObject {
public:
    explicit HostComparator(IUnknown* object) : HostObject(object), host_(object) {}

    bool GT(const Variant& First, const Variant& second) override {
        return ask(&_Comparator::GT, First, second);
    }
    bool GTE(const Variant& First, const Variant& second) override {
        return ask(&_Comparator::GTE, First, second);
    }
    bool LT(const Variant& First, const Variant& second) override {
        return ask(&_Comparator::LT, First, second);
    }
    bool LTE(const Variant& First, const Variant& second) override {
        return ask(&_Comparator::LTE, First, second);
    }
    bool EQ(const Variant& First, const Variant& second) override {
        return ask(&_Comparator::EQ, First, second);
    }

private:
    bool ask(HRESULT (STDMETHODCALLTYPE _Comparator::*compare)(VARIANT*, VARIANT*, VARIANT_BOOL*),
             const Variant& First, const Variant& second) {
        VARIANT a;
        VARIANT b;
        toCom(First, a);
        toCom(second, b);
        VARIANT_BOOL answer = VARIANT_FALSE;
        const HRESULT hr = ((*host_.operator->()).*compare)(&a, &b, &answer);
        VariantClear(&a);
        VariantClear(&b);
        check(hr);
        return answer != VARIANT_FALSE;
    }

    Held<_Comparator> host_;
};

}  // namespace

std::shared_ptr<caudalis::CalculosStrategy> HostAdapter<caudalis::CalculosStrategy>::adapt(IUnknown* object) {
    return std::make_shared<HostStrategy>(object);
}

std::shared_ptr<caudalis::PivotApplier> HostAdapter<caudalis::PivotApplier>::adapt(IUnknown* object) {
    return std::make_shared<HostApplier>(object);
}

std::shared_ptr<caudalis::Comparator> HostAdapter<caudalis::Comparator>::adapt(IUnknown* object) {
    return std::make_shared<HostComparator>(object);
}

/// A collection of the host's runtime is read item by item (Count, then Item(1 .. Count)) into
/// a collection of the library's.
std::shared_ptr<caudalis::Collection> HostAdapter<caudalis::Collection>::adapt(IUnknown* object) {
    const LateBound host = LateBound::of(object);
    auto collection = caudalis::Collection::create();
    const auto total = host.value(L"Count").toLong();
    for (long i = 1; i <= total; ++i) {
        VARIANT index;
        toCom(static_cast<std::int32_t>(i), index);
        collection->Add(host.value(L"Item", &index));
    }
    return collection;
}

}  // namespace caudalis::com
