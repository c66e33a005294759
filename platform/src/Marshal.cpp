#include "Marshal.hpp"

#include <map>
#include <unordered_map>

namespace caudalis::com {

// {C5A1D0B2-7E3F-4C19-9B6A-0D2E8F4A1C37}: never registered, only asked of objects in-process.
const IID IID_ICaudalisObject = {
    0xc5a1d0b2, 0x7e3f, 0x4c19, {0x9b, 0x6a, 0x0d, 0x2e, 0x8f, 0x4a, 0x1c, 0x37}};

namespace {

constexpr unsigned long runtimeFacility = 0x800A0000UL;

std::unordered_map<const void*, IUnknown*>& wrappers() {
    static std::unordered_map<const void*, IUnknown*> table;
    return table;
}

std::wstring wide(const std::string& text) {
    if (text.empty()) {
        return {};
    }
    const int size = MultiByteToWideChar(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), nullptr, 0);
    std::wstring result(static_cast<std::size_t>(size), L'\0');
    MultiByteToWideChar(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), result.data(), size);
    return result;
}

std::string narrow(const wchar_t* text, UINT length) {
    if (!text || length == 0) {
        return {};
    }
    const int size =
        WideCharToMultiByte(CP_UTF8, 0, text, static_cast<int>(length), nullptr, 0, nullptr, nullptr);
    std::string result(static_cast<std::size_t>(size), '\0');
    WideCharToMultiByte(CP_UTF8, 0, text, static_cast<int>(length), result.data(), size, nullptr, nullptr);
    return result;
}

/// A host object held in a Variant or a Collection.
class ForeignObject final : public caudalis::Object, public HostObject {
public:
    using HostObject::HostObject;
};

}  // namespace

// ------------------------------------------------------------------------------ errors

HRESULT hresultOf(std::int32_t number) noexcept {
    if (number > 0 && number <= 0xFFFF) {
        return static_cast<HRESULT>(runtimeFacility | number);
    }
    return static_cast<HRESULT>(number);
}

std::int32_t numberOf(HRESULT hr) noexcept {
    if ((static_cast<unsigned long>(hr) & 0xFFFF0000UL) == runtimeFacility) {
        return hr & 0xFFFF;
    }
    return static_cast<std::int32_t>(hr);
}

HRESULT raiseComError(HRESULT hr, const std::string& description) noexcept {
    ICreateErrorInfo* create = nullptr;
    if (SUCCEEDED(CreateErrorInfo(&create))) {
        const std::wstring text = wide(description);
        create->SetSource(const_cast<LPOLESTR>(L"Caudalis"));
        create->SetDescription(const_cast<LPOLESTR>(text.c_str()));
        IErrorInfo* info = nullptr;
        if (SUCCEEDED(create->QueryInterface(IID_IErrorInfo, reinterpret_cast<void**>(&info)))) {
            SetErrorInfo(0, info);
            info->Release();
        }
        create->Release();
    }
    return hr;
}

void check(HRESULT hr) {
    if (SUCCEEDED(hr)) {
        return;
    }
    IErrorInfo* info = nullptr;
    std::string description;
    if (GetErrorInfo(0, &info) == S_OK && info) {
        BSTR text = nullptr;
        if (SUCCEEDED(info->GetDescription(&text)) && text) {
            description = narrow(text, SysStringLen(text));
            SysFreeString(text);
        }
        info->Release();
    }
    const std::int32_t number = numberOf(hr);
    if (description.empty()) {
        description = standardErrorText(number);
    }
    throw caudalis::Error(number, description);
}

