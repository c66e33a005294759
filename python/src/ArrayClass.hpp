#pragma once

#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

#include <string>

#include "Bindings.hpp"
#include "VariantConversion.hpp"
#include "caudalis/core/BoundedArray.hpp"

namespace caudalis::python {

/// Indexing, length, iteration, equality, a list copy and a repr, shared by the bounded and
/// the fixed arrays. Elements are reached in place: `p.Tramos[2].diametro = 150` changes `p`
/// (a reference into an array is only good until the array is re-dimensioned).
template <class Array, class Element, class Class>
void addSequenceProtocol(Class& cls) {
    cls.def("__len__", [](const Array& self) { return self.count(); });
    cls.def(
        "__getitem__", [](Array& self, Long index) -> Element& { return self(index); },
        py::return_value_policy::reference_internal,
        "The element at `index` (between the bounds; 9 otherwise).");
    cls.def("__setitem__", [](Array& self, Long index, const Element& value) { self(index) = value; });
    cls.def(
        "__iter__", [](Array& self) { return py::make_iterator(self.begin(), self.end()); },
        py::keep_alive<0, 1>());
    cls.def(
        "tolist",
        [](const Array& self) { return py::list(py::cast(std::vector<Element>(self.begin(), self.end()))); },
        "The elements as a list of copies.");
    cls.def("__eq__", [](py::object self, py::object other) {
        return py::isinstance(other, py::type::of(self)) &&
               self.attr("tolist")().equal(other.attr("tolist")()) &&
               self.attr("bounds")().equal(other.attr("bounds")());
    });
    cls.attr("__hash__") = py::none();
}

/// Binds `BoundedArray<Element>` under `name`. A Python list converts into one implicitly
/// (bounds 1 to its length), so functions that only read an array take lists as well.
template <class Element>
py::class_<BoundedArray<Element>> bindBoundedArray(py::module_& m, const std::string& name) {
    using Array = BoundedArray<Element>;
    py::class_<Array> cls(m, name.c_str(), doc("BoundedArray"));
    cls.def(py::init<>(), "An unallocated array.");
    cls.def(py::init<Long, Long>(), py::arg("lower"), py::arg("upper"),
            "An array from `lower` to `upper`, every element default.");
    cls.def(py::init([](const py::iterable& items, Long lower) {
                Array result;
                Long index = lower;
                for (const auto& item : items) {
                    result.redimPreserve(lower, index);
                    result(index++) = item.cast<Element>();
                }
                return result;
            }),
            py::arg("items"), py::arg("lower") = 1, "An array holding `items`, the first at index `lower`.");
    cls.def("isAllocated", &Array::isAllocated);
    cls.def("count", &Array::count, doc("BoundedArray.count"));
    cls.def("lbound", &Array::lbound);
    cls.def("ubound", &Array::ubound);
    cls.def("redim", &Array::redim, py::arg("lower"), py::arg("upper"), doc("BoundedArray.redim"));
    cls.def("redimPreserve", &Array::redimPreserve, py::arg("lower"), py::arg("upper"),
            doc("BoundedArray.redimPreserve"));
    cls.def("erase", &Array::erase, doc("BoundedArray.erase"));
    cls.def(
        "bounds",
        [](const Array& self) -> py::object {
            return self.isAllocated() ? py::make_tuple(self.lbound(), self.ubound()) : py::object(py::none());
        },
        "(lower, upper), or None for an unallocated array.");
    addSequenceProtocol<Array, Element>(cls);
    cls.def("__repr__", [name](py::object self) {
        return name + "(" + py::repr(self.attr("tolist")()).cast<std::string>() +
               ", bounds=" + py::repr(self.attr("bounds")()).cast<std::string>() + ")";
    });
    py::implicitly_convertible<py::list, Array>();
    py::implicitly_convertible<py::tuple, Array>();
    return cls;
}

}  // namespace caudalis::python
