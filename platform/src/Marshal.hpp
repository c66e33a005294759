#pragma once
// Conversions between the automation types and the library's, the COM object base that every
// automation class of the server derives from, and the argument holders of IDispatch::Invoke.

#ifndef NOMINMAX
#define NOMINMAX
#endif
#define WIN32_LEAN_AND_MEAN
#include <ole2.h>
#include <oleauto.h>
#include <windows.h>

#include <algorithm>
#include <caudalis/caudalis.hpp>
#include <cstring>
#include <memory>
#include <optional>
#include <string>
#include <typeinfo>

#include "Caudalis_h.h"
#include "ScriptField.hpp"
#include "ScriptFields.hpp"
#include "ScriptRecordset.hpp"

namespace caudalis::com {

// ------------------------------------------------------------------------------ module state

/// The server's module handle (set by DllMain).
HMODULE serverModule();
void objectCreated() noexcept;
void objectDestroyed() noexcept;
long liveObjects() noexcept;
/// The type information of an interface or record of the embedded type library.
ITypeInfo* typeInfoOf(REFGUID id);

/// The automation classes (generated): name, class identifier, maker (null for classes that
/// only the library creates).
struct ClassEntry {
    const wchar_t* name;
    const CLSID* clsid;
    IUnknown* (*make)();
};
extern const ClassEntry classTable[];
extern const std::size_t classCount;

/// Every interface of the type library (generated), for registration.
struct InterfaceEntry {
    const wchar_t* name;
    const IID* iid;
};
extern const InterfaceEntry interfaceTable[];
extern const std::size_t interfaceCount;

// ------------------------------------------------------------------------------ errors

/// A failure that already is an HRESULT with its error information set (a host call failed).
struct ComFailure {
    HRESULT hr;
};

/// The HRESULT a host sees for an error number: runtime errors (1 to 65535) in the runtime's
/// facility, so that a script host reads back the plain number; library codes as they are.
HRESULT hresultOf(std::int32_t number) noexcept;
/// The error number a host call's HRESULT stands for (the inverse of `hresultOf`).
std::int32_t numberOf(HRESULT hr) noexcept;
/// Sets the thread's error information (source "Caudalis") and returns `hr`.
HRESULT raiseComError(HRESULT hr, const std::string& description) noexcept;
/// Throws the library's error for a failed host call, with the host's description.
void check(HRESULT hr);

template <class F>
HRESULT guard(F&& body) noexcept {
    try {
        body();
        return S_OK;
    } catch (const caudalis::Error& e) {
        return raiseComError(hresultOf(e.number()), e.description());
    } catch (const ComFailure& failure) {
        return failure.hr;
    } catch (const std::bad_alloc&) {
        return raiseComError(E_OUTOFMEMORY, "Out of memory");
    } catch (const std::exception& e) {
        return raiseComError(E_FAIL, e.what());
    }
}

// ------------------------------------------------------------------------------ traits

template <class I>
struct InterfaceOf {
    static const IID& iid();
};
template <>
struct InterfaceOf<IDispatch> {
    static const IID& iid() { return IID_IDispatch; }
};
template <>
struct InterfaceOf<IUnknown> {
    static const IID& iid() { return IID_IUnknown; }
};

template <class R>
struct RecordTraits {
    static IRecordInfo* info();
};

/// The element type of a SAFEARRAY holding library values of type L, and its VARTYPE.
template <class L>
struct ComOf;
template <class C, VARTYPE V>
struct ComType {
    using type = C;
    static constexpr VARTYPE vt = V;
};
template <>
struct ComOf<double> : ComType<double, VT_R8> {};
template <>
struct ComOf<std::int16_t> : ComType<short, VT_I2> {};
template <>
struct ComOf<std::int32_t> : ComType<long, VT_I4> {};
template <>
struct ComOf<bool> : ComType<VARIANT_BOOL, VT_BOOL> {};
template <>
struct ComOf<std::string> : ComType<BSTR, VT_BSTR> {};
template <>
struct ComOf<caudalis::Variant> : ComType<VARIANT, VT_VARIANT> {};

// ------------------------------------------------------------------------------ objects

/// The reference count of a COM object that deletes itself when the last reference goes.
class ReferenceCount {
public:
    ULONG add() noexcept { return static_cast<ULONG>(InterlockedIncrement(&count_)); }
    template <class T>
    ULONG release(T* owner) noexcept {
        const LONG left = InterlockedDecrement(&count_);
        if (left == 0) {
            delete owner;
        }
        return static_cast<ULONG>(left);
    }

private:
    LONG count_ = 1;
};

/// What every object of the server answers to its private interface: the library object it
/// stands for.
class ObjectBase {
public:
    virtual std::shared_ptr<void> target() const = 0;
    virtual const std::type_info& targetType() const = 0;
    virtual std::shared_ptr<caudalis::Object> asObject() const = 0;

protected:
    ~ObjectBase() = default;
};

/// The private interface identifier under which a server object hands out its `ObjectBase`.
extern const IID IID_ICaudalisObject;

/// A library-side stand-in for an object of the host (a strategy, an applier, a comparator or
/// any other object put into a Collection): the host's object is handed back unchanged.
class HostObject {
public:
    explicit HostObject(IUnknown* object);
    virtual ~HostObject();
    HostObject(const HostObject&) = delete;
    HostObject& operator=(const HostObject&) = delete;
    IUnknown* comObject() const noexcept { return object_; }

private:
    IUnknown* object_;
};

/// The server object already standing for `target`, with a reference added, or null.
IUnknown* findWrapper(const void* target) noexcept;
void registerWrapper(const void* target, IUnknown* wrapper);
void unregisterWrapper(const void* target) noexcept;

template <class T>
struct Wrapper {
    static IUnknown* make(const std::shared_ptr<T>& impl);
};

/// The server object for a library object (one server object per library object while it
/// lives), with one reference for the caller; null for an empty reference.
template <class T>
IUnknown* wrap(const std::shared_ptr<T>& impl) {
    if (!impl) {
        return nullptr;
    }
    if constexpr (std::is_base_of_v<caudalis::Object, T>) {
        if (auto* host = dynamic_cast<HostObject*>(impl.get())) {
            host->comObject()->AddRef();
            return host->comObject();
        }
    }
    if (IUnknown* existing = findWrapper(impl.get())) {
        return existing;
    }
    return Wrapper<T>::make(impl);
}

/// A library object of any class (as held by a Variant or a Collection).
IUnknown* wrapAnyObject(const std::shared_ptr<caudalis::Object>& object);

/// The server's own object behind `unknown`, or null for an object of the host.
ObjectBase* ownObject(IUnknown* unknown) noexcept;

/// Stand-ins for host objects that implement one of the library's interfaces.
template <class T>
struct HostAdapter {
    static std::shared_ptr<T> adapt(IUnknown*) { raiseError(RuntimeError::TypeMismatch); }
};
template <>
struct HostAdapter<caudalis::CalculosStrategy> {
    static std::shared_ptr<caudalis::CalculosStrategy> adapt(IUnknown* object);
};
template <>
struct HostAdapter<caudalis::PivotApplier> {
    static std::shared_ptr<caudalis::PivotApplier> adapt(IUnknown* object);
};
template <>
struct HostAdapter<caudalis::Comparator> {
    static std::shared_ptr<caudalis::Comparator> adapt(IUnknown* object);
};
template <>
struct HostAdapter<caudalis::Collection> {
    static std::shared_ptr<caudalis::Collection> adapt(IUnknown* object);
};
template <>
struct HostAdapter<caudalis::Connection> {
    static std::shared_ptr<caudalis::Connection> adapt(IUnknown* object);
};

template <class T>
std::shared_ptr<T> unwrapAs(IUnknown* unknown) {
    if (!unknown) {
        return nullptr;
    }
    if (ObjectBase* own = ownObject(unknown)) {
        if (own->targetType() == typeid(T)) {
            return std::static_pointer_cast<T>(own->target());
        }
        if constexpr (std::is_base_of_v<caudalis::Object, T>) {
            if (auto typed = std::dynamic_pointer_cast<T>(own->asObject())) {
                return typed;
            }
        }
        raiseError(RuntimeError::TypeMismatch);
    }
    return HostAdapter<T>::adapt(unknown);
}

/// The object behind a reference the operation needs; 91 (object not set) when it is empty.
template <class T>
T& required(const std::shared_ptr<T>& object) {
    if (!object) {
        raiseError(RuntimeError::ObjectNotSet);
    }
    return *object;
}

// ------------------------------------------------------------------------------ conversions

inline void fromCom(const double& c, double& l) {
    l = c;
}
inline void fromCom(const short& c, std::int16_t& l) {
    l = c;
}
inline void fromCom(const long& c, std::int32_t& l) {
    l = static_cast<std::int32_t>(c);
}
inline void fromCom(const VARIANT_BOOL& c, bool& l) {
    l = c != VARIANT_FALSE;
}
void fromCom(const BSTR& c, std::string& l);
inline void fromCom(const ::compareWhat& c, caudalis::compareWhat& l) {
    l = static_cast<caudalis::compareWhat>(c);
}
void fromCom(const VARIANT& c, caudalis::Variant& l);
void fromCom(const VARIANT& c, caudalis::BoundedArray<caudalis::Variant>& l);
/// An argument that takes any value: its array, or an unallocated array when it holds none.
caudalis::BoundedArray<caudalis::Variant> arrayOrNone(const VARIANT& c);
/// An argument of which only the bounds count: an array of Empty with the bounds of the first
/// dimension of its array (whatever the elements), unallocated when it holds none.
caudalis::BoundedArray<caudalis::Variant> boundsOf(const VARIANT& c);
void fromCom(IDispatch* const& c, caudalis::CollectionRef& l);
template <class I, class T>
void fromCom(I* const& c, std::shared_ptr<T>& l) {
    l = unwrapAs<T>(c);
}

inline void toCom(const double& l, double& c) {
    c = l;
}
inline void toCom(const std::int16_t& l, short& c) {
    c = l;
}
inline void toCom(const std::int32_t& l, long& c) {
    c = l;
}
inline void toCom(const bool& l, VARIANT_BOOL& c) {
    c = l ? VARIANT_TRUE : VARIANT_FALSE;
}
void toCom(const std::string& l, BSTR& c);
inline void toCom(const caudalis::compareWhat& l, ::compareWhat& c) {
    c = static_cast<::compareWhat>(l);
}
void toCom(const caudalis::Variant& l, VARIANT& c);
void toCom(const double& l, VARIANT& c);
void toCom(const bool& l, VARIANT& c);
void toCom(const std::int16_t& l, VARIANT& c);
void toCom(const std::int32_t& l, VARIANT& c);
void toCom(const std::string& l, VARIANT& c);
void toCom(const caudalis::BoundedArray<caudalis::Variant>& l, VARIANT& c);
void toCom(const caudalis::CollectionRef& l, IDispatch*& c);
void toCom(const caudalis::Collection& l, IUnknown*& c);
void toCom(const ScriptFields& l, IUnknown*& c);
template <class T, class I>
void toCom(const std::shared_ptr<T>& l, I*& c) {
    c = nullptr;
    IUnknown* unknown = wrap(l);
    if (!unknown) {
        return;
    }
    const HRESULT hr = unknown->QueryInterface(InterfaceOf<I>::iid(), reinterpret_cast<void**>(&c));
    unknown->Release();
    if (FAILED(hr)) {
        raiseError(RuntimeError::TypeMismatch);
    }
}

template <class T>
void toCom(const std::shared_ptr<T>& l, VARIANT& c) {
    VariantInit(&c);
    V_VT(&c) = VT_DISPATCH;
    V_DISPATCH(&c) = nullptr;
    if (IUnknown* unknown = wrap(l)) {
        unknown->QueryInterface(IID_IDispatch, reinterpret_cast<void**>(&V_DISPATCH(&c)));
        unknown->Release();
    }
}

inline void clearCom(double&) {}
inline void clearCom(short&) {}
inline void clearCom(long&) {}
inline void clearCom(::compareWhat&) {}
void clearCom(BSTR& c);
void clearCom(VARIANT& c);
void clearCom(SAFEARRAY*& c);
template <class I>
void clearCom(I*& c) {
    if (c) {
        c->Release();
        c = nullptr;
    }
}

/// Releases what `count` records of the given type hold (generated for every record).
void clearRecords(const GUID& record, void* data, ULONG count);

/// Reads and writes records in Variants (generated for every record).
bool recordToVariant(const caudalis::Variant& v, VARIANT& c);
bool recordFromVariant(const VARIANT& c, caudalis::Variant& v);

/// Moves a record into a Variant as VT_RECORD.
template <class C, class L>
void storeRecord(const L& value, VARIANT& c) {
    IRecordInfo* info = RecordTraits<C>::info();
    void* data = info->RecordCreate();
    if (!data) {
        throw std::bad_alloc();
    }
    toCom(value, *static_cast<C*>(data));
    V_VT(&c) = VT_RECORD;
    c.pvRecord = data;
    c.pRecInfo = info;
    info->AddRef();
}

/// The record's type information (GUID) matches C.
bool sameRecord(IRecordInfo* info, IRecordInfo* expected) noexcept;
template <class C>
bool holdsRecord(const VARIANT& c) {
    return V_VT(&c) == VT_RECORD && c.pvRecord && sameRecord(c.pRecInfo, RecordTraits<C>::info());
}

/// The VARIANT behind any number of by-reference levels.
const VARIANT& dereferenced(const VARIANT& c) noexcept;
VARIANT& dereferenced(VARIANT& c) noexcept;
/// A Variant converted to the type of C (scalars), raising 13 when it cannot be.
void coerce(const VARIANT& c, VARTYPE vt, VARIANT& result);

/// One element of a SAFEARRAY as library value L, whatever the array's element type.
template <class L>
void readElement(SAFEARRAY* array, LONG index, L& l) {
    using C = typename ComOf<L>::type;
    VARTYPE vt = VT_EMPTY;
    SafeArrayGetVartype(array, &vt);
    if (vt == ComOf<L>::vt && vt != VT_VARIANT) {
        C* data = nullptr;
        SafeArrayPtrOfIndex(array, &index, reinterpret_cast<void**>(&data));
        fromCom(*data, l);
        return;
    }
    VARIANT element;
    VariantInit(&element);
    if (vt == VT_VARIANT) {
        SafeArrayGetElement(array, &index, &element);
    } else if (vt != VT_RECORD) {
        V_VT(&element) = vt;
        SafeArrayGetElement(array, &index, &V_I4(&element));
    }
    try {
        if constexpr (ComOf<L>::vt == VT_RECORD) {
            if (!holdsRecord<C>(dereferenced(element))) {
                raiseError(RuntimeError::TypeMismatch);
            }
            fromCom(*static_cast<const C*>(dereferenced(element).pvRecord), l);
        } else if constexpr (ComOf<L>::vt == VT_VARIANT) {
            fromCom(element, l);
        } else {
            VARIANT typed;
            VariantInit(&typed);
            coerce(element, ComOf<L>::vt, typed);
            C value;
            std::memcpy(static_cast<void*>(&value), &V_I4(&typed), sizeof(C));
            fromCom(value, l);
            VariantClear(&typed);
        }
    } catch (...) {
        VariantClear(&element);
        throw;
    }
    VariantClear(&element);
}

void requireVector(SAFEARRAY* array);

template <class L>
void fromCom(SAFEARRAY* const& c, caudalis::BoundedArray<L>& l) {
    l.erase();
    if (!c) {
        return;
    }
    requireVector(c);
    LONG lower = 0;
    LONG upper = 0;
    SafeArrayGetLBound(c, 1, &lower);
    SafeArrayGetUBound(c, 1, &upper);
    if (upper < lower) {
        return;
    }
    l.redim(lower, upper);
    for (LONG i = lower; i <= upper; ++i) {
        readElement(c, i, l(i));
    }
}

template <class L, caudalis::Long Lower, caudalis::Long Upper>
void fromCom(SAFEARRAY* const& c, caudalis::FixedArray<L, Lower, Upper>& l) {
    l = {};
    if (!c) {
        return;
    }
    requireVector(c);
    LONG lower = 0;
    LONG upper = 0;
    SafeArrayGetLBound(c, 1, &lower);
    SafeArrayGetUBound(c, 1, &upper);
    for (LONG i = std::max<LONG>(lower, Lower); i <= std::min<LONG>(upper, Upper); ++i) {
        readElement(c, i, l(i));
    }
}

template <class L>
SAFEARRAY* createArray(LONG lower, ULONG count) {
    using C = typename ComOf<L>::type;
    SAFEARRAYBOUND bound{count, lower};
    SAFEARRAY* array = nullptr;
    if constexpr (ComOf<L>::vt == VT_RECORD) {
        array = SafeArrayCreateEx(VT_RECORD, 1, &bound, RecordTraits<C>::info());
    } else {
        array = SafeArrayCreate(ComOf<L>::vt, 1, &bound);
    }
    if (!array) {
        throw std::bad_alloc();
    }
    return array;
}

template <class Range>
SAFEARRAY* arrayOf(const Range& items, LONG lower, ULONG count) {
    using L = std::decay_t<decltype(*items.begin())>;
    using C = typename ComOf<L>::type;
    SAFEARRAY* array = createArray<L>(lower, count);
    C* data = nullptr;
    SafeArrayAccessData(array, reinterpret_cast<void**>(&data));
    try {
        ULONG i = 0;
        for (const auto& item : items) {
            toCom(item, data[i++]);
        }
    } catch (...) {
        SafeArrayUnaccessData(array);
        SafeArrayDestroy(array);
        throw;
    }
    SafeArrayUnaccessData(array);
    return array;
}

template <class L>
void toCom(const caudalis::BoundedArray<L>& l, SAFEARRAY*& c) {
    c = l.isAllocated() ? arrayOf(l, l.lbound(), static_cast<ULONG>(l.count())) : nullptr;
}

template <class L, caudalis::Long Lower, caudalis::Long Upper>
void toCom(const caudalis::FixedArray<L, Lower, Upper>& l, SAFEARRAY*& c) {
    c = arrayOf(l, Lower, static_cast<ULONG>(l.count()));
}

/// An operation's input: the library value of a COM argument.
template <class L, class C>
L in(const C& c) {
    L l{};
    fromCom(c, l);
    return l;
}

/// An optional argument: nothing when it was omitted.
template <class L>
std::optional<L> optionalIn(const VARIANT* c) {
    if (!c) {
        return std::nullopt;
    }
    const VARIANT& value = dereferenced(*c);
    if (V_VT(&value) == VT_ERROR && V_ERROR(&value) == DISP_E_PARAMNOTFOUND) {
        return std::nullopt;
    }
    return in<L>(*c);
}

/// A result: written into the caller's uninitialised [out, retval] place.
template <class L, class C>
void out(const L& l, C& c) {
    std::memset(static_cast<void*>(&c), 0, sizeof(C));
    toCom(l, c);
}

/// A written-back argument: the caller's value is released and replaced.
template <class L, class C>
void update(const L& l, C& c) {
    C fresh;
    std::memset(static_cast<void*>(&fresh), 0, sizeof(C));
    toCom(l, fresh);
    clearCom(c);
    std::memcpy(static_cast<void*>(&c), &fresh, sizeof(C));
}
template <class L>
void update(const std::optional<L>& l, VARIANT& c) {
    if (l) {
        VARIANT& target = dereferenced(c);
        update(*l, target);
    }
}

// ------------------------------------------------------------------------------ glue helpers

caudalis::Variant itemOf(const caudalis::Collection& collection, const caudalis::Variant& index);
void removeFrom(caudalis::Collection& collection, const caudalis::Variant& index);
std::optional<std::string> keyOf(const std::optional<caudalis::Variant>& key);
void openWith(caudalis::Connection& connection, const std::optional<caudalis::Variant>& connectionString);
double averageOf(const caudalis::WaterDepths& depths,
                 const caudalis::BoundedArray<caudalis::WaterDepthSample>& list,
                 std::optional<caudalis::Variant>& limit);
caudalis::compareWhat compareWhatOf(const std::optional<caudalis::Variant>& key);

// ------------------------------------------------------------------------------ COM objects

HRESULT dispatchFailure(HRESULT hr, EXCEPINFO* exception) noexcept;

/// Calls the default member (DISPID_VALUE) of `object` with the caller's arguments; what the
/// object raises is raised again with its number and description.
HRESULT invokeValue(IDispatch* object, WORD flags, DISPPARAMS* dp, VARIANT* result) noexcept;

/// Answers IDispatch for one interface from the embedded type library: names through the type
/// information, calls through the generated `invokeMember`.
template <class I>
class DispatchPart : public I {
public:
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override {
        *count = 1;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID, ITypeInfo** info) override {
        if (index != 0) {
            return DISP_E_BADINDEX;
        }
        *info = typeInfoOf(InterfaceOf<I>::iid());
        if (!*info) {
            return TYPE_E_ELEMENTNOTFOUND;
        }
        (*info)->AddRef();
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) override {
        ITypeInfo* info = typeInfoOf(InterfaceOf<I>::iid());
        return info ? DispGetIDsOfNames(info, names, count, ids) : TYPE_E_ELEMENTNOTFOUND;
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID riid, LCID, WORD flags, DISPPARAMS* dp,
                                     VARIANT* result, EXCEPINFO* exception, UINT*) override {
        if (!IsEqualIID(riid, IID_NULL)) {
            return DISP_E_UNKNOWNINTERFACE;
        }
        if (result) {
            VariantInit(result);
        }
        return dispatchFailure(invokeMember(id, flags, dp, result), exception);
    }
    virtual HRESULT invokeMember(DISPID id, WORD flags, DISPPARAMS* dp, VARIANT* result) = 0;

protected:
    ~DispatchPart() = default;
};

template <class I, class Impl>
class ComObject : public DispatchPart<I>, public ISupportErrorInfo, public ObjectBase {
public:
    explicit ComObject(std::shared_ptr<Impl> impl) : impl_(std::move(impl)) {
        registerWrapper(impl_.get(), static_cast<I*>(this));
        objectCreated();
    }
    virtual ~ComObject() {
        unregisterWrapper(impl_.get());
        objectDestroyed();
    }
    ComObject(const ComObject&) = delete;
    ComObject& operator=(const ComObject&) = delete;

