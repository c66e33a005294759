#pragma once
// A database connection of the client's own with ADO's shape, reached by the server only
// through IDispatch (no IDispatchEx, no type information), as a compiled host's ADO objects
// are. Wine has no ADO: it forwards to a Caudalis.Connection over SQLite, gives numbers as
// Decimal (as ADO's providers give an identity or a numeric column), keeps the statements it
// was given and counts the record sets left open.

#include <ole2.h>
#include <oleauto.h>
#include <windows.h>

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "Caudalis_h.h"

namespace hostdb {

/// ADO's error for a statement its engine cannot run (DB_E_ERRORSINCOMMAND).
constexpr HRESULT errorsInCommand = static_cast<HRESULT>(0x80040E14);

struct Log {
    std::vector<std::wstring> statements;
    int openRecordSets = 0;
    /// The next Execute fails with `errorsInCommand`.
    bool failNext = false;
};

using Member = std::function<HRESULT(DISPPARAMS& params, VARIANT& result, EXCEPINFO& exception)>;

/// An automation object whose members are functions, found by name (any case).
class NamedMembers final : public IDispatch {
public:
    explicit NamedMembers(std::vector<std::pair<std::wstring, Member>> members)
        : members_(std::move(members)) {}
    virtual ~NamedMembers() = default;
    NamedMembers(const NamedMembers&) = delete;
    NamedMembers& operator=(const NamedMembers&) = delete;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** object) override {
        if (IsEqualIID(riid, IID_IUnknown) || IsEqualIID(riid, IID_IDispatch)) {
            *object = static_cast<IDispatch*>(this);
            AddRef();
            return S_OK;
        }
        *object = nullptr;
        return E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
    ULONG STDMETHODCALLTYPE Release() override {
        const ULONG left = --references_;
        if (left == 0) {
            delete this;
        }
        return left;
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override {
        *count = 0;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) override {
        HRESULT hr = S_OK;
        for (UINT i = 0; i < count; ++i) {
            ids[i] = DISPID_UNKNOWN;
            for (std::size_t m = 0; m < members_.size(); ++m) {
                if (_wcsicmp(members_[m].first.c_str(), names[i]) == 0) {
                    ids[i] = static_cast<DISPID>(m + 1);
                }
            }
            hr = ids[i] == DISPID_UNKNOWN ? DISP_E_UNKNOWNNAME : hr;
        }
        return hr;
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* params, VARIANT* result,
                                     EXCEPINFO* exception, UINT*) override {
        if (id < 1 || static_cast<std::size_t>(id) > members_.size()) {
            return DISP_E_MEMBERNOTFOUND;
        }
        VARIANT unused;
        EXCEPINFO ignored{};
        VARIANT& out = result ? *result : unused;
        VariantInit(&out);
        const HRESULT hr = members_[id - 1].second(*params, out, exception ? *exception : ignored);
        if (!result) {
            VariantClear(&unused);
        }
        return hr;
    }

private:
    std::vector<std::pair<std::wstring, Member>> members_;
    ULONG references_ = 1;
};

/// A server interface pointer shared by the members that use it.
template <class I>
std::shared_ptr<I> shared(I* pointer) {
    return std::shared_ptr<I>(pointer, [](I* p) { p->Release(); });
}

inline HRESULT giveObject(IDispatch* object, VARIANT& result) {
    V_VT(&result) = VT_DISPATCH;
    V_DISPATCH(&result) = object;
    return S_OK;
}

/// The text of the only argument, by value or by reference.
inline BSTR textArgument(const DISPPARAMS& params) {
    if (params.cArgs != 1) {
        return nullptr;
    }
    const VARIANT& argument = params.rgvarg[0];
    if (V_VT(&argument) == (VT_BSTR | VT_BYREF)) {
        return *V_BSTRREF(&argument);
    }
    return V_VT(&argument) == VT_BSTR ? V_BSTR(&argument) : nullptr;
}

inline HRESULT raise(EXCEPINFO& exception, HRESULT code, const wchar_t* description) {
    exception = EXCEPINFO{};
    exception.scode = code;
    exception.bstrSource = SysAllocString(L"HostDatabase");
    exception.bstrDescription = SysAllocString(description);
    return DISP_E_EXCEPTION;
}

inline IDispatch* field(std::shared_ptr<_Field> value) {
    return new NamedMembers({{L"Value", [value](DISPPARAMS&, VARIANT& result, EXCEPINFO&) {
                                  VARIANT read;
                                  VariantInit(&read);
                                  const HRESULT hr = value->get_Value(&read);
                                  const bool number = V_VT(&read) == VT_I4 || V_VT(&read) == VT_R8;
                                  if (SUCCEEDED(hr) && number) {
                                      VariantChangeType(&result, &read, 0, VT_DECIMAL);
                                  } else {
                                      VariantCopy(&result, &read);
                                  }
                                  VariantClear(&read);
                                  return hr;
                              }}});
}

inline IDispatch* fields(std::shared_ptr<_Recordset> rows) {
    return new NamedMembers({{L"Item", [rows](DISPPARAMS& params, VARIANT& result, EXCEPINFO&) {
                                  VARIANT name;
                                  VariantInit(&name);
                                  V_VT(&name) = VT_BSTR;
                                  V_BSTR(&name) = textArgument(params);
                                  _Fields* columns = nullptr;
                                  HRESULT hr = rows->get_Fields(&columns);
                                  if (FAILED(hr)) {
                                      return hr;
                                  }
                                  _Field* found = nullptr;
                                  hr = columns->Item(&name, &found);
                                  columns->Release();
                                  return FAILED(hr) ? hr : giveObject(field(shared(found)), result);
                              }}});
}

/// A record set; one of a statement without rows is closed (State 0) and refuses to be read.
inline IDispatch* recordSet(std::shared_ptr<_Recordset> rows, bool open, std::shared_ptr<Log> log) {
    auto state = std::make_shared<long>(open ? 1 : 0);
    auto whenOpen = [state](EXCEPINFO& exception, const std::function<HRESULT()>& read) {
        return *state ? read() : raise(exception, static_cast<HRESULT>(0x800A0E78), L"The object is closed.");
    };
    return new NamedMembers({
        {L"State",
         [state](DISPPARAMS&, VARIANT& result, EXCEPINFO&) {
             V_VT(&result) = VT_I4;
             V_I4(&result) = *state;
             return S_OK;
         }},
        {L"EOF",
         [rows, whenOpen](DISPPARAMS&, VARIANT& result, EXCEPINFO& exception) {
             return whenOpen(exception, [&] {
                 V_VT(&result) = VT_BOOL;
                 return rows->get_EOF(&V_BOOL(&result));
             });
         }},
        {L"MoveNext",
         [rows, whenOpen](DISPPARAMS&, VARIANT&, EXCEPINFO& exception) {
             return whenOpen(exception, [&] { return rows->MoveNext(); });
         }},
        {L"Fields",
         [rows, whenOpen](DISPPARAMS&, VARIANT& result, EXCEPINFO& exception) {
             return whenOpen(exception, [&] { return giveObject(fields(rows), result); });
         }},
        {L"Close",
         [state, log, whenOpen](DISPPARAMS&, VARIANT&, EXCEPINFO& exception) {
             return whenOpen(exception, [&] {
                 *state = 0;
                 --log->openRecordSets;
                 return S_OK;
             });
         }},
    });
}

inline Member forward(std::shared_ptr<_Connection> inner, HRESULT (STDMETHODCALLTYPE _Connection::*step)()) {
    return [inner, step](DISPPARAMS&, VARIANT&, EXCEPINFO&) { return ((*inner).*step)(); };
}

/// The connection: Execute, BeginTrans, CommitTrans, RollbackTrans over `inner`.
inline IDispatch* connection(std::shared_ptr<_Connection> inner, std::shared_ptr<Log> log) {
    return new NamedMembers({
        {L"Execute",
         [inner, log](DISPPARAMS& params, VARIANT& result, EXCEPINFO& exception) {
             BSTR sql = textArgument(params);
             if (!sql) {
                 return DISP_E_TYPEMISMATCH;
             }
             log->statements.emplace_back(sql);
             if (log->failNext) {
                 log->failNext = false;
                 return raise(exception, errorsInCommand, L"Syntax error in INSERT INTO statement.");
             }
             _Recordset* rows = nullptr;
             const HRESULT hr = inner->Execute(&sql, &rows);
             if (FAILED(hr)) {
                 return hr;
             }
             const bool open = _wcsnicmp(sql, L"SELECT", 6) == 0;
             log->openRecordSets += open ? 1 : 0;
             return giveObject(recordSet(shared(rows), open, log), result);
         }},
        {L"BeginTrans", forward(inner, &_Connection::BeginTrans)},
        {L"CommitTrans", forward(inner, &_Connection::CommitTrans)},
        {L"RollbackTrans", forward(inner, &_Connection::RollbackTrans)},
    });
}

}  // namespace hostdb
