#pragma once

#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

#include <string>
#include <string_view>

#include "Casters.hpp"

namespace caudalis::python {

namespace py = pybind11;

/// The docstring written from the library's header comment of `key` ("Class", "Class.member",
/// "function"); `overload` picks among the comments of overloads of one name. Empty when the
/// header has no comment there.
const char* doc(std::string_view key, int overload = 0);

/// The bindings of one library subsystem each, called in this order by the module.
void bindCore(py::module_& m);
void bindRecords(py::module_& m);
void bindDb(py::module_& m);
void bindMachine(py::module_& m);
void bindCatalogue(py::module_& m);
void bindHydraulics(py::module_& m);
void bindCharts(py::module_& m);
void bindEvaluation(py::module_& m);
void bindDesign(py::module_& m);
/// The field-evaluation services, in the `services` submodule made by `bindDesign`.
void bindFieldEvaluation(py::module_& services);

}  // namespace caudalis::python