    Impl& impl() const { return *impl_; }

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** object) override {
        if (!object) {
            return E_POINTER;
        }
        *object = nullptr;
        if (IsEqualIID(riid, IID_IUnknown) || IsEqualIID(riid, IID_IDispatch) ||
            IsEqualIID(riid, InterfaceOf<I>::iid())) {
            *object = static_cast<I*>(this);
        } else if (IsEqualIID(riid, IID_ISupportErrorInfo)) {
            *object = static_cast<ISupportErrorInfo*>(this);
        } else if (IsEqualIID(riid, IID_ICaudalisObject)) {
            *object = static_cast<ObjectBase*>(this);
        } else {
            *object = secondFace(riid);
        }
        if (!*object) {
            return E_NOINTERFACE;
        }
        AddRef();
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return references_.add(); }
    ULONG STDMETHODCALLTYPE Release() override { return references_.release(this); }
    HRESULT STDMETHODCALLTYPE InterfaceSupportsErrorInfo(REFIID) override { return S_OK; }

    std::shared_ptr<void> target() const override { return impl_; }
    const std::type_info& targetType() const override { return typeid(Impl); }
    std::shared_ptr<caudalis::Object> asObject() const override {
        if constexpr (std::is_base_of_v<caudalis::Object, Impl>) {
            return impl_;
        } else {
            return nullptr;
        }
    }

