#pragma once

#include <pybind11/pybind11.h>

#include <string>
#include <vector>

#include "Bindings.hpp"

namespace caudalis::python {

/// Binds a record as a mutable Python class: one attribute per field in the record's order
/// (nested records are reached in place, so `p.endGun.saida.caudal = 2` changes `p`), keyword
/// construction, `_fields`, equality, copies and a readable repr.
template <class Record>
class RecordClass {
public:
    RecordClass(py::module_& m, const char* name) : name_(name), class_(m, name, doc(name)) {
        class_.def(py::init<>());
    }

    template <class Field>
    RecordClass& field(const char* fieldName, Field Record::*member) {
        class_.def_readwrite(fieldName, member, doc(name_ + "." + fieldName));
        fields_.emplace_back(fieldName);
        return *this;
    }

    py::class_<Record> finish() {
        const py::tuple names = py::cast(fields_);
        class_.attr("_fields") = names;
        class_.def(py::init([names](const py::kwargs& values) { return fromKeywords(names, values); }));
        class_.def("__eq__",
                   [names](py::object self, py::object other) { return equal(names, self, other); });
        class_.def("__repr__", [names](py::object self) { return repr(names, self); });
        class_.def(
            "copy", [](const Record& self) { return Record(self); }, "A copy of this record.");
        class_.def("__copy__", [](const Record& self) { return Record(self); });
        class_.def("__deepcopy__", [](const Record& self, py::dict /*memo*/) { return Record(self); });
        class_.attr("__hash__") = py::none();
        return class_;
    }

private:
    static Record fromKeywords(const py::tuple& names, const py::kwargs& values) {
        py::object made = py::cast(Record{});
        for (const auto& [key, value] : values) {
            if (!names.contains(key)) {
                throw py::type_error(
                    py::str("{}() has no field {!r}").format(py::type::of(made).attr("__name__"), key));
            }
            py::setattr(made, key, value);
        }
        return made.cast<Record>();
    }

    static bool equal(const py::tuple& names, const py::object& self, const py::object& other) {
        if (!py::isinstance(other, py::type::of(self))) {
            return false;
        }
        for (const auto& name : names) {
            if (!self.attr(name).equal(other.attr(name))) {
                return false;
            }
        }
        return true;
    }

    static std::string repr(const py::tuple& names, const py::object& self) {
        std::string text = py::type::of(self).attr("__name__").cast<std::string>() + "(";
        const char* separator = "";
        for (const auto& name : names) {
            text += separator;
            text += name.cast<std::string>();
            text += '=';
            text += py::repr(self.attr(name)).cast<std::string>();
            separator = ", ";
        }
        return text + ")";
    }

    std::string name_;
    py::class_<Record> class_;
    std::vector<std::string> fields_;
};

}  // namespace caudalis::python
