#pragma once

#include <pybind11/pybind11.h>

#include <optional>

#include "Casters.hpp"

#include "caudalis/core/Variant.hpp"

namespace caudalis::python {

namespace py = pybind11;

/// A Variant held as such on the Python side, for callers who need one exact kind (an Integer
/// rather than a Long, Null, a record) to reach the library.
struct VariantBox {
    Variant value;
};

/// The type of the `Null` marker, the one Python value that becomes a Null Variant.
struct NullType {};

/// The one `Null` object (made on the first call, once `NullType` is bound).
py::object nullMarker();

/// The Variant for a Python value: None is Empty, `Null` is Null, bool, int (Long when it fits
/// 32 bits, else Double), float and str as themselves, library objects and records as such, a
/// `Variant` box as it holds. Nothing for any other value.
std::optional<Variant> variantFromPython(py::handle value);

/// The Python value of a Variant, the inverse of `variantFromPython`.
py::object variantToPython(const Variant& value);

}  // namespace caudalis::python

namespace pybind11::detail {

/// Library functions taking or returning Variants take and give plain Python values.
template <>
struct type_caster<caudalis::Variant> {
    PYBIND11_TYPE_CASTER(caudalis::Variant, const_name("object"));

    bool load(handle source, bool /*convert*/) {
        auto converted = caudalis::python::variantFromPython(source);
        if (!converted) {
            return false;
        }
        value = std::move(*converted);
        return true;
    }

    static handle cast(const caudalis::Variant& source, return_value_policy /*policy*/, handle /*parent*/) {
        return caudalis::python::variantToPython(source).release();
    }
};

}  // namespace pybind11::detail