    template <class F>
    HRESULT guard(F&& body) const noexcept {
        return caudalis::com::guard(std::forward<F>(body));
    }

protected:
    virtual void* secondFace(REFIID) { return nullptr; }

private:
    std::shared_ptr<Impl> impl_;
    ReferenceCount references_;
};

/// The second interface of a class (`PivotApplier`, `Comparator`): counts and identity are the
/// owner's.
template <class I>
class SecondFace : public DispatchPart<I> {
public:
    explicit SecondFace(IUnknown& owner) : owner_(owner) {}
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** object) override {
        return owner_.QueryInterface(riid, object);
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return owner_.AddRef(); }
    ULONG STDMETHODCALLTYPE Release() override { return owner_.Release(); }

private:
    IUnknown& owner_;
};

// ------------------------------------------------------------------------------ Invoke

/// The argument at `position` of `count` (DISPPARAMS holds them last first); a missing optional
/// argument reads as "parameter not found".
VARIANT* argumentAt(DISPPARAMS* dp, UINT position, bool optional, VARIANT& missing) noexcept;

/// Writes a converted argument back into the caller's by-reference variable.
void writeBackScalar(VARIANT* source, const VARIANT& converted);

/// The failure of converting an argument: 6 (overflow, with its error information) for a
/// value out of the parameter's range, a type mismatch otherwise.
HRESULT conversionFailure(HRESULT hr) noexcept;

