// The automation server as a compiled host sees it, through the generated header: records in
// and out, written-back arguments, a strategy of the host's own passed to newPivotWrapper, a
// full design of the small machine compared bit for bit with the native library's, a chart
// saved and found on SQLite, the same calls through IDispatch::Invoke, the error objects, the
// interface in the type library as described, and the registry after unregistration.
//
//   caudalis_com_client design CATALOGUE.db PROJECT.db REFERENCE.txt
//   caudalis_com_client user            (after regsvr32 /n /i:user)
//   caudalis_com_client unregistered

#include <ole2.h>
#include <oleauto.h>
#include <windows.h>

#include <cinttypes>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "Caudalis_h.h"
#include "HostConnection.hpp"
#include "SmallMachine.hpp"

namespace {

int failures = 0;
int checks = 0;

void check(bool ok, const char* what) {
    ++checks;
    if (!ok) {
        ++failures;
        std::printf("FAIL: %s\n", what);
    }
}

/// Fails the check (and says the HRESULT) when a call fails.
bool ok(HRESULT hr, const char* what) {
    char text[256];
    std::snprintf(text, sizeof text, "%s (0x%08lx)", what, static_cast<unsigned long>(hr));
    check(SUCCEEDED(hr), text);
    return SUCCEEDED(hr);
}

std::wstring widen(const char* text) {
    std::wstring result;
    for (; *text; ++text) {
        result += static_cast<wchar_t>(*text);
    }
    return result;
}

class Bstr {
public:
    explicit Bstr(const std::wstring& text) : value_(SysAllocString(text.c_str())) {}
    ~Bstr() { SysFreeString(value_); }
    Bstr(const Bstr&) = delete;
    Bstr& operator=(const Bstr&) = delete;
    BSTR* operator&() { return &value_; }
    BSTR get() const { return value_; }

private:
    BSTR value_;
};

template <class I>
struct Ref {
    I* p = nullptr;
    Ref() = default;
    Ref(const Ref&) = delete;
    Ref& operator=(const Ref&) = delete;
    ~Ref() {
        if (p) {
            p->Release();
        }
    }
    I* operator->() const { return p; }
    I** operator&() { return &p; }
};

ITypeLib* typeLibrary() {
    static ITypeLib* library = nullptr;
    if (!library) {
        LoadRegTypeLib(LIBID_Caudalis, 1, 0, 0, &library);
    }
    return library;
}

/// The type information named `name` of the given kind, from the registered type library.
ITypeInfo* typeInfoNamed(const wchar_t* name, TYPEKIND kind) {
    const UINT count = typeLibrary() ? typeLibrary()->GetTypeInfoCount() : 0;
    for (UINT i = 0; i < count; ++i) {
        TYPEKIND found = TKIND_MAX;
        BSTR text = nullptr;
        typeLibrary()->GetTypeInfoType(i, &found);
        typeLibrary()->GetDocumentation(static_cast<INT>(i), &text, nullptr, nullptr, nullptr);
        const bool match = found == kind && text && std::wstring(text) == name;
        SysFreeString(text);
        ITypeInfo* info = nullptr;
        if (match && SUCCEEDED(typeLibrary()->GetTypeInfo(i, &info))) {
            return info;
        }
    }
    return nullptr;
}

IRecordInfo* recordInfo(const wchar_t* name) {
    ITypeInfo* info = typeInfoNamed(name, TKIND_RECORD);
    IRecordInfo* record = nullptr;
    if (info) {
        GetRecordInfoFromTypeInfo(info, &record);
        info->Release();
    }
    return record;
}

std::uint64_t bitsOf(double value) {
    std::uint64_t bits = 0;
    std::memcpy(&bits, &value, sizeof bits);
    return bits;
}

/// A strategy of the host's own: the best-matching nozzle of the catalogue for each outlet.
class HostStrategy final : public _CalculosStrategy {
public:
    HostStrategy(_AspersoresStatic* catalogue, _CartaAspersores* chart)
        : catalogue_(catalogue), chart_(chart) {
        catalogue_->AddRef();
        chart_->AddRef();
    }
    ~HostStrategy() {
        catalogue_->Release();
        chart_->Release();
        if (all_) {
            all_->Release();
        }
    }
    HostStrategy(const HostStrategy&) = delete;
    HostStrategy& operator=(const HostStrategy&) = delete;

