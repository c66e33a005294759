// Water-depth statistics, catch-can readings, rain gauges and stored evaluations.
#include "Bindings.hpp"
#include "Declarations.hpp"
#include "VariantConversion.hpp"
#include "caudalis/db/Connection.hpp"
#include "caudalis/evaluation/FieldSamples.hpp"
#include "caudalis/evaluation/PivotEvaluations.hpp"
#include "caudalis/evaluation/Pluviometros.hpp"
#include "caudalis/evaluation/WaterDepths.hpp"
#include "caudalis/evaluation/WaterDepthsComparator.hpp"

namespace caudalis::python {

namespace {

void bindFieldSamples() {
    reopen<FieldSamplesClass>()
        .def_static("shared", &FieldSamples::shared)
        .def("newFieldSample", &FieldSamples::newFieldSample, py::arg("depth"), py::arg("distance"),
             doc("FieldSamples.newFieldSample"))
        .def("Valid", &FieldSamples::Valid, py::arg("self_"), doc("FieldSamples.Valid"))
        .def("Parse", &FieldSamples::Parse, py::arg("stringRepresentation"), doc("FieldSamples.Parse"))
        .def("serialize", &FieldSamples::serialize, py::arg("self_"), doc("FieldSamples.serialize"))
        .def("FilterValid", &FieldSamples::FilterValid, py::arg("collection"),
             doc("FieldSamples.FilterValid"))
        .def("CollectionToWaterDepth", &FieldSamples::CollectionToWaterDepth, py::arg("collection"),
             py::arg("usedPluviometro"), doc("FieldSamples.CollectionToWaterDepth"))
        .def("ToWaterDepth", &FieldSamples::ToWaterDepth, py::arg("self_"), py::arg("usedPluviometro"),
             doc("FieldSamples.ToWaterDepth"));
    reopen<PluviometrosClass>()
        .def(py::init<>())
        .def_static("shared", &Pluviometros::shared)
        .def("newPluviometro", &Pluviometros::newPluviometro, py::arg("diameter"),
             doc("Pluviometros.newPluviometro"))
        .def("Area", &Pluviometros::Area, py::arg("self_"), doc("Pluviometros.Area"))
        .def("Valid", &Pluviometros::Valid, py::arg("self_"), doc("Pluviometros.Valid"));
}

void bindWaterDepths() {
    using Samples = BoundedArray<WaterDepthSample>;
    reopen<WaterDepthsClass>()
        .def_static("shared", &WaterDepths::shared)
        .def("newWaterDepthSample", &WaterDepths::newWaterDepthSample, py::arg("depth"),
             py::arg("distanceFromCenter"), doc("WaterDepths.newWaterDepthSample"))
        .def("NullWaterDepth", &WaterDepths::NullWaterDepth, doc("WaterDepths.NullWaterDepth"))
        .def("Valid", &WaterDepths::Valid, py::arg("self_"), doc("WaterDepths.Valid"))
        .def("PonderatedDepths", &WaterDepths::PonderatedDepths, py::arg("self_"),
             doc("WaterDepths.PonderatedDepths"))
        .def("PonderatedDeviation", &WaterDepths::PonderatedDeviation, py::arg("self_"),
             py::arg("averageDepth"), doc("WaterDepths.PonderatedDeviation"))
        .def("Sort", &WaterDepths::Sort, py::arg("list"), py::arg("by"), doc("WaterDepths.Sort"))
        .def("LowQuarter", &WaterDepths::LowQuarter, py::arg("list"), doc("WaterDepths.LowQuarter"))
        .def(
            "Average",
            [](const WaterDepths& self, const Samples& list, Long limit) {
                const Double average = self.Average(list, limit);
                return py::make_tuple(average, limit);
            },
            py::arg("list"), py::arg("limit"),
            (std::string(doc("WaterDepths.Average")) +
             "\nReturns (average, limit): the limit as written back.")
                .c_str())
        .def("Average", py::overload_cast<const Samples&>(&WaterDepths::Average, py::const_), py::arg("list"),
             doc("WaterDepths.Average", 1));
    reopen<WaterDepthsComparatorClass>().def("init", &WaterDepthsComparator::init,
                                             py::arg("compareWath") = compareWhat::depth,
                                             doc("WaterDepthsComparator.init"));
}

void bindPivotEvaluations() {
    reopen<PivotEvaluationsClass>()
        .def_static("shared", &PivotEvaluations::shared)
        .def("newEvaluation", &PivotEvaluations::newEvaluation, py::arg("name"),
             doc("PivotEvaluations.newEvaluation"))
        .def("Enumerate", &PivotEvaluations::Enumerate, py::arg("con"), doc("PivotEvaluations.Enumerate"))
        .def("save", &PivotEvaluations::save, py::arg("con"), py::arg("self_"), doc("PivotEvaluations.save"))
        .def("exists", &PivotEvaluations::exists, py::arg("con"), py::arg("conditions"),
             doc("PivotEvaluations.exists"))
        .def("find", &PivotEvaluations::find, py::arg("con"), py::arg("conditions"),
             doc("PivotEvaluations.find"))
        .def("destroy", &PivotEvaluations::destroy, py::arg("con"), py::arg("self_"),
             doc("PivotEvaluations.destroy"));
}

}  // namespace

void bindEvaluation(py::module_& /*m*/) {
    bindFieldSamples();
    bindWaterDepths();
    bindPivotEvaluations();
}

}  // namespace caudalis::python
