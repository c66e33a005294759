// Errors, Variant, Collection, comparators, arrays, doubles and the application object.
#include <pybind11/eval.h>

#include <optional>
#include <string>

#include "ArrayClass.hpp"
#include "Bindings.hpp"
#include "Declarations.hpp"
#include "VariantConversion.hpp"
#include "caudalis/caudalis.hpp"

namespace caudalis::python {

namespace {

/// The Python class `caudalis.Error`, made once by `bindErrors`.
py::handle errorClass;

const char* const errorClassSource = R"py(
class Error(Exception):
    """A numbered error of the library or of the runtime: `number`, `source`, `description`."""

    def __init__(self, number, description="", source="Caudalis"):
        super().__init__(number, description, source)
        self.number = number
        self.source = source
        self.description = description

    def __str__(self):
        return f"{self.description} ({self.number})"
)py";

template <class Code>
void bindErrorCodes(py::module_& m, const char* name,
                    std::initializer_list<std::pair<const char*, Code>> codes) {
    py::enum_<Code> codeEnum(m, name, doc(name));
    for (const auto& [codeName, code] : codes) {
        codeEnum.value(codeName, code, doc(std::string(name) + "." + codeName));
    }
    codeEnum.def_property_readonly(
        "number", [](Code code) { return errorNumber(code); }, "The error number this code is raised with.");
}

py::object numberTable(std::initializer_list<std::pair<const char*, std::int32_t>> numbers) {
    py::dict table;
    for (const auto& [name, number] : numbers) {
        table[name] = number;
    }
    return py::module_::import("types").attr("SimpleNamespace")(**table);
}

void bindErrors(py::module_& m) {
    py::dict scope;
    scope["__name__"] = "caudalis";
    py::exec(errorClassSource, scope);
    errorClass = py::object(scope["Error"]).release();
    m.attr("Error") = errorClass;
    py::register_exception_translator([](std::exception_ptr raised) {
        try {
            if (raised) {
                std::rethrow_exception(raised);
            }
        } catch (const Error& error) {
            py::object instance = py::reinterpret_borrow<py::object>(errorClass)(
                error.number(), error.description(), error.source());
            PyErr_SetObject(errorClass.ptr(), instance.ptr());
        }
    });
    bindErrorCodes<AspersorException>(
        m, "AspersorException",
        {{"MissingAsperorDataException", AspersorException::MissingAsperorDataException}});
    bindErrorCodes<DescricaoException>(
        m, "DescricaoException",
        {{"MissingNameException", DescricaoException::MissingNameException},
         {"ModeloIsNewRecordException", DescricaoException::ModeloIsNewRecordException}});
    bindErrorCodes<ModeloException>(
        m, "ModeloException",
        {{"MissingNameException", ModeloException::MissingNameException},
         {"MarcaIsNewRecordException", ModeloException::MarcaIsNewRecordException}});
    bindErrorCodes<MarcaException>(m, "MarcaException",
                                   {{"MissingNameException", MarcaException::MissingNameException}});
    bindErrorCodes<DropException>(m, "DropException",
                                  {{"DropIncompleteException", DropException::DropIncompleteException}});
    bindErrorCodes<CartaExceptions>(m, "CartaExceptions",
                                    {{"NomeDaCartaJaExistente", CartaExceptions::NomeDaCartaJaExistente}});
    bindErrorCodes<PluviometroException>(
        m, "PluviometroException",
        {{"PluviometroIncompleteException", PluviometroException::PluviometroIncompleteException}});
    bindErrorCodes<WaterDepthSampleException>(
        m, "WaterDepthSampleException",
        {{"NotEnoughSamplesToComputeLowQuarter",
          WaterDepthSampleException::NotEnoughSamplesToComputeLowQuarter}});
    m.attr("ObjectErrorBase") = ObjectErrorBase;
    m.attr("RuntimeError") = numberTable({{"InvalidProcedureCall", RuntimeError::InvalidProcedureCall},
                                          {"Overflow", RuntimeError::Overflow},
                                          {"SubscriptOutOfRange", RuntimeError::SubscriptOutOfRange},
                                          {"DivisionByZero", RuntimeError::DivisionByZero},
                                          {"TypeMismatch", RuntimeError::TypeMismatch},
                                          {"ObjectNotSet", RuntimeError::ObjectNotSet},
                                          {"InvalidUseOfNull", RuntimeError::InvalidUseOfNull},
                                          {"KeyAlreadyAssociated", RuntimeError::KeyAlreadyAssociated},
                                          {"DataAccess", RuntimeError::DataAccess},
                                          {"DatabaseEngine", RuntimeError::DatabaseEngine}});
    m.attr("DatabaseError") =
        numberTable({{"InvalidStatement", DatabaseError::InvalidStatement},
                     {"CharactersAfterStatement", DatabaseError::CharactersAfterStatement},
                     {"ItemNotFound", DatabaseError::ItemNotFound},
                     {"ObjectClosed", DatabaseError::ObjectClosed},
                     {"ObjectOpen", DatabaseError::ObjectOpen},
                     {"ProviderNotFound", DatabaseError::ProviderNotFound}});
    m.def("standardErrorText", &standardErrorText, py::arg("number"), doc("standardErrorText"));
    m.def("raiseError", py::overload_cast<std::int32_t>(&raiseError), py::arg("number"), doc("raiseError"));
    m.def("raiseError", py::overload_cast<std::int32_t, const std::string&>(&raiseError), py::arg("number"),
          py::arg("description"), doc("raiseError", 1));
    // Hosts never hold an Exceptions object: `throw` raises through the library's own instance.
    // `Exceptions.throw(n)`; `throw_` is the same, for code that keeps clear of the C++ keyword.
    const auto raiseNumber = [](const Variant& exception) { Exceptions::shared()->throw_(exception); };
    reopen<ExceptionsClass>()
        .def_static("throw", raiseNumber, py::arg("exception"), doc("Exceptions.throw_"))
        .def_static("throw_", raiseNumber, py::arg("exception"), doc("Exceptions.throw_"));
}

void bindVariant(py::module_& m) {
    reopen<NullClass>()
        .def("__repr__", [](const NullType&) { return "Null"; })
        .def("__bool__", [](const NullType&) { return false; });
    m.attr("Null") = nullMarker();
    auto box = reopen<VariantClass>();
    box.def(py::init([]() { return VariantBox{}; }), "An Empty Variant.");
    box.def(py::init([](const Variant& value) { return VariantBox{value}; }), py::arg("value"),
            "The Variant of a Python value (None is Empty, an int a Long when it fits 32 bits).");
    box.def_static(
        "integer", [](Integer value) { return VariantBox{Variant(value)}; }, py::arg("value"),
        "A Variant holding a 16-bit Integer.");
    box.def_static(
        "long", [](Long value) { return VariantBox{Variant(value)}; }, py::arg("value"),
        "A Variant holding a 32-bit Long.");
    box.def_static(
        "null", []() { return VariantBox{Variant::null()}; }, doc("Variant.null"));
    box.def("type", [](const VariantBox& self) { return self.value.type(); });
    box.def("isEmpty", [](const VariantBox& self) { return self.value.isEmpty(); });
    box.def("isNull", [](const VariantBox& self) { return self.value.isNull(); });
    box.def("isNumeric", [](const VariantBox& self) { return self.value.isNumeric(); });
    box.def(
        "toBoolean", [](const VariantBox& self) { return self.value.toBoolean(); }, doc("Variant.toBoolean"));
    box.def("toInteger", [](const VariantBox& self) { return self.value.toInteger(); });
    box.def("toLong", [](const VariantBox& self) { return self.value.toLong(); });
    box.def("toDouble", [](const VariantBox& self) { return self.value.toDouble(); });
    box.def("toString", [](const VariantBox& self) { return self.value.toString(); });
    box.def_property_readonly(
        "value", [](const VariantBox& self) { return self.value; }, "The value as a plain Python value.");
    box.def("__repr__", [](const VariantBox& self) {
        return "Variant(" + py::repr(variantToPython(self.value)).cast<std::string>() + ")";
    });
    m.def(
        "compareVariants",
        [](const Variant& first, const Variant& second) -> std::optional<int> {
            const auto order = compareVariants(first, second);
            if (!order || *order == std::partial_ordering::unordered) {
                return std::nullopt;
            }
            return *order < 0 ? -1 : (*order > 0 ? 1 : 0);
        },
        py::arg("first"), py::arg("second"),
        "-1, 0 or 1 as the runtime orders the two values; None with Null or a NaN.");
    m.def("roundHalfEven", &roundHalfEven, py::arg("value"), doc("roundHalfEven"));
}

void bindCollection() {
    reopen<CollectionClass>()
        .def(py::init(&Collection::create))
        .def_static("create", &Collection::create)
        .def("Add", &Collection::Add, py::arg("item"), py::arg("key") = std::nullopt)
        .def("Item", py::overload_cast<Long>(&Collection::Item, py::const_), py::arg("index"))
        .def("Item", py::overload_cast<const std::string&>(&Collection::Item, py::const_), py::arg("key"))
        .def("Remove", py::overload_cast<Long>(&Collection::Remove), py::arg("index"))
        .def("Remove", py::overload_cast<const std::string&>(&Collection::Remove), py::arg("key"))
        .def("Count", &Collection::Count)
        .def("Contains", &Collection::Contains, py::arg("key"))
        .def("__len__", &Collection::Count)
        .def("__getitem__", py::overload_cast<Long>(&Collection::Item, py::const_), py::arg("index"))
        .def("__getitem__", py::overload_cast<const std::string&>(&Collection::Item, py::const_),
             py::arg("key"))
        .def("__contains__", &Collection::Contains, py::arg("key"))
        .def("__iter__",
             [](const Collection& self) {
                 py::list items;
                 for (const auto& item : self) {
                     items.append(variantToPython(item));
                 }
                 return py::iter(items);
             })
        .def(
            "tolist",
            [](const Collection& self) {
                return py::list(py::cast(std::vector<Variant>(self.begin(), self.end())));
            },
            "The items as a list, in order.");
}

template <class Element>
void addArrayOperations(ArraysClass& cls) {
    using Array = BoundedArray<Element>;
    cls.def("Length", &Arrays::Length<Element>, py::arg("self_"), doc("Arrays.Length"));
    cls.def("IsEmpty", &Arrays::IsEmpty<Element>, py::arg("self_"));
    cls.def("HasAny", &Arrays::HasAny<Element>, py::arg("self_"));
    cls.def("Push", &Arrays::Push<Element>, py::arg("self_"), py::arg("element"), doc("Arrays.Push"));
    cls.def("First", &Arrays::First<Element>, py::arg("self_"), doc("Arrays.First"));
    cls.def("Last", &Arrays::Last<Element>, py::arg("self_"), doc("Arrays.Last"));
    cls.def("Slice", &Arrays::Slice<Element>, py::arg("self_"), py::arg("begin"), py::arg("till"),
            doc("Arrays.Slice"));
    cls.def(
        "Sort",
        [](const Arrays& self, const Array& list, Comparator& comparator) {
            return self.Sort(list, comparator);
        },
        py::arg("self_"), py::arg("aComparator"), doc("Arrays.Sort"));
}

void bindArraysAndDoubles(py::module_& m) {
    // Hosts cannot make a Comparator; they receive one (a WaterDepthsComparator is one).
    reopen<ComparatorClass>()
        .def("GT", &Comparator::GT, py::arg("First"), py::arg("second"))
        .def("GTE", &Comparator::GTE, py::arg("First"), py::arg("second"))
        .def("LT", &Comparator::LT, py::arg("First"), py::arg("second"))
        .def("LTE", &Comparator::LTE, py::arg("First"), py::arg("second"))
        .def("EQ", &Comparator::EQ, py::arg("First"), py::arg("second"));
    auto arrays = reopen<ArraysClass>();
    arrays.def(py::init<>()).def_static("shared", &Arrays::shared);
    addArrayOperations<tramo>(arrays);
    addArrayOperations<saida>(arrays);
    addArrayOperations<WaterDepthSample>(arrays);
    addArrayOperations<FieldSample>(arrays);
    addArrayOperations<Double>(arrays);
    addArrayOperations<Long>(arrays);
    addArrayOperations<Integer>(arrays);
    addArrayOperations<String>(arrays);
    addArrayOperations<Variant>(arrays);
    arrays.def(
        "Push", [](const Arrays&, const py::list&, const py::object&) { refuseList("Push"); },
        py::arg("self_"), py::arg("element"));
    arrays.def(
        "Push", [](const Arrays&, const py::tuple&, const py::object&) { refuseList("Push"); },
        py::arg("self_"), py::arg("element"));
    m.def("nextRandom", &nextRandom, doc("nextRandom"));

    reopen<DoublesClass>()
        .def_static("shared", &Doubles::shared)
        .def("NaN", &Doubles::NaN, doc("Doubles.NaN"))
        .def("PositiveInfinity", &Doubles::PositiveInfinity)
        .def("NegativeInfinity", &Doubles::NegativeInfinity)
        .def("MaxValue", &Doubles::MaxValue, doc("Doubles.MaxValue"))
        .def("MinValue", &Doubles::MinValue, doc("Doubles.MinValue"))
        .def("isNaN", &Doubles::isNaN, py::arg("value"), doc("Doubles.isNaN"))
        .def("isPositiveInfinity", &Doubles::isPositiveInfinity, py::arg("value"),
             doc("Doubles.isPositiveInfinity"))
        .def("isNegativeInfinity", &Doubles::isNegativeInfinity, py::arg("value"),
             doc("Doubles.isNegativeInfinity"))
        .def("Max", &Doubles::Max, py::arg("First"), py::arg("Last"), doc("Doubles.Max"))
        .def("Min", &Doubles::Min, py::arg("First"), py::arg("Last"), doc("Doubles.Min"));
    m.def("percentToFraction", &percentToFraction, py::arg("value"), doc("percentToFraction"));
    m.def("arcSin", &arcSin, py::arg("x"), doc("arcSin"));
    m.def("formatNumber", &formatNumber, py::arg("value"), doc("formatNumber"));
    m.def("parseLocaleNumber", &parseLocaleNumber, py::arg("text"), doc("parseLocaleNumber"));
    m.def("readLeadingNumber", &readLeadingNumber, py::arg("text"), doc("readLeadingNumber"));
    m.def("trimBlanks", &trimBlanks, py::arg("text"), doc("trimBlanks"));
    m.def("localeDecimalPoint", &localeDecimalPoint, doc("localeDecimalPoint"));
    m.attr("pi") = pi;
    m.attr("twoPi") = twoPi;
    m.attr("secondsPerHour") = secondsPerHour;
    m.attr("pressurePerMetre") = pressurePerMetre;

    auto checkedModule = m.def_submodule("checked", doc("checked.add"));
    checkedModule.def("add", &checked::add, py::arg("a"), py::arg("b"));
    checkedModule.def("sub", &checked::sub, py::arg("a"), py::arg("b"));
    checkedModule.def("mul", &checked::mul, py::arg("a"), py::arg("b"));
    checkedModule.def("div", &checked::div, py::arg("a"), py::arg("b"));
    checkedModule.def("pow", &checked::pow, py::arg("base"), py::arg("exponent"), doc("checked.pow"));
    checkedModule.def("result", &checked::result, py::arg("value"), py::arg("operand"),
                      doc("checked.result"));
}

void bindStatics(py::module_& m) {
    reopen<StaticsClass>()
        .def(py::init<>())
        .def_static("application", &Statics::application, doc("Statics.application"))
        .def("Aspersores", &Statics::Aspersores, doc("Statics.Aspersores"))
        .def("CartaAspersor", &Statics::CartaAspersor, doc("Statics.CartaAspersor"))
        .def("newCartaAspersores", &Statics::newCartaAspersores, doc("Statics.newCartaAspersores"))
        .def("newIndicadores", &Statics::newIndicadores, py::arg("horas"), py::arg("nsaidas"))
        .def("newPivotSample", &Statics::newPivotSample, py::arg("centerDistance"), py::arg("wetDiameter"),
             py::arg("code"))
        .def("newKostiakovParameters", &Statics::newKostiakovParameters, py::arg("k"), py::arg("a"))
        .def("newPivotWrapper", &Statics::newPivotWrapper, py::arg("apivot_dt"), py::arg("strategy"),
             py::keep_alive<0, 3>(), doc("Statics.newPivotWrapper"))
        .def("newReguladorPression", &Statics::newReguladorPression, py::arg("tramo"), py::arg("pression"),
             py::arg("caudal_max"), py::arg("caudal_min"), py::arg("installed"))
        .def("newPivot", &Statics::newPivot, doc("Statics.newPivot"))
        .def("Drops", &Statics::Drops)
        .def("Pivots", &Statics::Pivots)
        .def("Tramos", &Statics::Tramos)
        .def("Arrays", &Statics::Arrays)
        .def("Gun", &Statics::Gun, doc("Statics.Gun"))
        .def("CoordenadasSaidas", &Statics::CoordenadasSaidas)
        .def("Placements", &Statics::Placements, doc("Statics.Placements"))
        .def("Doubles", &Statics::Doubles)
        .def("PipeMaterials", &Statics::PipeMaterials)
        .def("FieldSamples", &Statics::FieldSamples)
        .def("WaterDepths", &Statics::WaterDepths)
        .def("Pluviometros", &Statics::Pluviometros)
        .def("PivotEvaluations", &Statics::PivotEvaluations)
        .def("Saidas", &Statics::Saidas, doc("Statics.Saidas"));
    m.def("makeIndicadores", &makeIndicadores, py::arg("horas"), py::arg("nsaidas"), doc("makeIndicadores"));
    m.def("makePivotSample", &makePivotSample, py::arg("centerDistance"), py::arg("wetDiameter"),
          py::arg("code"), doc("makePivotSample"));
    m.def("makeKostiakovParameters", &makeKostiakovParameters, py::arg("k"), py::arg("a"),
          doc("makeKostiakovParameters"));
}

}  // namespace

void bindCore(py::module_& m) {
    bindErrors(m);
    bindVariant(m);
    bindCollection();
    bindArraysAndDoubles(m);
    bindStatics(m);
}

}  // namespace caudalis::python
