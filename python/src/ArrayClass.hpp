#pragma once

#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

#include <string>

#include "Bindings.hpp"
#include "VariantConversion.hpp"
#include "Views.hpp"
#include "caudalis/core/BoundedArray.hpp"

namespace caudalis::python {

/// Where the element `index` of the array held by `parent` is now (nullptr when it has none).
template <class Array>
const void* locateElement(py::handle parent, Long index) {
    Array& array = parent.cast<Array&>();
    try {
        return &array(index);
    } catch (const Error&) {
        return nullptr;
    }
}

/// Indexing, length, iteration, equality, a list copy and a repr, shared by the bounded and
/// the fixed arrays. A record element is reached in place: `p.Tramos[2].diametro = 150` changes
/// `p`; the element object is a view that raises ReferenceError once the array no longer holds
/// it (see Views).
template <class Array, class Element, class Class>
void addSequenceProtocol(Class& cls) {
    cls.def("__len__", [](const Array& self) { return self.count(); });
    cls.def(
        "__getitem__",
        [](Array& self, Long index) -> Element& {
            Element& element = self(index);
            if constexpr (isViewable<Element>) {
                Views::expectElement(&element, &locateElement<Array>, index);
            }
            return element;
        },
        py::return_value_policy::reference_internal,
        "The element at `index` (between the bounds; 9 otherwise).");
    cls.def("__setitem__", [](Array& self, Long index, const Element& value) { self(index) = value; });
    cls.def(
        "__iter__",
        [](py::object self) {
            const Array& array = self.cast<const Array&>();
            const Long count = array.count();
            py::list items;
            if (count > 0) {
                const py::object item = self.attr("__getitem__");
                for (Long index = array.lbound(), last = index + count; index < last; ++index) {
                    items.append(item(index));
                }
            }
            return py::iter(items);
        },
        "The elements in order, as indexing gives them.");
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

/// The error of `method`, which writes back into the array it is given, when it is given a
/// Python list or tuple: that would be converted into a temporary array and the change lost.
[[noreturn]] inline void refuseList(const char* method) {
    throw py::type_error(std::string(method) +
                         " writes back into the array it is given: pass a caudalis.BoundedArray "
                         "(for instance caudalis.BoundedArray[float](values)), not a list or a tuple");
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
