// The design services: design files, the design run, its result and the uniformity figures.
#include <pybind11/eval.h>

#include <sstream>

#include "Bindings.hpp"
#include "Declarations.hpp"
#include "PythonDocument.hpp"
#include "caudalis/report/CsvReport.hpp"
#include "caudalis/design/DesignError.hpp"
#include "caudalis/design/DesignFile.hpp"
#include "caudalis/report/DesignPrintout.hpp"
#include "caudalis/design/DesignRunner.hpp"
#include "caudalis/report/HtmlReport.hpp"
#include "caudalis/design/InMemoryNozzleSource.hpp"
#include "caudalis/design/MachineBuilder.hpp"
#include "caudalis/design/NozzlePackageStrategy.hpp"
#include "caudalis/design/Uniformity.hpp"
#include "caudalis/design/WettedDiameters.hpp"
#include "caudalis/report/CsvReport.hpp"
#include "caudalis/report/JsonReport.hpp"
#include "caudalis/report/TextReport.hpp"

namespace caudalis::python {

namespace {

using namespace caudalis::design;

/// The Python class `caudalis.services.DesignError`, made once by `bindDesignError`.
py::handle designErrorClass;

void bindDesignError(py::module_& services) {
    py::dict scope;
    scope["__name__"] = "caudalis.services";
    py::exec(R"py(
class DesignError(ValueError):
    """A failure of the design services, with a message that names the file, field or figure
    at fault; `kind` is "invalid-input" or "not-settled". A ValueError: the input was at fault."""

    def __init__(self, message, kind="invalid-input"):
        super().__init__(message)
        self.kind = kind
)py",
             scope);
    designErrorClass = py::object(scope["DesignError"]).release();
    services.attr("DesignError") = designErrorClass;
    py::register_exception_translator([](std::exception_ptr raised) {
        try {
            if (raised) {
                std::rethrow_exception(raised);
            }
        } catch (const DesignError& error) {
            const char* kind =
                error.kind() == DesignError::Kind::NotSettled ? "not-settled" : "invalid-input";
            py::object instance = py::reinterpret_borrow<py::object>(designErrorClass)(error.what(), kind);
            PyErr_SetObject(designErrorClass.ptr(), instance.ptr());
        }
    });
}

/// The system named "si" or "us"; raises `DesignError` for any other name.
UnitSystem systemNamed(const std::string& name) {
    const auto system = Units::parse(name);
    if (!system) {
        std::string message = "units must be \"si\" or \"us\", not \"";
        message.append(name).append("\"");
        throw DesignError(DesignError::Kind::InvalidInput, message);
    }
    return *system;
}

/// The units named "si" or "us", or the design's own when none is named.
Units unitsOf(const DesignResult& result, const std::optional<std::string>& name) {
    return Units(name ? systemNamed(*name) : result.design.units);
}

template <class Writer>
std::string written(const DesignResult& result, const std::optional<std::string>& units) {
    std::ostringstream out;
    Writer::write(out, result, unitsOf(result, units));
    return out.str();
}

py::object document(const DesignResult& result, const std::optional<std::string>& units) {
    PythonDocument built;
    JsonReport::visit(result, unitsOf(result, units), built);
    return built.take();
}

std::string html(const DesignResult& result, const std::optional<std::string>& units) {
    return HtmlReport::render(DesignPrintout::document(result, unitsOf(result, units), true));
}

void bindResult(py::module_& services) {
    const auto units = py::arg("units") = py::none();
    py::class_<DesignResult>(services, "DesignResult", doc("design.DesignResult"))
        .def_readonly("design", &DesignResult::design)
        .def_readonly("chart", &DesignResult::chart, doc("design.DesignResult.chart"))
        .def(
            "json",
            [](const DesignResult& result, const std::optional<std::string>& names) {
                return JsonReport::text(result, unitsOf(result, names));
            },
            units, doc("design.JsonReport.text"))
        .def("document", &document, units,
             "The document `json()` writes as Python dicts, lists and numbers, built without the text.")
        .def("csv", &written<CsvReport>, units, "The outlets as CSV, as the command line writes them.")
        .def("text", &written<TextReport>, units, "The sprinkler chart as the command line prints it.")
        .def("html", &html, units, "The HTML report the command line's --report writes, with its plots.")
        .def("fails", &DesignResult::fails, py::arg("strict") = false, doc("design.DesignResult.fails"));
}

void bindDesignRun(py::module_& services) {
    py::class_<DesignDescription>(services, "DesignDescription",
                                  "The validated content of a design file, in SI units.")
        .def_readonly("name", &DesignDescription::name)
        .def_readonly("inletPressureKpa", &DesignDescription::inletPressureKpa)
        .def_readonly("designFlowLps", &DesignDescription::designFlowLps)
        .def_readonly("revolutionTimeH", &DesignDescription::revolutionTimeH)
        .def_property_readonly("systemId", [](const DesignDescription& self) { return self.systemId; })
        .def_property_readonly(
            "pluviometryWetDiameterM",
            [](const DesignDescription& self) -> std::optional<double> {
                if (!self.pluviometryCheck) {
                    return std::nullopt;
                }
                return self.pluviometryCheck->first.wetDiameterM;
            },
            "The wetted diameter at the first pluviometry check point, if the design has a check.");
    py::class_<DesignFile>(services, "DesignFile", doc("design.DesignFile"))
        .def_static("load", &DesignFile::load, py::arg("path"), doc("design.DesignFile.load"))
        .def_static("parse", &DesignFile::parse, py::arg("text"), py::arg("sourceName"),
                    doc("design.DesignFile.parse"))
        .def_static("fieldsLookedFor", &DesignFile::fieldsLookedFor, py::arg("text"), py::arg("sourceName"),
                    doc("design.DesignFile.fieldsLookedFor"));
    py::class_<MachineBuilder>(services, "MachineBuilder", doc("design.MachineBuilder"))
        .def(py::init<>())
        .def("build", &MachineBuilder::build, py::arg("design"));
    bindResult(services);
    py::class_<WettedDiameters>(services, "WettedDiameters", doc("design.WettedDiameters"))
        .def_static("load", &WettedDiameters::load, py::arg("catalogue"), doc("design.WettedDiameters.load"))
        .def_static("available", &WettedDiameters::available, py::arg("catalogue"),
                    doc("design.WettedDiameters.available"));
    services.def(
        "run",
        [](const DesignDescription& description, const CollectionRef& nozzles, long maxPasses,
           std::map<Long, double> wettedDiameters, const std::optional<std::string>& units) {
            InMemoryNozzleSource source(nozzles, std::move(wettedDiameters));
            const auto system = units ? std::optional<UnitSystem>(systemNamed(*units)) : std::nullopt;
            return DesignRunner(DesignOptions{maxPasses, system}).run(description, source);
        },
        py::arg("description"), py::arg("nozzles"), py::arg("maxPasses") = DesignOptions{}.maxPasses,
        py::arg("wettedDiameters") = std::map<Long, double>{}, py::arg("units") = py::none(),
        "Runs `description` with `nozzles` (and the wetted diameter of each model by model id, as a "
        "catalogue database's `model_wetted_diameters` gives them) through the design runner the "
        "command line uses.");
}

void bindStrategyAndUniformity(py::module_& services) {
    py::class_<NozzlePackageStrategy, CalculosStrategy, std::shared_ptr<NozzlePackageStrategy>>(
        services, "NozzlePackageStrategy", doc("design.NozzlePackageStrategy"))
        .def(py::init<const CollectionRef&, double, long>(), py::arg("nozzles"), py::arg("tolerance"),
             py::arg("maxPasses"))
        .def("passes", &NozzlePackageStrategy::passes, doc("design.NozzlePackageStrategy.passes"))
        .def("unfittedDistances", &NozzlePackageStrategy::unfittedDistances,
             doc("design.NozzlePackageStrategy.unfittedDistances"));
    auto uniformity = py::class_<Uniformity>(services, "Uniformity", doc("design.Uniformity"));
    uniformity.def_static("meanDepth", &Uniformity::meanDepth, py::arg("samples"),
                          doc("design.Uniformity.meanDepth"));
    uniformity.def_static("heermannHein", &Uniformity::heermannHein, py::arg("samples"),
                          doc("design.Uniformity.heermannHein"));
    uniformity.def_static("lowQuarterMean", &Uniformity::lowQuarterMean, py::arg("samples"),
                          doc("design.Uniformity.lowQuarterMean"));
    uniformity.def_static("lowQuarter", &Uniformity::lowQuarter, py::arg("samples"),
                          doc("design.Uniformity.lowQuarter"));
}

}  // namespace

void bindDesign(py::module_& m) {
    auto services = m.def_submodule("services", "The design services every host shares.");
    bindDesignError(services);
    bindDesignRun(services);
    bindStrategyAndUniformity(services);
    bindFieldEvaluation(services);
}

}  // namespace caudalis::python