HRESULT dispatchFailure(HRESULT hr, EXCEPINFO* exception) noexcept {
    if (SUCCEEDED(hr) || HRESULT_FACILITY(hr) == FACILITY_DISPATCH) {
        return hr;
    }
    if (!exception) {
        return hr;
    }
    std::memset(exception, 0, sizeof(*exception));
    IErrorInfo* info = nullptr;
    if (GetErrorInfo(0, &info) == S_OK && info) {
        info->GetSource(&exception->bstrSource);
        info->GetDescription(&exception->bstrDescription);
        info->Release();
    }
    if (!exception->bstrSource) {
        exception->bstrSource = SysAllocString(L"Caudalis");
    }
    exception->scode = hr;
    return DISP_E_EXCEPTION;
}

HRESULT invokeValue(IDispatch* object, WORD flags, DISPPARAMS* dp, VARIANT* result) noexcept {
    if (!object) {
        return raiseComError(hresultOf(RuntimeError::ObjectNotSet),
                             standardErrorText(RuntimeError::ObjectNotSet));
    }
    EXCEPINFO exception{};
    const HRESULT hr =
        object->Invoke(DISPID_VALUE, IID_NULL, LOCALE_USER_DEFAULT, flags, dp, result, &exception, nullptr);
    if (hr != DISP_E_EXCEPTION) {
        return hr;
    }
    if (exception.pfnDeferredFillIn) {
        exception.pfnDeferredFillIn(&exception);
    }
    const HRESULT raised = exception.scode != 0 ? exception.scode : hresultOf(exception.wCode);
    const std::string description =
        exception.bstrDescription ? narrow(exception.bstrDescription, SysStringLen(exception.bstrDescription))
                                  : "";
    SysFreeString(exception.bstrSource);
    SysFreeString(exception.bstrDescription);
    SysFreeString(exception.bstrHelpFile);
    return raiseComError(raised, description);
}

// ------------------------------------------------------------------------------ objects

HostObject::HostObject(IUnknown* object) : object_(object) {
    object_->AddRef();
}

HostObject::~HostObject() {
    object_->Release();
}

IUnknown* findWrapper(const void* target) noexcept {
    const auto found = wrappers().find(target);
    if (found == wrappers().end()) {
        return nullptr;
    }
    found->second->AddRef();
    return found->second;
}

void registerWrapper(const void* target, IUnknown* wrapper) {
    wrappers().emplace(target, wrapper);
}

void unregisterWrapper(const void* target) noexcept {
    wrappers().erase(target);
}

ObjectBase* ownObject(IUnknown* unknown) noexcept {
    void* own = nullptr;
    if (FAILED(unknown->QueryInterface(IID_ICaudalisObject, &own)) || !own) {
        return nullptr;
    }
    // The object stays alive through the caller's reference; the extra one is not needed.
    unknown->Release();
    return static_cast<ObjectBase*>(own);
}

// ------------------------------------------------------------------------------ conversions

void fromCom(const BSTR& c, std::string& l) {
    l = narrow(c, c ? SysStringLen(c) : 0);
}

void toCom(const std::string& l, BSTR& c) {
    const std::wstring text = wide(l);
    c = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
    if (!c) {
        throw std::bad_alloc();
    }
}

void clearCom(BSTR& c) {
    SysFreeString(c);
    c = nullptr;
}

void clearCom(VARIANT& c) {
    VariantClear(&c);
}

/// Arrays of records are emptied element by element with the server's own conversions before
/// the array goes: the runtime's record clearing does not follow arrays inside records under
/// every automation runtime (Wine's passes the field's address for the array), so it is never
/// asked to.
void clearCom(SAFEARRAY*& c) {
    if (!c) {
        return;
    }
    IRecordInfo* info = nullptr;
    if ((c->fFeatures & FADF_RECORD) && SUCCEEDED(SafeArrayGetRecordInfo(c, &info)) && info) {
        GUID record{};
        info->GetGuid(&record);
        info->Release();
        void* data = nullptr;
        if (SUCCEEDED(SafeArrayAccessData(c, &data))) {
            LONG lower = 0;
            LONG upper = -1;
            SafeArrayGetLBound(c, 1, &lower);
            SafeArrayGetUBound(c, 1, &upper);
            clearRecords(record, data, static_cast<ULONG>(upper - lower + 1));
            SafeArrayUnaccessData(c);
        }
        SafeArraySetRecordInfo(c, nullptr);
        c->fFeatures &= static_cast<USHORT>(~FADF_RECORD);
    }
    SafeArrayDestroy(c);
    c = nullptr;
}