/// An argument of IDispatch::Invoke converted to the COM type of the vtable method (`Hint`
/// names the automation type where the C type does not tell it: VT_BOOL for truth values).
template <class C, VARTYPE Hint = VT_EMPTY>
class Arg {
public:
    Arg(DISPPARAMS* dp, UINT position, UINT, bool optional) {
        source_ = argumentAt(dp, position, optional, missing_);
        if (!source_) {
            status_ = DISP_E_PARAMNOTFOUND;
            return;
        }
        VariantInit(&converted_);
        status_ = VariantChangeType(&converted_, &dereferenced(*source_), 0, vartype());
        if (FAILED(status_)) {
            status_ = conversionFailure(status_);
        }
    }
    ~Arg() { VariantClear(&converted_); }
    Arg(const Arg&) = delete;
    Arg& operator=(const Arg&) = delete;

    HRESULT status() const noexcept { return status_; }
    C* pointer() noexcept { return reinterpret_cast<C*>(&V_I4(&converted_)); }
    C value() noexcept { return *pointer(); }
    /// Writes the (possibly changed) value back into the caller's variable.
    void writeBack() { writeBackScalar(source_, converted_); }

private:
    static constexpr VARTYPE vartype() {
        if constexpr (Hint != VT_EMPTY) {
            return Hint;
        } else if constexpr (std::is_same_v<C, double>) {
            return VT_R8;
        } else if constexpr (std::is_same_v<C, BSTR>) {
            return VT_BSTR;
        } else if constexpr (std::is_same_v<C, long>) {
            return VT_I4;
        } else if constexpr (std::is_same_v<C, ::compareWhat>) {
            return VT_I4;
        } else {
            return VT_I2;
        }
    }

