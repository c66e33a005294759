// Library-side stand-ins for objects of the host: a strategy, an applier or a comparator of the
// host's own class, a collection of the host's runtime.

#include <dispex.h>

#include "CaudalisRecords.hpp"
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

/// {A6EF9860-C720-11D0-9337-00A0C90DCAA9}, which mingw-w64's uuid library does not carry.
const IID dispatchExIid = {0xa6ef9860, 0xc720, 0x11d0, {0x93, 0x37, 0x00, 0xa0, 0xc9, 0x0d, 0xca, 0xa9}};

/// The dispatch id of a member of a host object. Objects of script classes answer only
/// IDispatchEx::GetDispID, so that is asked first.
DISPID memberId(IDispatch* object, const wchar_t* name) {
    DISPID id = DISPID_UNKNOWN;
    IDispatchEx* extended = nullptr;
    if (SUCCEEDED(object->QueryInterface(dispatchExIid, reinterpret_cast<void**>(&extended)))) {
        BSTR text = SysAllocString(name);
        const HRESULT hr = extended->GetDispID(text, fdexNameCaseInsensitive, &id);
        SysFreeString(text);
        extended->Release();
        if (SUCCEEDED(hr)) {
            return id;
        }
    }
    LPOLESTR names[] = {const_cast<LPOLESTR>(name)};
    check(object->GetIDsOfNames(IID_NULL, names, 1, LOCALE_USER_DEFAULT, &id));
    return id;
}

/// Reads a property or calls a method of a host object by name.
VARIANT callByName(IDispatch* object, const wchar_t* name, WORD flags, VARIANT* arguments, UINT count) {
    const DISPID id = memberId(object, name);
    DISPPARAMS params{arguments, nullptr, count, 0};
    VARIANT result;
    VariantInit(&result);
    EXCEPINFO exception{};
    const HRESULT hr =
        object->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, flags, &params, &result, &exception, nullptr);
    if (hr == DISP_E_EXCEPTION) {
        std::string description;
        fromCom(exception.bstrDescription, description);
        SysFreeString(exception.bstrSource);
        SysFreeString(exception.bstrDescription);
        SysFreeString(exception.bstrHelpFile);
        throw caudalis::Error(numberOf(exception.scode), description);
    }
    check(hr);
    return result;
}

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
    IDispatch* dispatch = nullptr;
    if (FAILED(object->QueryInterface(IID_IDispatch, reinterpret_cast<void**>(&dispatch)))) {
        raiseError(RuntimeError::TypeMismatch);
    }
    auto collection = caudalis::Collection::create();
    try {
        VARIANT count = callByName(dispatch, L"Count", DISPATCH_PROPERTYGET | DISPATCH_METHOD, nullptr, 0);
        const auto total = in<caudalis::Variant>(count).toLong();
        VariantClear(&count);
        for (long i = 1; i <= total; ++i) {
            VARIANT index;
            VariantInit(&index);
            V_VT(&index) = VT_I4;
            V_I4(&index) = i;
            VARIANT item = callByName(dispatch, L"Item", DISPATCH_PROPERTYGET | DISPATCH_METHOD, &index, 1);
            collection->Add(in<caudalis::Variant>(item));
            VariantClear(&item);
        }
    } catch (...) {
        dispatch->Release();
        throw;
    }
    dispatch->Release();
    return collection;
}

}  // namespace caudalis::com
