// The in-process server's entry points: class objects, unloading, and (un)registration of the
// program identifiers, classes, interfaces and type library, machine-wide or for one user.

#include <olectl.h>

#include <map>
#include <string>
#include <vector>

#include "CaudalisRecords.hpp"

namespace caudalis::com {
namespace {

HMODULE module = nullptr;
LONG objects = 0;
LONG locks = 0;

/// {00020424-0000-0000-C000-000000000046}: the automation marshaller, for dual interfaces.
constexpr const wchar_t* automationProxy = L"{00020424-0000-0000-C000-000000000046}";

std::wstring guidText(REFGUID id) {
    wchar_t text[64];
    StringFromGUID2(id, text, 64);
    return text;
}

std::wstring modulePath() {
    wchar_t path[MAX_PATH];
    const DWORD length = GetModuleFileNameW(module, path, MAX_PATH);
    return std::wstring(path, length);
}

ITypeLib* typeLibrary() {
    static ITypeLib* library = nullptr;
    if (!library) {
        LoadTypeLibEx(modulePath().c_str(), REGKIND_NONE, &library);
    }
    return library;
}

/// A class object; while one lives the server stays loaded (hosts may keep one to create many).
class ClassFactory final : public IClassFactory {
public:
    explicit ClassFactory(const ClassEntry& entry) : entry_(entry) { objectCreated(); }
    ~ClassFactory() { objectDestroyed(); }
    ClassFactory(const ClassFactory&) = delete;
    ClassFactory& operator=(const ClassFactory&) = delete;
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** object) override {
        if (IsEqualIID(riid, IID_IUnknown) || IsEqualIID(riid, IID_IClassFactory)) {
            *object = static_cast<IClassFactory*>(this);
            AddRef();
            return S_OK;
        }
        *object = nullptr;
        return E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return references_.add(); }
    ULONG STDMETHODCALLTYPE Release() override { return references_.release(this); }
    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID riid, void** object) override {
        *object = nullptr;
        if (outer) {
            return CLASS_E_NOAGGREGATION;
        }
        IUnknown* made = nullptr;
        const HRESULT hr = guard([&] { made = entry_.make(); });
        if (FAILED(hr)) {
            return hr;
        }
        const HRESULT answer = made->QueryInterface(riid, object);
        made->Release();
        return answer;
    }
    HRESULT STDMETHODCALLTYPE LockServer(BOOL lock) override {
        if (lock) {
            InterlockedIncrement(&locks);
        } else {
            InterlockedDecrement(&locks);
        }
        return S_OK;
    }

private:
    const ClassEntry& entry_;
    ReferenceCount references_;
};

/// Writes the server's keys under one root (HKEY_CLASSES_ROOT, or a user's Software\Classes).
class Registration {
public:
    explicit Registration(HKEY root) : root_(root) {}

    HRESULT registerAll() {
        const std::wstring path = modulePath();
        const std::wstring library = guidText(LIBID_Caudalis);
        for (std::size_t i = 0; i < classCount; ++i) {
            const ClassEntry& entry = classTable[i];
            if (!entry.make) {
                continue;
            }
            const std::wstring progid = std::wstring(L"Caudalis.") + entry.name;
            const std::wstring clsid = L"CLSID\\" + guidText(*entry.clsid);
            set(progid, nullptr, progid);
            set(progid + L"\\CLSID", nullptr, guidText(*entry.clsid));
            set(clsid, nullptr, progid);
            set(clsid + L"\\InprocServer32", nullptr, path);
            set(clsid + L"\\InprocServer32", L"ThreadingModel", L"Apartment");
            set(clsid + L"\\ProgID", nullptr, progid);
            set(clsid + L"\\TypeLib", nullptr, library);
            set(clsid + L"\\VERSION", nullptr, L"1.0");
        }
        for (std::size_t i = 0; i < interfaceCount; ++i) {
            const std::wstring key = L"Interface\\" + guidText(*interfaceTable[i].iid);
            set(key, nullptr, interfaceTable[i].name);
            set(key + L"\\ProxyStubClsid32", nullptr, automationProxy);
            set(key + L"\\TypeLib", nullptr, library);
            set(key + L"\\TypeLib", L"Version", L"1.0");
        }
        const std::wstring version = L"TypeLib\\" + library + L"\\1.0";
        const std::wstring folder = path.substr(0, path.find_last_of(L'\\'));
        set(version, nullptr, L"Caudalis");
        set(version + L"\\0\\" + platformKey(), nullptr, path);
        set(version + L"\\FLAGS", nullptr, L"0");
        set(version + L"\\HELPDIR", nullptr, folder);
        return failed_ ? SELFREG_E_CLASS : S_OK;
    }