    VARIANT* source_ = nullptr;
    VARIANT missing_{};
    VARIANT converted_{};
    HRESULT status_ = S_OK;
};

/// Variants are passed through as they are (by reference when the caller's is).
template <>
class Arg<VARIANT> {
public:
    Arg(DISPPARAMS* dp, UINT position, UINT, bool optional) {
        source_ = argumentAt(dp, position, optional, missing_);
        status_ = source_ ? S_OK : DISP_E_PARAMNOTFOUND;
    }
    HRESULT status() const noexcept { return status_; }
    VARIANT* pointer() noexcept { return &dereferenced(*source_); }
    void writeBack() noexcept {}

private:
    VARIANT* source_ = nullptr;
    VARIANT missing_{};
    HRESULT status_ = S_OK;
};

/// Arrays: the caller's own array when passed by reference (written back in place), else a copy.
template <>
class Arg<SAFEARRAY*> {
public:
    Arg(DISPPARAMS* dp, UINT position, UINT, bool optional);
    ~Arg();
    Arg(const Arg&) = delete;
    Arg& operator=(const Arg&) = delete;
    HRESULT status() const noexcept { return status_; }
    SAFEARRAY** pointer() noexcept { return target_; }
    void writeBack() noexcept {}

private:
    VARIANT missing_{};
    SAFEARRAY* copy_ = nullptr;
    SAFEARRAY** target_ = &copy_;
    HRESULT status_ = S_OK;
};