const VARIANT& dereferenced(const VARIANT& c) noexcept {
    const VARIANT* v = &c;
    while (V_VT(v) == (VT_BYREF | VT_VARIANT) && V_VARIANTREF(v)) {
        v = V_VARIANTREF(v);
    }
    return *v;
}

VARIANT& dereferenced(VARIANT& c) noexcept {
    return const_cast<VARIANT&>(dereferenced(static_cast<const VARIANT&>(c)));
}

void coerce(const VARIANT& c, VARTYPE vt, VARIANT& result) {
    const VARIANT& source = dereferenced(c);
    if (V_VT(&source) == VT_NULL) {
        raiseError(RuntimeError::InvalidUseOfNull);
    }
    const HRESULT hr = VariantChangeType(&result, const_cast<VARIANT*>(&source), 0, vt);
    if (hr == DISP_E_OVERFLOW) {
        raiseError(RuntimeError::Overflow);
    }
    if (FAILED(hr)) {
        raiseError(RuntimeError::TypeMismatch);
    }
}

void requireVector(SAFEARRAY* array) {
    if (SafeArrayGetDim(array) != 1) {
        raiseError(RuntimeError::SubscriptOutOfRange);
    }
}

bool sameRecord(IRecordInfo* info, IRecordInfo* expected) noexcept {
    if (!info || !expected) {
        return false;
    }
    GUID actual{};
    GUID wanted{};
    return SUCCEEDED(info->GetGuid(&actual)) && SUCCEEDED(expected->GetGuid(&wanted)) &&
           IsEqualGUID(actual, wanted);
}

IRecordInfo* recordInfoOf(const GUID& record) {
    static std::map<std::wstring, IRecordInfo*> cache;
    wchar_t key[64];
    StringFromGUID2(record, key, 64);
    auto& info = cache[key];
    if (!info) {
        ITypeInfo* type = typeInfoOf(record);
        if (!type || FAILED(GetRecordInfoFromTypeInfo(type, &info))) {
            raiseError(RuntimeError::TypeMismatch, "The type library holds no such record.");
        }
    }
    return info;
}

