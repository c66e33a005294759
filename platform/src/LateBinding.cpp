#include "LateBinding.hpp"

#include <dispex.h>

namespace caudalis::com {
namespace {

/// {A6EF9860-C720-11D0-9337-00A0C90DCAA9}, which mingw-w64's uuid library does not carry.
const IID dispatchExIid = {0xa6ef9860, 0xc720, 0x11d0, {0x93, 0x37, 0x00, 0xa0, 0xc9, 0x0d, 0xca, 0xa9}};

constexpr std::int32_t memberNotSupported = 438;

/// The library error for the exception a host's member raised.
[[noreturn]] void raiseHostException(EXCEPINFO& exception) {
    if (exception.pfnDeferredFillIn) {
        exception.pfnDeferredFillIn(&exception);
    }
    std::string description;
    fromCom(exception.bstrDescription, description);
    SysFreeString(exception.bstrSource);
    SysFreeString(exception.bstrDescription);
    SysFreeString(exception.bstrHelpFile);
    const HRESULT code = exception.scode != 0 ? exception.scode : hresultOf(exception.wCode);
    throw caudalis::Error(numberOf(code), description);
}

/// Numbers of kinds the library has no type for (Decimal, as engines give an identity or a
/// numeric column, and 64-bit or unsigned integers) are read as Double.
void widenNumber(VARIANT& value) {
    switch (V_VT(&value)) {
        case VT_DECIMAL:
        case VT_I8:
        case VT_UI8:
        case VT_I1:
        case VT_UI2:
        case VT_UI4:
        case VT_INT:
        case VT_UINT:
            check(VariantChangeType(&value, &value, 0, VT_R8));
            break;
        default:
            break;
    }
}

std::string narrowName(const wchar_t* name) {
    std::string text;
    for (; *name; ++name) {
        text += static_cast<char>(*name);
    }
    return text;
}

}  // namespace

LateBound::LateBound(IDispatch* object) : object_(object) {
    object_->AddRef();
}

LateBound::LateBound(const LateBound& other) : LateBound(other.object_) {}

LateBound::~LateBound() {
    object_->Release();
}

std::optional<LateBound> LateBound::from(const VARIANT& value) {
    const VARIANT& held = dereferenced(value);
    if (V_VT(&held) != VT_DISPATCH || V_DISPATCH(&held) == nullptr) {
        return std::nullopt;
    }
    return LateBound(V_DISPATCH(&held));
}

LateBound LateBound::of(IUnknown* object) {
    IDispatch* dispatch = nullptr;
    if (FAILED(object->QueryInterface(IID_IDispatch, reinterpret_cast<void**>(&dispatch)))) {
        raiseError(RuntimeError::TypeMismatch, "The object is no automation object.");
    }
    LateBound bound(dispatch);
    dispatch->Release();
    return bound;
}

/// Objects of script classes answer only IDispatchEx::GetDispID, so that is asked first.
std::optional<DISPID> LateBound::findMember(const wchar_t* name) const {
    DISPID id = DISPID_UNKNOWN;
    IDispatchEx* extended = nullptr;
    if (SUCCEEDED(object_->QueryInterface(dispatchExIid, reinterpret_cast<void**>(&extended)))) {
        BSTR text = SysAllocString(name);
        const HRESULT hr = extended->GetDispID(text, fdexNameCaseInsensitive, &id);
        SysFreeString(text);
        extended->Release();
        if (SUCCEEDED(hr)) {
            return id;
        }
    }
    LPOLESTR names[] = {const_cast<LPOLESTR>(name)};
    if (SUCCEEDED(object_->GetIDsOfNames(IID_NULL, names, 1, LOCALE_USER_DEFAULT, &id))) {
        return id;
    }
    return std::nullopt;
}

bool LateBound::has(const wchar_t* name) const {
    return findMember(name).has_value();
}

VARIANT LateBound::invoke(const wchar_t* name, VARIANT* argument) const {
    const std::optional<DISPID> id = findMember(name);
    if (!id) {
        raiseError(memberNotSupported, "The object has no member " + narrowName(name) + ".");
    }
    DISPPARAMS params{argument, nullptr, argument ? 1U : 0U, 0};
    VARIANT result;
    VariantInit(&result);
    EXCEPINFO exception{};
    const HRESULT hr =
        object_->Invoke(*id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD | DISPATCH_PROPERTYGET, &params,
                        &result, &exception, nullptr);
    if (hr == DISP_E_EXCEPTION) {
        raiseHostException(exception);
    }
    check(hr);
    return result;
}

void LateBound::call(const wchar_t* name) const {
    VARIANT result = invoke(name);
    VariantClear(&result);
}

caudalis::Variant LateBound::value(const wchar_t* name, VARIANT* argument) const {
    VARIANT result = invoke(name, argument);
    try {
        widenNumber(result);
        const auto converted = in<caudalis::Variant>(result);
        VariantClear(&result);
        return converted;
    } catch (...) {
        VariantClear(&result);
        throw;
    }
}

LateBound LateBound::object(const wchar_t* name, VARIANT* argument) const {
    VARIANT result = invoke(name, argument);
    std::optional<LateBound> held = from(result);
    VariantClear(&result);
    if (!held) {
        raiseError(RuntimeError::TypeMismatch, "The member " + narrowName(name) + " gives no object.");
    }
    return *held;
}

}  // namespace caudalis::com