/// Looks up the record argument: VT_RECORD of the expected record, used in place.
HRESULT recordArgument(DISPPARAMS* dp, UINT position, IRecordInfo* expected, void** data) noexcept;

/// Object references: the caller's object as the interface the method takes.
HRESULT objectArgument(DISPPARAMS* dp, UINT position, REFIID iid, void** object) noexcept;

template <class I>
class ObjectArg {
public:
    ObjectArg(DISPPARAMS* dp, UINT position) {
        status_ = objectArgument(dp, position, InterfaceOf<I>::iid(), reinterpret_cast<void**>(&object_));
    }
    ~ObjectArg() {
        if (object_) {
            object_->Release();
        }
    }
    ObjectArg(const ObjectArg&) = delete;
    ObjectArg& operator=(const ObjectArg&) = delete;
    HRESULT status() const noexcept { return status_; }
    I** pointer() noexcept { return &object_; }
    I* value() noexcept { return object_; }
    void writeBack() noexcept {}

private:
    I* object_ = nullptr;
    HRESULT status_ = S_OK;
};

template <class R>
class RecordArg {
public:
    RecordArg(DISPPARAMS* dp, UINT position) {
        status_ = recordArgument(dp, position, RecordTraits<R>::info(), reinterpret_cast<void**>(&data_));
    }
    HRESULT status() const noexcept { return status_; }
    R* pointer() noexcept { return data_; }
    void writeBack() noexcept {}

private:
    R* data_ = nullptr;
    HRESULT status_ = S_OK;
};