void fromCom(const VARIANT& c, caudalis::Variant& l) {
    const VARIANT& v = dereferenced(c);
    switch (V_VT(&v) & ~VT_BYREF) {
        case VT_EMPTY:
            l = caudalis::Variant();
            return;
        case VT_ERROR:
            if ((V_VT(&v) & VT_BYREF ? *V_ERRORREF(&v) : V_ERROR(&v)) == DISP_E_PARAMNOTFOUND) {
                l = caudalis::Variant();
                return;
            }
            break;
        case VT_NULL:
            l = caudalis::Variant::null();
            return;
        case VT_BOOL:
        case VT_I2:
        case VT_UI1:
        case VT_I1:
        case VT_UI2:
        case VT_I4:
        case VT_UI4:
        case VT_INT:
        case VT_UINT:
        case VT_I8:
        case VT_UI8:
        case VT_R8:
        case VT_R4:
        case VT_CY:
        case VT_DECIMAL:
        case VT_DATE:
        case VT_BSTR:
            break;
        case VT_DISPATCH:
        case VT_UNKNOWN: {
            IUnknown* object = V_VT(&v) & VT_BYREF ? *V_UNKNOWNREF(&v) : V_UNKNOWN(&v);
            if (!object) {
                l = caudalis::Variant(std::shared_ptr<caudalis::Object>());
            } else if (ObjectBase* own = ownObject(object); own && own->asObject()) {
                l = caudalis::Variant(own->asObject());
            } else {
                l = caudalis::Variant(
                    std::shared_ptr<caudalis::Object>(std::make_shared<ForeignObject>(object)));
            }
            return;
        }
        case VT_RECORD:
            if (recordFromVariant(v, l)) {
                return;
            }
            raiseError(RuntimeError::TypeMismatch);
        default:
            raiseError(RuntimeError::TypeMismatch);
    }
    VARIANT plain;
    VariantInit(&plain);
    const VARTYPE base = V_VT(&v) & ~VT_BYREF;
    VARTYPE target = VT_R8;
    if (base == VT_BOOL || base == VT_I2 || base == VT_I4 || base == VT_BSTR) {
        target = base;
    } else if (base == VT_UI1 || base == VT_I1) {
        target = VT_I2;
    } else if (base == VT_UI2 || base == VT_INT) {
        target = VT_I4;
    }
    coerce(v, target, plain);
    switch (target) {
        case VT_BOOL:
            l = caudalis::Variant(V_BOOL(&plain) != VARIANT_FALSE);
            break;
        case VT_I2:
            l = caudalis::Variant(static_cast<caudalis::Integer>(V_I2(&plain)));
            break;
        case VT_I4:
            l = caudalis::Variant(static_cast<caudalis::Long>(V_I4(&plain)));
            break;
        case VT_BSTR:
            l = caudalis::Variant(narrow(V_BSTR(&plain), SysStringLen(V_BSTR(&plain))));
            break;
        default:
            l = caudalis::Variant(V_R8(&plain));
    }
    VariantClear(&plain);
}

void fromCom(const VARIANT& c, caudalis::BoundedArray<caudalis::Variant>& l) {
    const VARIANT& v = dereferenced(c);
    l.erase();
    if (V_VT(&v) == VT_EMPTY || (V_VT(&v) == VT_ERROR && V_ERROR(&v) == DISP_E_PARAMNOTFOUND)) {
        return;
    }
    if (!(V_VT(&v) & VT_ARRAY)) {
        raiseError(RuntimeError::TypeMismatch);
    }
    SAFEARRAY* array = V_VT(&v) & VT_BYREF ? *V_ARRAYREF(&v) : V_ARRAY(&v);
    fromCom(array, l);
}

caudalis::BoundedArray<caudalis::Variant> arrayOrNone(const VARIANT& c) {
    if (!(V_VT(&dereferenced(c)) & VT_ARRAY)) {
        return {};
    }
    return in<caudalis::BoundedArray<caudalis::Variant>>(c);
}

caudalis::BoundedArray<caudalis::Variant> boundsOf(const VARIANT& c) {
    const VARIANT& v = dereferenced(c);
    caudalis::BoundedArray<caudalis::Variant> shape;
    SAFEARRAY* array = nullptr;
    if (V_VT(&v) & VT_ARRAY) {
        array = V_VT(&v) & VT_BYREF ? *V_ARRAYREF(&v) : V_ARRAY(&v);
    }
    LONG lower = 0;
    LONG upper = -1;
    if (array && SUCCEEDED(SafeArrayGetLBound(array, 1, &lower)) &&
        SUCCEEDED(SafeArrayGetUBound(array, 1, &upper)) && upper >= lower) {
        shape.redim(lower, upper);
    }
    return shape;
}