    int asked = 0;
    int before = 0;
    int after = 0;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** object) override {
        if (IsEqualIID(riid, IID_IUnknown) || IsEqualIID(riid, IID_IDispatch) ||
            IsEqualIID(riid, IID__CalculosStrategy)) {
            *object = static_cast<_CalculosStrategy*>(this);
            AddRef();
            return S_OK;
        }
        *object = nullptr;
        return E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
    ULONG STDMETHODCALLTYPE Release() override { return --references_; }  // lives on the stack
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override {
        *count = 0;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*,
                                     UINT*) override {
        return E_NOTIMPL;
    }

    HRESULT STDMETHODCALLTYPE setAvaillableAspersores(IDispatch** all) override {
        if (all_) {
            all_->Release();
        }
        all_ = *all;
        all_->AddRef();
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE beforeCompute(_PivotWrapper** wrapper) override {
        before += *wrapper != nullptr;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE afterCompute(_PivotWrapper** wrapper) override {
        after += *wrapper != nullptr;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE aspersorFor(saida* outlet, _Aspersor** chosen) override {
        ++asked;
        double pressure = small_machine::matchingPressure(outlet->pressao_actuante, outlet->pressao_ideal);
        double flow = outlet->caudal;
        double tolerance = small_machine::tolerance;
        return catalogue_->getBestMatch(&all_, &pressure, &flow, &tolerance, chosen);
    }
    HRESULT STDMETHODCALLTYPE carta(_CartaAspersores** chart) override {
        *chart = chart_;
        chart_->AddRef();
        return S_OK;
    }

private:
    _AspersoresStatic* catalogue_;
    _CartaAspersores* chart_;
    IDispatch* all_ = nullptr;
    ULONG references_ = 1;
};

/// Calls a member by name through IDispatch::Invoke; arguments in their written order.
HRESULT invoke(IDispatch* object, const wchar_t* name, std::vector<VARIANT> arguments, VARIANT* result,
               EXCEPINFO* exception = nullptr, WORD flags = DISPATCH_METHOD) {
    DISPID id = 0;
    std::wstring text(name);
    LPOLESTR names[] = {text.data()};
    HRESULT hr = object->GetIDsOfNames(IID_NULL, names, 1, LOCALE_USER_DEFAULT, &id);
    if (FAILED(hr)) {
        return hr;
    }
    std::vector<VARIANT> reversed(arguments.rbegin(), arguments.rend());
    DISPPARAMS params{reversed.data(), nullptr, static_cast<UINT>(reversed.size()), 0};
    EXCEPINFO local{};
    if (result) {
        VariantInit(result);
    }
    return object->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, flags, &params, result,
                          exception ? exception : &local, nullptr);
}

VARIANT byRef(VARIANT* target) {
    VARIANT v;
    VariantInit(&v);
    V_VT(&v) = VT_BYREF | VT_VARIANT;
    V_VARIANTREF(&v) = target;
    return v;
}

VARIANT recordVariant(void* data, IRecordInfo* info) {
    VARIANT v;
    VariantInit(&v);
    V_VT(&v) = VT_RECORD;
    v.pvRecord = data;
    v.pRecInfo = info;
    return v;
}

VARIANT longVariant(long value) {
    VARIANT v;
    VariantInit(&v);
    V_VT(&v) = VT_I4;
    V_I4(&v) = value;
    return v;
}

/// A text argument; the Variant owns its text (left to the process end in these checks).
VARIANT textVariant(const std::wstring& text) {
    VARIANT v;
    VariantInit(&v);
    V_VT(&v) = VT_BSTR;
    V_BSTR(&v) = SysAllocString(text.c_str());
    return v;
}

VARIANT objectVariant(IUnknown* object) {
    VARIANT v;
    VariantInit(&v);
    V_VT(&v) = VT_DISPATCH;
    object->QueryInterface(IID_IDispatch, reinterpret_cast<void**>(&V_DISPATCH(&v)));
    return v;
}

/// The small machine's pivot record, assembled through the server.
bool assemble(_Statics* statics, pivot& machine) {
    Ref<_Tramos> tramos;
    Ref<_Pivots> pivots;
    Ref<_Types> guns;
    if (!ok(statics->Tramos(&tramos), "Statics.Tramos") || !ok(statics->Pivots(&pivots), "Statics.Pivots") ||
        !ok(statics->Gun(&guns), "Statics.Gun")) {
        return false;
    }
    ok(statics->newPivot(&machine), "Statics.newPivot");
    machine.presion = small_machine::inletPressure;
    machine.caudal = small_machine::flow;
    machine.rugosidad = small_machine::roughness;

    IRecordInfo* tramoInfo = recordInfo(L"tramo");
    check(tramoInfo != nullptr, "the type library describes the record tramo");
    if (!tramoInfo) {
        return false;
    }
    SAFEARRAYBOUND bound{small_machine::spanCount, 1};
    SAFEARRAY* spans = SafeArrayCreateEx(VT_RECORD, 1, &bound, tramoInfo);
    SAFEARRAY* heights = SafeArrayCreate(VT_R8, 1, &bound);
    tramo* spanData = nullptr;
    double* heightData = nullptr;
    SafeArrayAccessData(spans, reinterpret_cast<void**>(&spanData));
    SafeArrayAccessData(heights, reinterpret_cast<void**>(&heightData));
    for (int i = 0; i < small_machine::spanCount; ++i) {
        const auto& s = small_machine::spans[i];
        long id = s.id;
        Bstr name(widen(s.name));
        double length = s.length;
        double diameter = s.diameter;
        double spacing = s.spacing_cm;
        VARIANT elevation;
        VariantInit(&elevation);
        V_VT(&elevation) = VT_ERROR;
        V_ERROR(&elevation) = DISP_E_PARAMNOTFOUND;
        // The new span moves into the array, which owns it from then on.
        ok(tramos->newTramo(&id, &name, &length, &diameter, &spacing, &elevation, &spanData[i]),
           "Tramos.newTramo");
        check(spanData[i].Saidas != nullptr && spanData[i].p_complete == VARIANT_TRUE,
              "newTramo sizes the outlets");
        heightData[i] = s.endHeight;
    }
    SafeArrayUnaccessData(spans);
    SafeArrayUnaccessData(heights);
    ok(pivots->setFixedSpans(&machine, &spans, &heights), "Pivots.setFixedSpans");
    SafeArrayDestroy(heights);  // the spans stay: their records hold arrays (see below)

    double ring = small_machine::gunRing;
    Gun gun{};
    ok(guns->newGun(&ring, &gun), "Types.newGun");
    ok(pivots->setEndGun(&machine, &gun), "Pivots.setEndGun");
    VARIANT_BOOL complete = VARIANT_FALSE;
    ok(pivots->isComplete(&machine, &complete), "Pivots.isComplete");
    check(complete == VARIANT_TRUE, "the small machine is complete");
    short fixed = 0;
    pivots->FixedSpansCount(&machine, &fixed);
    check(fixed == small_machine::spanCount, "setFixedSpans wrote the spans back into the record");
    tramoInfo->Release();
    return true;
}

std::vector<std::uint64_t> readReference(const char* path) {
    std::vector<std::uint64_t> values;
    if (FILE* file = std::fopen(path, "r")) {
        unsigned long long value = 0;
        while (std::fscanf(file, "%llx", &value) == 1) {
            values.push_back(value);
        }
        std::fclose(file);
    }
    return values;
}

/// Every outlet's acting pressure, fitted flow and required flow, then the total discharge.
std::vector<std::uint64_t> outletFigures(_PivotWrapper* wrapper) {
    std::vector<std::uint64_t> figures;
    long outlets = 0;
    ok(wrapper->numeroTotalDeSaidas(&outlets), "PivotWrapper.numeroTotalDeSaidas");
    for (long i = 1; i <= outlets; ++i) {
        saida outlet{};
        long index = i;
        if (!ok(wrapper->saidaAt(&index, &outlet), "PivotWrapper.saidaAt")) {
            break;
        }
        figures.push_back(bitsOf(outlet.pressao_actuante));
        figures.push_back(bitsOf(outlet.caudal_do_aspersor));
        figures.push_back(bitsOf(outlet.caudal));
        SysFreeString(outlet.nomeAspersor);
        if (outlet.obj_aspersor) {
            outlet.obj_aspersor->Release();
        }
    }
    double total = 0;
    ok(wrapper->totalComputedDischarge(&total), "PivotWrapper.totalComputedDischarge");
    figures.push_back(bitsOf(total));
    return figures;
}

/// The same figures read through IDispatch::Invoke (records come back as VT_RECORD).
std::vector<std::uint64_t> outletFiguresByName(IDispatch* wrapper) {
    std::vector<std::uint64_t> figures;
    VARIANT count;
    if (!ok(invoke(wrapper, L"numeroTotalDeSaidas", {}, &count), "Invoke numeroTotalDeSaidas")) {
        return figures;
    }
    for (long i = 1; i <= V_I4(&count); ++i) {
        VARIANT outlet;
        if (!ok(invoke(wrapper, L"saidaAt", {longVariant(i)}, &outlet), "Invoke saidaAt") ||
            V_VT(&outlet) != VT_RECORD) {
            check(false, "saidaAt through Invoke gives a record");
            break;
        }
        const auto* record = static_cast<const saida*>(outlet.pvRecord);
        figures.push_back(bitsOf(record->pressao_actuante));
        figures.push_back(bitsOf(record->caudal_do_aspersor));
        figures.push_back(bitsOf(record->caudal));
        VariantClear(&outlet);
    }
    VARIANT total;
    ok(invoke(wrapper, L"totalComputedDischarge", {}, &total), "Invoke totalComputedDischarge");
    figures.push_back(bitsOf(V_R8(&total)));
    return figures;
}

void compareWithReference(const std::vector<std::uint64_t>& figures,
                          const std::vector<std::uint64_t>& reference, const char* how) {
    char text[200];
    std::snprintf(text, sizeof text, "%s: %u figures, as many as the native reference (%u)", how,
                  static_cast<unsigned>(figures.size()), static_cast<unsigned>(reference.size()));
    check(!reference.empty() && figures.size() == reference.size(), text);
    std::size_t differing = 0;
    for (std::size_t i = 0; i < figures.size() && i < reference.size(); ++i) {
        differing += figures[i] != reference[i];
    }
    std::snprintf(text, sizeof text,
                  "%s: every outlet's pressure and flows equal the native ones bit for bit (%u differ)", how,
                  static_cast<unsigned>(differing));
    check(differing == 0, text);
}

// Records holding arrays (pivot, tramo) are left to the end of the process rather than cleared
// through IRecordInfo: Wine's RecordClear does not follow array fields.

/// A full design through the dual interface with a strategy of the host's own.
void design(_Statics* statics, const char* catalogue, const char* project, const char* referencePath) {
    const auto reference = readReference(referencePath);
    Ref<_AspersoresStatic> aspersores;
    Ref<_CartaAspersores> chart;
    ok(statics->Aspersores(&aspersores), "Statics.Aspersores");
    ok(statics->newCartaAspersores(&chart), "Statics.newCartaAspersores");
    Bstr catalogueString(L"Provider=SQLite;Data Source=" + widen(catalogue));
    Ref<IDispatch> all;
    ok(aspersores->find(&catalogueString, &all), "AspersoresStatic.find on the SQLite catalogue");

    pivot machine{};
    if (!assemble(statics, machine)) {
        return;
    }
    HostStrategy strategy(aspersores.p, chart.p);
    _CalculosStrategy* strategyPointer = &strategy;
    Ref<_PivotWrapper> wrapper;
    if (!ok(statics->newPivotWrapper(&machine, &strategyPointer, &wrapper), "Statics.newPivotWrapper")) {
        return;
    }
    ok(wrapper->setAvaillableAspersores(&all), "PivotWrapper.setAvaillableAspersores");
    ok(wrapper->calculate(), "PivotWrapper.calculate");
    check(strategy.before == 1 && strategy.after == 1,
          "the host strategy heard beforeCompute and afterCompute once");
    check(strategy.asked > 0, "the host strategy chose the sprinklers");
    compareWithReference(outletFigures(wrapper.p), reference, "dual interface");

    Ref<_CalculosStrategy> kept;
    ok(wrapper->strategy(&kept), "PivotWrapper.strategy");
    check(kept.p == &strategy, "PivotWrapper.strategy gives back the host's own object");

    pivot copy{};
    ok(wrapper->update(&copy), "PivotWrapper.update");
    check(copy.caudaDaCartaAssociada > 0 && copy.Tramos != nullptr, "update writes the computed pivot back");

    // The chart: extracted, saved on SQLite, found again.
    Ref<_CartaAspersores> extracted;
    ok(wrapper->extractCarta(&extracted), "PivotWrapper.extractCarta");
    Bstr name(L"Client chart");
    ok(extracted->setNome(&name), "CartaAspersores.setNome");
    Ref<_CartaAspersoresStatic> charts;
    ok(statics->CartaAspersor(&charts), "Statics.CartaAspersor");
    Bstr projectString(L"Provider=SQLite;Data Source=" + widen(project));
    long system = 7;
    ok(charts->saveAsNew(&projectString, &system, &extracted), "CartaAspersoresStatic.saveAsNew");
    long id = 0;
    extracted->get_id(&id);
    check(id > 0, "saveAsNew sets the chart's id");
    Bstr cataloguePath(widen(catalogue));
    short shortId = static_cast<short>(id);
    Ref<_CartaAspersores> found;
    ok(charts->find(&projectString, &cataloguePath, &shortId, &found), "CartaAspersoresStatic.find");
    BSTR foundName = nullptr;
    if (found.p) {
        found->getNome(&foundName);
    }
    check(foundName && std::wstring(foundName) == L"Client chart",
          "the chart found has the name it was saved with");
    SysFreeString(foundName);
    Ref<_CoordenadasSaidas> coordinates;
    statics->CoordenadasSaidas(&coordinates);
    int mountedBefore = 0;
    int mountedAfter = 0;
    for (short outlet = 1; outlet <= 23; ++outlet) {
        short span = 2;
        short number = outlet;
        CoordenadasSaida address{};
        coordinates->newTramoCoordenadas(&span, &number, &address);
        VARIANT_BOOL before = VARIANT_FALSE;
        VARIANT_BOOL after = VARIANT_FALSE;
        extracted->hasMountedAspersorAt(&address, &before);
        if (found.p) {
            found->hasMountedAspersorAt(&address, &after);
        }
        mountedBefore += before == VARIANT_TRUE;
        mountedAfter += after == VARIANT_TRUE;
    }
    check(mountedBefore > 0 && mountedAfter == mountedBefore,
          "the chart found has the sprinklers of span 2 that were saved");
    VARIANT_BOOL any = VARIANT_FALSE;
    charts->AnyFor(&projectString, &system, &any);
    check(any == VARIANT_TRUE, "AnyFor finds the saved chart's system");

    // A second time, late bound: the same design through IDispatch::Invoke only.
    Ref<IDispatch> staticsByName;
    statics->QueryInterface(IID_IDispatch, reinterpret_cast<void**>(&staticsByName));
    IRecordInfo* pivotInfo = recordInfo(L"pivot");
    pivot again{};
    if (!assemble(statics, again)) {
        return;
    }
    VARIANT wrapperByName;
    HostStrategy strategy2(aspersores.p, chart.p);
    if (!ok(invoke(staticsByName.p, L"newPivotWrapper",
                   {recordVariant(&again, pivotInfo),
                    objectVariant(static_cast<_CalculosStrategy*>(&strategy2))},
                   &wrapperByName),
            "Invoke newPivotWrapper")) {
        return;
    }
    IDispatch* lateWrapper = V_DISPATCH(&wrapperByName);
    VARIANT nothing;
    ok(invoke(lateWrapper, L"setAvaillableAspersores", {objectVariant(all.p)}, &nothing),
       "Invoke setAvaillableAspersores");
    ok(invoke(lateWrapper, L"calculate", {}, &nothing), "Invoke calculate");
    compareWithReference(outletFiguresByName(lateWrapper), reference, "IDispatch::Invoke");

    // The chart of the late-bound design, saved and found again through Invoke only.
    VARIANT lateChart;
    VARIANT lateCharts;
    ok(invoke(lateWrapper, L"extractCarta", {}, &lateChart), "Invoke extractCarta");
    ok(invoke(staticsByName.p, L"CartaAspersor", {}, &lateCharts), "Invoke CartaAspersor");
    ok(invoke(V_DISPATCH(&lateChart), L"setNome", {textVariant(L"Late chart")}, &nothing), "Invoke setNome");
    ok(invoke(V_DISPATCH(&lateCharts), L"saveAsNew",
              {textVariant(L"Provider=SQLite;Data Source=" + widen(project)), longVariant(system),
               objectVariant(V_DISPATCH(&lateChart))},
              &nothing),
       "Invoke saveAsNew");
    VARIANT lateId;
    ok(invoke(V_DISPATCH(&lateChart), L"id", {}, &lateId, nullptr, DISPATCH_PROPERTYGET), "Invoke id");
    VARIANT lateFound;
    VARIANT lateName;
    VariantInit(&lateName);
    if (ok(invoke(V_DISPATCH(&lateCharts), L"find",
                  {textVariant(L"Provider=SQLite;Data Source=" + widen(project)),
                   textVariant(widen(catalogue)), lateId},
                  &lateFound),
           "Invoke find") &&
        V_VT(&lateFound) == VT_DISPATCH) {
        invoke(V_DISPATCH(&lateFound), L"getNome", {}, &lateName);
        VariantClear(&lateFound);
    }
    check(V_VT(&lateId) == VT_I4 && V_I4(&lateId) > id && V_VT(&lateName) == VT_BSTR &&
              std::wstring(V_BSTR(&lateName)) == L"Late chart",
          "a chart saved and found through Invoke keeps its name and gets a new id");
    VariantClear(&lateName);
    VariantClear(&lateChart);
    VariantClear(&lateCharts);

    // Written back through Invoke: update(toUpdate) into a VT_RECORD argument.
    pivot target{};
    ok(invoke(lateWrapper, L"update", {recordVariant(&target, pivotInfo)}, &nothing), "Invoke update");
    check(target.caudaDaCartaAssociada == copy.caudaDaCartaAssociada,
          "update through Invoke writes the record back");
    VariantClear(&wrapperByName);
    pivotInfo->Release();
}

/// Written-back arguments of other kinds, the errors a host reads, and the records of Statics.
void recordsAndErrors(_Statics* statics) {
    Ref<_Types> placements;
    statics->Placements(&placements);
    double start = 0;
    double end = 3;
    double length = 50;
    Placement site{};
    ok(placements->newPlacement(&start, &end, &length, &site), "Types.newPlacement");
    check(site.p_angle == 0, "a new placement has no cached angle");
    double angle = 0;
    ok(placements->SlopeAngle(&site, &angle), "Types.SlopeAngle");
    check(site.p_angle == angle && angle > 0, "SlopeAngle writes the angle back into the caller's record");

    indicadores figures{};
    double hours = 24;
    short plugged = 3;
    ok(statics->newIndicadores(&hours, &plugged, &figures), "Statics.newIndicadores");
    check(figures.id == 0 && figures.horasRevolucao == 24 && figures.numeroSaidasObturadas == 3,
          "newIndicadores(24, 3) gives id 0");

    Ref<_Pivots> pivots;
    statics->Pivots(&pivots);
    pivot empty{};
    statics->newPivot(&empty);
    short fixed = -1;
    pivots->FixedSpansCount(&empty, &fixed);
    VARIANT_BOOL complete = VARIANT_TRUE;
    pivots->isComplete(&empty, &complete);
    check(fixed == 0 && complete == VARIANT_FALSE && empty.Tramos == nullptr, "newPivot is an empty machine");

    // A library error: vbObjectError + 900, source Caudalis, a description.
    Ref<_Drops> drops;
    statics->Drops(&drops);
    Drop incomplete{};
    const HRESULT hr = drops->Install(&incomplete);
    check(hr == static_cast<HRESULT>(0x80040384), "installing an incomplete drop fails with 0x80040384");
    IErrorInfo* info = nullptr;
    BSTR source = nullptr;
    BSTR description = nullptr;
    if (GetErrorInfo(0, &info) == S_OK && info) {
        info->GetSource(&source);
        info->GetDescription(&description);
        info->Release();
    }
    check(source && std::wstring(source) == L"Caudalis", "the error's source is Caudalis");
    check(description && SysStringLen(description) > 0, "the error has a description");
    SysFreeString(source);
    SysFreeString(description);

    // A runtime error through Invoke: subscript out of range (9) in the runtime's facility.
    Ref<IDispatch> pivotsByName;
    pivots->QueryInterface(IID_IDispatch, reinterpret_cast<void**>(&pivotsByName));
    IRecordInfo* pivotInfo = recordInfo(L"pivot");
    EXCEPINFO exception{};
    VARIANT result;
    const HRESULT invoked = invoke(pivotsByName.p, L"saidaAt",
                                   {recordVariant(&empty, pivotInfo), longVariant(1)}, &result, &exception);
    check(invoked == DISP_E_EXCEPTION && exception.scode == static_cast<HRESULT>(0x800A0009),
          "saidaAt on an empty machine raises error 9 through Invoke");
    check(exception.bstrSource && std::wstring(exception.bstrSource) == L"Caudalis",
          "Invoke's exception names Caudalis");
    SysFreeString(exception.bstrSource);
    SysFreeString(exception.bstrDescription);

    // Written back through Invoke into a by-reference Variant: Pluviometros.Area caches p_area.
    Ref<_Pluviometros> gauges;
    statics->Pluviometros(&gauges);
    Pluviometro gauge{};
    double diameter = 0.1;
    gauges->newPluviometro(&diameter, &gauge);
    Ref<IDispatch> gaugesByName;
    gauges->QueryInterface(IID_IDispatch, reinterpret_cast<void**>(&gaugesByName));
    VARIANT gaugeVariant = recordVariant(&gauge, recordInfo(L"Pluviometro"));
    VARIANT area;
    ok(invoke(gaugesByName.p, L"Area", {byRef(&gaugeVariant)}, &area), "Invoke Pluviometros.Area");
    check(gauge.p_area == V_R8(&area) && gauge.p_area > 0, "Area writes the cached area back through Invoke");
    pivotInfo->Release();
}

/// The description of the calling thread's error, or empty.
std::wstring lastErrorDescription() {
    IErrorInfo* info = nullptr;
    std::wstring text;
    if (GetErrorInfo(0, &info) == S_OK && info) {
        BSTR description = nullptr;
        info->GetDescription(&description);
        text = description ? description : L"";
        SysFreeString(description);
        info->Release();
    }
    return text;
}

bool anyStatementHolds(const hostdb::Log& log, const wchar_t* part) {
    for (const std::wstring& statement : log.statements) {
        if (statement.find(part) != std::wstring::npos) {
            return true;
        }
    }
    return false;
}

/// Evaluations stored through a connection of the host's own, reached by IDispatch alone.
void hostsOwnConnection(_Statics* statics, const char* project) {
    _Connection* inner = nullptr;
    if (!ok(CoCreateInstance(CLSID_Connection, nullptr, CLSCTX_INPROC_SERVER, IID__Connection,
                             reinterpret_cast<void**>(&inner)),
            "CoCreateInstance Caudalis.Connection")) {
        return;
    }
    const auto forwarded = hostdb::shared(inner);
    VARIANT where = textVariant(L"Provider=SQLite;Data Source=" + widen(project));
    ok(forwarded->Open(&where), "Connection.Open on the project");
    const auto log = std::make_shared<hostdb::Log>();
    IDispatch* host = hostdb::connection(forwarded, log);
    Ref<_PivotEvaluations> evaluations;
    statics->PivotEvaluations(&evaluations);

    Bstr name(L"Compiled host");
    PivotEvaluation stored{};
    evaluations->newEvaluation(&name, &stored);
    ok(evaluations->save(&host, &stored), "PivotEvaluations.save on the host's connection");
    check(stored.id > 0, "save writes back the id the host's engine gave as a Decimal");
    check(anyStatementHolds(*log, L"@@IDENTITY"), "the identity is asked for in the host's own dialect");
    check(log->openRecordSets == 0, "every record set of the host's is closed after save");

    Bstr found(L"name = 'Compiled host' AND true");
    VARIANT exists;
    VariantInit(&exists);
    ok(evaluations->exists(&host, &found, &exists), "PivotEvaluations.exists on the host's connection");
    check(V_VT(&exists) == VT_BOOL && V_BOOL(&exists) == VARIANT_TRUE, "the stored evaluation is found");

    // The host's transaction brackets a save; rolled back, nothing stays.
    forwarded->BeginTrans();
    Bstr second(L"Rolled back");
    PivotEvaluation dropped{};
    evaluations->newEvaluation(&second, &dropped);
    ok(evaluations->save(&host, &dropped), "save inside the host's transaction");
    forwarded->RollbackTrans();
    Bstr droppedName(L"name = 'Rolled back'");
    evaluations->exists(&host, &droppedName, &exists);
    check(V_VT(&exists) == VT_BOOL && V_BOOL(&exists) == VARIANT_FALSE, "the host's rollback leaves no row");

    // What the host's engine raises comes back with its number and description.
    log->failNext = true;
    Bstr third(L"Refused");
    PivotEvaluation refused{};
    evaluations->newEvaluation(&third, &refused);
    const HRESULT hr = evaluations->save(&host, &refused);
    check(hr == hostdb::errorsInCommand, "the host's error 0x80040E14 comes back as it was raised");
    check(lastErrorDescription() == L"Syntax error in INSERT INTO statement.",
          "the host's description comes back with it");
    check(refused.id == 0, "a refused save writes no id back");
    host->Release();
    forwarded->Close();
}

/// A Variant argument takes a number of any automation width: the narrow ones come back as
/// Integer or Long, the wide ones (64-bit, unsigned 32-bit, decimal) as Double.
void numbersOfEveryWidth() {
    Ref<IDispatch> items;
    if (!ok(CoCreateInstance(CLSID_Collection, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch,
                             reinterpret_cast<void**>(&items)),
            "CoCreateInstance Caudalis.Collection")) {
        return;
    }
    struct Width {
        VARTYPE given;
        double value;
        VARTYPE expected;
        const char* what;
    };
    const Width widths[] = {
        {VT_I1, -3, VT_I2, "a signed byte comes back as an Integer"},
        {VT_UI2, 60000, VT_I4, "an unsigned 16-bit number comes back as a Long"},
        {VT_UI4, 4000000000.0, VT_R8, "an unsigned 32-bit number comes back as a Double"},
        {VT_I8, 5000000000.0, VT_R8, "a 64-bit number comes back as a Double"},
        {VT_DECIMAL, 2.5, VT_R8, "a decimal comes back as a Double"},
    };
    long index = 0;
    for (const Width& width : widths) {
        VARIANT number;
        VariantInit(&number);
        V_VT(&number) = VT_R8;
        V_R8(&number) = width.value;
        VariantChangeType(&number, &number, 0, width.given);
        if (!ok(invoke(items.p, L"Add", {number}, nullptr), width.what)) {
            continue;
        }
        VARIANT back;
        ok(invoke(items.p, L"Item", {longVariant(++index)}, &back), width.what);
        VARIANT asDouble;
        VariantInit(&asDouble);
        VariantChangeType(&asDouble, &back, 0, VT_R8);
        check(V_VT(&back) == width.expected && V_R8(&asDouble) == width.value, width.what);
        VariantClear(&back);
    }
}

/// The Statics edge cases through the server.
void staticsEdgeCases(_Statics* statics) {
    Ref<_Tramos> a;
    Ref<_Tramos> b;
    statics->Tramos(&a);
    statics->Tramos(&b);
    check(a.p == b.p, "two calls of Statics.Tramos give the same object");
    Ref<_Types> gun;
    Ref<_Types> placements;
    Ref<_Types> saidas;
    statics->Gun(&gun);
    statics->Placements(&placements);
    statics->Saidas(&saidas);
    check(gun.p != placements.p && placements.p != saidas.p && gun.p != saidas.p,
          "Gun, Placements and Saidas are three different Types objects");
    Ref<_CartaAspersores> c1;
    Ref<_CartaAspersores> c2;
    statics->newCartaAspersores(&c1);
    statics->newCartaAspersores(&c2);
    check(c1.p != c2.p, "two charts are two objects");
    Ref<_Statics> other;
    CoCreateInstance(CLSID_Statics, nullptr, CLSCTX_INPROC_SERVER, IID__Statics,
                     reinterpret_cast<void**>(&other));
    Ref<_AspersoresStatic> mine1;
    Ref<_AspersoresStatic> mine2;
    Ref<_AspersoresStatic> theirs;
    statics->Aspersores(&mine1);
    statics->Aspersores(&mine2);
    other->Aspersores(&theirs);
    check(mine1.p == mine2.p && mine1.p != theirs.p, "Aspersores is kept per Statics object");
}

struct Member {
    const wchar_t* face;
    const wchar_t* name;
    DISPID id;
    int parameters;
};
const Member members[] = {
#include "InterfaceTable.inc"
};

/// Every member of every interface is in the type library with its dispatch id, in order.
void interfaceAsDescribed() {
    int missing = 0;
    ITypeInfo* info = nullptr;
    std::wstring face;
    for (const Member& m : members) {
        if (face != m.face) {
            if (info) {
                info->Release();
                info = nullptr;
            }
            face = m.face;
            info = typeInfoNamed(m.face, TKIND_DISPATCH);
            if (!info) {
                ++missing;
                std::printf("interface %ls is not in the type library\n", m.face);
                continue;
            }
        }
        if (!info) {
            continue;
        }
        std::wstring name(m.name);
        LPOLESTR names[] = {name.data()};
        MEMBERID id = 0;
        if (FAILED(info->GetIDsOfNames(names, 1, &id)) || id != m.id) {
            ++missing;
            std::printf("member %ls.%ls not found with id %ld\n", m.face, m.name, static_cast<long>(m.id));
        }
    }
    if (info) {
        info->Release();
    }
    char text[128];
    std::snprintf(text, sizeof text, "all %u described members are in the type library with their ids",
                  static_cast<unsigned>(sizeof members / sizeof members[0]));
    check(missing == 0, text);
}

bool keyExists(HKEY root, const std::wstring& key, REGSAM view) {
    HKEY handle = nullptr;
    if (RegOpenKeyExW(root, key.c_str(), 0, KEY_READ | view, &handle) != ERROR_SUCCESS) {
        return false;
    }
    RegCloseKey(handle);
    return true;
}

std::wstring guidText(REFGUID id) {
    wchar_t text[64];
    StringFromGUID2(id, text, 64);
    return text;
}

/// After unregistration no key of the server is left, in either registry view or for the user.
void unregistered() {
    const std::wstring keys[] = {
        L"Caudalis.Statics",
        L"Caudalis.Collection",
        L"CLSID\\" + guidText(CLSID_Statics),
        L"CLSID\\" + guidText(CLSID_PivotWrapper),
        L"Interface\\" + guidText(IID__Statics),
        L"Interface\\" + guidText(IID__Aspersor),
        L"TypeLib\\" + guidText(LIBID_Caudalis),
    };
    int left = 0;
    for (const auto& key : keys) {
        for (REGSAM view : {KEY_WOW64_32KEY, KEY_WOW64_64KEY}) {
            if (keyExists(HKEY_CLASSES_ROOT, key, view) ||
                keyExists(HKEY_CURRENT_USER, L"Software\\Classes\\" + key, view)) {
                ++left;
                std::printf("left behind: %ls\n", key.c_str());
            }
        }
    }
    check(left == 0, "unregistration leaves no key behind");
}

/// A class object the host keeps holds the server in memory: it cannot be unloaded while one
/// lives, and can once the last goes.
void classObjectKeepsServer() {
    IClassFactory* factory = nullptr;
    if (!ok(CoGetClassObject(CLSID_Statics, CLSCTX_INPROC_SERVER, nullptr, IID_IClassFactory,
                             reinterpret_cast<void**>(&factory)),
            "CoGetClassObject Caudalis.Statics")) {
        return;
    }
    HMODULE server = GetModuleHandleW(L"Caudalis.dll");
    using CanUnload = HRESULT(STDAPICALLTYPE*)();
    const auto canUnload =
        server
            ? reinterpret_cast<CanUnload>(reinterpret_cast<void*>(GetProcAddress(server, "DllCanUnloadNow")))
            : nullptr;
    check(canUnload != nullptr, "the server is loaded and exports DllCanUnloadNow");
    if (canUnload) {
        check(canUnload() == S_FALSE, "a class object held keeps the server loaded");
    }
    factory->Release();
    if (canUnload) {
        check(canUnload() == S_OK, "without objects the server may be unloaded");
    }
}

/// After `regsvr32 /n /i:user` the classes, interfaces and type library are registered for the
/// current user (HKEY_CURRENT_USER\Software\Classes), and nothing machine-wide.
void registeredForUser() {
    const std::wstring classes = L"Software\\Classes\\";
    const std::wstring keys[] = {
        L"Caudalis.Statics\\CLSID",
        L"Caudalis.PivotWrapper\\CLSID",
        L"CLSID\\" + guidText(CLSID_Statics) + L"\\InprocServer32",
        L"Interface\\" + guidText(IID__Statics),
        L"TypeLib\\" + guidText(LIBID_Caudalis) + L"\\1.0",
    };
    int missing = 0;
    for (const auto& key : keys) {
        if (!keyExists(HKEY_CURRENT_USER, classes + key, KEY_WOW64_32KEY) &&
            !keyExists(HKEY_CURRENT_USER, classes + key, KEY_WOW64_64KEY)) {
            ++missing;
            std::printf("not registered for the user: %ls\n", key.c_str());
        }
    }
    check(missing == 0, "per-user registration writes the classes, interfaces and type library");
    check(!keyExists(HKEY_CLASSES_ROOT, L"Caudalis.Statics", KEY_WOW64_64KEY) &&
              !keyExists(HKEY_LOCAL_MACHINE, L"Software\\Classes\\Caudalis.Statics", KEY_WOW64_64KEY),
          "per-user registration writes nothing machine-wide");
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
    CoInitialize(nullptr);
    const std::wstring mode = argc > 1 ? argv[1] : L"";
    if (mode == L"unregistered") {
        unregistered();
    } else if (mode == L"user") {
        registeredForUser();
    } else if (mode == L"design" && argc == 5) {
        char catalogue[MAX_PATH];
        char project[MAX_PATH];
        char reference[MAX_PATH];
        WideCharToMultiByte(CP_UTF8, 0, argv[2], -1, catalogue, MAX_PATH, nullptr, nullptr);
        WideCharToMultiByte(CP_UTF8, 0, argv[3], -1, project, MAX_PATH, nullptr, nullptr);
        WideCharToMultiByte(CP_UTF8, 0, argv[4], -1, reference, MAX_PATH, nullptr, nullptr);
        classObjectKeepsServer();
        _Statics* statics = nullptr;
        const HRESULT hr = CoCreateInstance(CLSID_Statics, nullptr, CLSCTX_INPROC_SERVER, IID__Statics,
                                            reinterpret_cast<void**>(&statics));
        if (ok(hr, "CoCreateInstance Caudalis.Statics")) {
            interfaceAsDescribed();
            staticsEdgeCases(statics);
            recordsAndErrors(statics);
            numbersOfEveryWidth();
            design(statics, catalogue, project, reference);
            hostsOwnConnection(statics, project);
            statics->Release();
        }
    } else {
        std::printf("usage: caudalis_com_client design CATALOGUE PROJECT REFERENCE | user | unregistered\n");
        return 2;
    }
    CoUninitialize();
    std::printf("%d passed, %d failed\n", checks - failures, failures);
    return failures == 0 ? 0 : 1;
}