/// A result of the vtable method, moved into Invoke's result Variant.
template <class C, VARTYPE Hint = VT_EMPTY>
class Ret {
public:
    Ret() { std::memset(static_cast<void*>(&value_), 0, sizeof(C)); }
    ~Ret() { clearCom(value_); }
    Ret(const Ret&) = delete;
    Ret& operator=(const Ret&) = delete;
    C* pointer() noexcept { return &value_; }
    void store(VARIANT* result) {
        if (!result) {
            return;
        }
        moveInto(*result);
    }

private:
    void moveInto(VARIANT& result) {
        if constexpr (std::is_same_v<C, VARIANT>) {
            result = value_;
            VariantInit(&value_);
        } else if constexpr (std::is_same_v<C, SAFEARRAY*>) {
            VARTYPE vt = VT_VARIANT;
            if (value_) {
                SafeArrayGetVartype(value_, &vt);
                V_VT(&result) = static_cast<VARTYPE>(VT_ARRAY | vt);
                V_ARRAY(&result) = value_;
                value_ = nullptr;
            }
        } else if constexpr (std::is_same_v<C, BSTR>) {
            V_VT(&result) = VT_BSTR;
            V_BSTR(&result) = value_;
            value_ = nullptr;
        } else if constexpr (std::is_same_v<C, double>) {
            V_VT(&result) = VT_R8;
            V_R8(&result) = value_;
        } else if constexpr (std::is_same_v<C, short>) {
            V_VT(&result) = Hint == VT_BOOL ? VT_BOOL : VT_I2;
            V_I2(&result) = value_;
        } else if constexpr (std::is_same_v<C, long> || std::is_same_v<C, ::compareWhat>) {
            V_VT(&result) = VT_I4;
            V_I4(&result) = static_cast<long>(value_);
        } else if constexpr (std::is_pointer_v<C>) {
            if (value_) {
                V_VT(&result) = VT_DISPATCH;
                if (FAILED(value_->QueryInterface(IID_IDispatch,
                                                  reinterpret_cast<void**>(&V_DISPATCH(&result))))) {
                    V_VT(&result) = VT_UNKNOWN;
                    V_UNKNOWN(&result) = value_;
                    value_ = nullptr;
                }
            } else {
                V_VT(&result) = VT_DISPATCH;
                V_DISPATCH(&result) = nullptr;
            }
        } else {
            moveRecord(result);
        }
    }
    void moveRecord(VARIANT& result) {
        IRecordInfo* info = RecordTraits<C>::info();
        void* data = info->RecordCreate();
        std::memcpy(data, &value_, sizeof(C));
        std::memset(static_cast<void*>(&value_), 0, sizeof(C));
        V_VT(&result) = VT_RECORD;
        result.pvRecord = data;
        result.pRecInfo = info;
        info->AddRef();
    }

    C value_;
};

}  // namespace caudalis::com