    HRESULT unregisterAll() {
        for (std::size_t i = 0; i < classCount; ++i) {
            const ClassEntry& entry = classTable[i];
            if (!entry.make) {
                continue;
            }
            // Class keys are kept apart for 32-bit and 64-bit servers (each platform sees its own);
            // the program identifier's key is shared by both, so it goes only when the other
            // platform's server is not registered for the class.
            const std::wstring clsid = L"CLSID\\" + guidText(*entry.clsid);
            RegDeleteTreeW(root_, clsid.c_str());
            if (!existsForOtherPlatform(clsid + L"\\InprocServer32")) {
                RegDeleteTreeW(root_, (std::wstring(L"Caudalis.") + entry.name).c_str());
            }
        }
        for (std::size_t i = 0; i < interfaceCount; ++i) {
            RegDeleteTreeW(root_, (L"Interface\\" + guidText(*interfaceTable[i].iid)).c_str());
        }
        // The type library's key is shared by the 32-bit and the 64-bit server: only this
        // platform's entry goes, and the rest only when no other platform is left.
        const std::wstring library = L"TypeLib\\" + guidText(LIBID_Caudalis);
        const std::wstring version = library + L"\\1.0";
        RegDeleteTreeW(root_, (version + L"\\0\\" + platformKey()).c_str());
        if (RegDeleteKeyW(root_, (version + L"\\0").c_str()) == ERROR_SUCCESS || !exists(version + L"\\0")) {
            RegDeleteTreeW(root_, library.c_str());
        }
        // A user's Software\Classes may have had these folders only for this server: they go
        // when empty (deleting a key that still has subkeys fails and leaves it).
        for (const wchar_t* folder : {L"CLSID", L"Interface", L"TypeLib"}) {
            RegDeleteKeyW(root_, folder);
        }
        return S_OK;
    }

private:
    static const wchar_t* platformKey() { return sizeof(void*) == 8 ? L"win64" : L"win32"; }

    bool exists(const std::wstring& key, REGSAM view = 0) const {
        HKEY handle = nullptr;
        if (RegOpenKeyExW(root_, key.c_str(), 0, KEY_READ | view, &handle) != ERROR_SUCCESS) {
            return false;
        }
        RegCloseKey(handle);
        return true;
    }

    /// The key exists in the other platform's view of the registry (on 32-bit Windows, which
    /// has one view, in this one).
    bool existsForOtherPlatform(const std::wstring& key) const {
        return exists(key, sizeof(void*) == 8 ? KEY_WOW64_32KEY : KEY_WOW64_64KEY);
    }

    void set(const std::wstring& key, const wchar_t* name, const std::wstring& value) {
        HKEY handle = nullptr;
        if (RegCreateKeyExW(root_, key.c_str(), 0, nullptr, 0, KEY_WRITE, nullptr, &handle, nullptr) !=
            ERROR_SUCCESS) {
            failed_ = true;
            return;
        }
        const auto bytes = static_cast<DWORD>((value.size() + 1) * sizeof(wchar_t));
        if (RegSetValueExW(handle, name, 0, REG_SZ, reinterpret_cast<const BYTE*>(value.c_str()), bytes) !=
            ERROR_SUCCESS) {
            failed_ = true;
        }
        RegCloseKey(handle);
    }

    HKEY root_;
    bool failed_ = false;
};

/// The root for one user's registration: HKEY_CURRENT_USER\Software\Classes.
class UserClasses {
public:
    UserClasses() {
        RegCreateKeyExW(HKEY_CURRENT_USER, L"Software\\Classes", 0, nullptr, 0, KEY_ALL_ACCESS, nullptr,
                        &key_, nullptr);
    }
    ~UserClasses() {
        if (key_) {
            RegCloseKey(key_);
        }
    }
    UserClasses(const UserClasses&) = delete;
    UserClasses& operator=(const UserClasses&) = delete;
    HKEY key() const noexcept { return key_; }

private:
    HKEY key_ = nullptr;
};

}  // namespace

HMODULE serverModule() {
    return module;
}

void objectCreated() noexcept {
    InterlockedIncrement(&objects);
}

void objectDestroyed() noexcept {
    InterlockedDecrement(&objects);
}

long liveObjects() noexcept {
    return objects;
}

ITypeInfo* typeInfoOf(REFGUID id) {
    static std::map<std::wstring, ITypeInfo*> cache;
    ITypeInfo*& info = cache[guidText(id)];
    if (!info && typeLibrary()) {
        typeLibrary()->GetTypeInfoOfGuid(id, &info);
    }
    return info;
}

}  // namespace caudalis::com

using namespace caudalis::com;

extern "C" BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, LPVOID) {
    if (reason == DLL_PROCESS_ATTACH) {
        caudalis::com::module = instance;
        DisableThreadLibraryCalls(instance);
    }
    return TRUE;
}

STDAPI DllGetClassObject(REFCLSID clsid, REFIID riid, void** object) {
    *object = nullptr;
    for (std::size_t i = 0; i < classCount; ++i) {
        if (classTable[i].make && IsEqualCLSID(clsid, *classTable[i].clsid)) {
            auto* factory = new ClassFactory(classTable[i]);
            const HRESULT hr = factory->QueryInterface(riid, object);
            factory->Release();
            return hr;
        }
    }
    return CLASS_E_CLASSNOTAVAILABLE;
}

STDAPI DllCanUnloadNow() {
    return liveObjects() == 0 && caudalis::com::locks == 0 ? S_OK : S_FALSE;
}

STDAPI DllRegisterServer() {
    return Registration(HKEY_CLASSES_ROOT).registerAll();
}

STDAPI DllUnregisterServer() {
    return Registration(HKEY_CLASSES_ROOT).unregisterAll();
}

/// `regsvr32 /n /i:user Caudalis.dll` registers for the current user only (no administrator
/// rights needed); `regsvr32 /u /n /i:user Caudalis.dll` removes that registration.
STDAPI DllInstall(BOOL install, LPCWSTR command) {
    if (!command || lstrcmpiW(command, L"user") != 0) {
        return install ? DllRegisterServer() : DllUnregisterServer();
    }
    UserClasses classes;
    if (!classes.key()) {
        return SELFREG_E_CLASS;
    }
    Registration registration(classes.key());
    return install ? registration.registerAll() : registration.unregisterAll();
}