void toCom(const caudalis::Variant& l, VARIANT& c) {
    VariantInit(&c);
    switch (l.type()) {
        case caudalis::Variant::Type::Empty:
            return;
        case caudalis::Variant::Type::Null:
            V_VT(&c) = VT_NULL;
            return;
        case caudalis::Variant::Type::Boolean:
            toCom(l.toBoolean(), c);
            return;
        case caudalis::Variant::Type::Integer:
            toCom(l.toInteger(), c);
            return;
        case caudalis::Variant::Type::Long:
            toCom(l.toLong(), c);
            return;
        case caudalis::Variant::Type::Double:
            toCom(l.toDouble(), c);
            return;
        case caudalis::Variant::Type::String:
            toCom(l.toString(), c);
            return;
        case caudalis::Variant::Type::Object: {
            const auto object = l.toObject<caudalis::Object>();
            V_VT(&c) = VT_DISPATCH;
            V_DISPATCH(&c) = nullptr;
            if (!object) {
                return;
            }
            IUnknown* unknown = nullptr;
            if (auto* host = dynamic_cast<HostObject*>(object.get())) {
                unknown = host->comObject();
                unknown->AddRef();
            } else {
                unknown = wrapAnyObject(object);
            }
            if (unknown &&
                FAILED(unknown->QueryInterface(IID_IDispatch, reinterpret_cast<void**>(&V_DISPATCH(&c))))) {
                V_VT(&c) = VT_UNKNOWN;
                V_UNKNOWN(&c) = unknown;
                return;
            }
            if (unknown) {
                unknown->Release();
            }
            return;
        }
        case caudalis::Variant::Type::Record:
            if (!recordToVariant(l, c)) {
                raiseError(RuntimeError::TypeMismatch);
            }
            return;
    }
}

void toCom(const double& l, VARIANT& c) {
    VariantInit(&c);
    V_VT(&c) = VT_R8;
    V_R8(&c) = l;
}

void toCom(const bool& l, VARIANT& c) {
    VariantInit(&c);
    V_VT(&c) = VT_BOOL;
    V_BOOL(&c) = l ? VARIANT_TRUE : VARIANT_FALSE;
}

void toCom(const std::int16_t& l, VARIANT& c) {
    VariantInit(&c);
    V_VT(&c) = VT_I2;
    V_I2(&c) = l;
}

void toCom(const std::int32_t& l, VARIANT& c) {
    VariantInit(&c);
    V_VT(&c) = VT_I4;
    V_I4(&c) = l;
}

void toCom(const std::string& l, VARIANT& c) {
    VariantInit(&c);
    V_VT(&c) = VT_BSTR;
    toCom(l, V_BSTR(&c));
}

void toCom(const caudalis::BoundedArray<caudalis::Variant>& l, VARIANT& c) {
    VariantInit(&c);
    SAFEARRAY* array = nullptr;
    toCom(l, array);
    if (array) {
        V_VT(&c) = VT_ARRAY | VT_VARIANT;
        V_ARRAY(&c) = array;
    }
}

void fromCom(IDispatch* const& c, caudalis::CollectionRef& l) {
    l = unwrapAs<caudalis::Collection>(c);
}

void toCom(const caudalis::CollectionRef& l, IDispatch*& c) {
    c = nullptr;
    if (IUnknown* unknown = wrap(l)) {
        unknown->QueryInterface(IID_IDispatch, reinterpret_cast<void**>(&c));
        unknown->Release();
    }
}

// ------------------------------------------------------------------------------ Invoke

VARIANT* argumentAt(DISPPARAMS* dp, UINT position, bool optional, VARIANT& missing) noexcept {
    const UINT positional = dp->cArgs - dp->cNamedArgs;
    if (position < positional) {
        return &dp->rgvarg[dp->cArgs - 1 - position];
    }
    if (dp->cNamedArgs == 1 && dp->rgdispidNamedArgs[0] == DISPID_PROPERTYPUT && position == 0) {
        return &dp->rgvarg[0];
    }
    if (!optional) {
        return nullptr;
    }
    VariantInit(&missing);
    V_VT(&missing) = VT_ERROR;
    V_ERROR(&missing) = DISP_E_PARAMNOTFOUND;
    return &missing;
}

void writeBackScalar(VARIANT* source, const VARIANT& converted) {
    if (!source || !(V_VT(source) & VT_BYREF)) {
        return;
    }
    if (V_VT(source) == (VT_BYREF | VT_VARIANT)) {
        VARIANT& target = dereferenced(*source);
        VariantClear(&target);
        VariantCopy(&target, const_cast<VARIANT*>(&converted));
        return;
    }
    VARIANT typed;
    VariantInit(&typed);
    if (FAILED(VariantChangeType(&typed, const_cast<VARIANT*>(&converted), 0, V_VT(source) & ~VT_BYREF))) {
        return;
    }
    switch (V_VT(source) & ~VT_BYREF) {
        case VT_R8:
            *V_R8REF(source) = V_R8(&typed);
            break;
        case VT_I4:
            *V_I4REF(source) = V_I4(&typed);
            break;
        case VT_I2:
            *V_I2REF(source) = V_I2(&typed);
            break;
        case VT_BOOL:
            *V_BOOLREF(source) = V_BOOL(&typed);
            break;
        case VT_BSTR:
            SysFreeString(*V_BSTRREF(source));
            *V_BSTRREF(source) = V_BSTR(&typed);
            V_VT(&typed) = VT_EMPTY;
            break;
        default:
            break;
    }
    VariantClear(&typed);
}

HRESULT conversionFailure(HRESULT hr) noexcept {
    if (hr == DISP_E_OVERFLOW) {
        return raiseComError(hresultOf(RuntimeError::Overflow), standardErrorText(RuntimeError::Overflow));
    }
    return DISP_E_TYPEMISMATCH;
}

Arg<SAFEARRAY*>::Arg(DISPPARAMS* dp, UINT position, UINT, bool optional) {
    VARIANT* source = argumentAt(dp, position, optional, missing_);
    if (!source) {
        status_ = DISP_E_PARAMNOTFOUND;
        return;
    }
    VARIANT& v = dereferenced(*source);
    if (V_VT(&v) == VT_EMPTY) {
        return;
    }
    if (!(V_VT(&v) & VT_ARRAY)) {
        status_ = DISP_E_TYPEMISMATCH;
        return;
    }
    if (V_VT(&v) & VT_BYREF) {
        target_ = V_ARRAYREF(&v);
    } else if (V_VT(source) == (VT_BYREF | VT_VARIANT)) {
        target_ = &V_ARRAY(&v);
    } else if (FAILED(SafeArrayCopy(V_ARRAY(&v), &copy_))) {
        status_ = E_OUTOFMEMORY;
    }
}

Arg<SAFEARRAY*>::~Arg() {
    clearCom(copy_);
}

HRESULT recordArgument(DISPPARAMS* dp, UINT position, IRecordInfo* expected, void** data) noexcept {
    VARIANT missing;
    VARIANT* source = argumentAt(dp, position, false, missing);
    if (!source) {
        return DISP_E_PARAMNOTFOUND;
    }
    const VARIANT& v = dereferenced(*source);
    if (V_VT(&v) != VT_RECORD || !v.pvRecord || !sameRecord(v.pRecInfo, expected)) {
        return DISP_E_TYPEMISMATCH;
    }
    *data = v.pvRecord;
    return S_OK;
}

HRESULT objectArgument(DISPPARAMS* dp, UINT position, REFIID iid, void** object) noexcept {
    VARIANT missing;
    VARIANT* source = argumentAt(dp, position, false, missing);
    if (!source) {
        return DISP_E_PARAMNOTFOUND;
    }
    const VARIANT& v = dereferenced(*source);
    const VARTYPE vt = V_VT(&v) & ~VT_BYREF;
    if (vt == VT_EMPTY) {
        return S_OK;
    }
    if (vt != VT_DISPATCH && vt != VT_UNKNOWN) {
        return DISP_E_TYPEMISMATCH;
    }
    IUnknown* unknown = V_VT(&v) & VT_BYREF ? *V_UNKNOWNREF(&v) : V_UNKNOWN(&v);
    if (!unknown) {
        return S_OK;
    }
    if (SUCCEEDED(unknown->QueryInterface(iid, object))) {
        return S_OK;
    }
    return DISP_E_TYPEMISMATCH;
}

}  // namespace caudalis::com
