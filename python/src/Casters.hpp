#pragma once

// The casters every source of the bindings uses (so all of them include this header):
// - a record or array reaches C++ only after a check that, when the Python object is a view into
//   another object, its memory is still there (see Views); None is refused;
// - None is refused where a library object is expected (the library would follow a null), but
//   for a nozzle: an outlet without one holds None;
// - a Python int out of the range of an Integer or a Long raises the library's Overflow error,
//   as the runtime's conversion does, instead of a type error.
#include <pybind11/pybind11.h>

#include <climits>
#include <limits>
#include <memory>
#include <type_traits>

#include "RecordTypes.hpp"
#include "Views.hpp"
#include "caudalis/caudalis.hpp"

namespace caudalis::python {

template <class T, class List>
struct IsOneOf : std::false_type {};
template <class T, class... Types>
struct IsOneOf<T, TypeList<Types...>> : std::bool_constant<(std::is_same_v<T, Types> || ...)> {};

template <class T>
struct IsArray : std::false_type {};
template <class T>
struct IsArray<BoundedArray<T>> : std::true_type {};
template <class T, Long Lower, Long Upper>
struct IsArray<FixedArray<T, Lower, Upper>> : std::true_type {};

/// Records and arrays: the values a Python view may stand for.
template <class T>
inline constexpr bool isViewable = IsOneOf<T, AllRecords>::value || IsArray<T>::value;

}  // namespace caudalis::python

namespace pybind11::detail {

template <class T>
class type_caster<T, std::enable_if_t<caudalis::python::isViewable<T>>> : public type_caster_base<T> {
    using Base = type_caster_base<T>;

public:
    bool load(handle source, bool convert) {
        if (source.is_none() || !Base::load(source, convert)) {
            return false;
        }
        caudalis::python::Views::check(source);
        return true;
    }

    static handle cast(const T& source, return_value_policy policy, handle parent) {
        return cast(&source, policy, parent);
    }
    static handle cast(T&& source, return_value_policy policy, handle parent) {
        return Base::cast(std::move(source), policy, parent);
    }
    static handle cast(const T* source, return_value_policy policy, handle parent) {
        if (policy == return_value_policy::automatic || policy == return_value_policy::automatic_reference) {
            policy = return_value_policy::copy;
        }
        handle made = Base::cast(source, policy, parent);
        if (made && policy == return_value_policy::reference_internal && parent) {
            caudalis::python::Views::adopt(made, parent, source);
        }
        return made;
    }
};

/// A library object held by its shared pointer; None is refused.
template <class T>
class ObjectCaster : public copyable_holder_caster<T, std::shared_ptr<T>> {
public:
    bool load(handle source, bool convert) {
        return !source.is_none() && copyable_holder_caster<T, std::shared_ptr<T>>::load(source, convert);
    }
};

/// An Integer or a Long: any Python int (or object with __index__ when converting), an int out of
/// range raising Overflow (6).
template <class T>
class CheckedIntegerCaster {
public:
    PYBIND11_TYPE_CASTER(T, const_name("int"));

    bool load(handle source, bool convert) {
        if (!source || PyFloat_Check(source.ptr())) {
            return false;
        }
        if (!PyLong_Check(source.ptr()) && !(convert && PyIndex_Check(source.ptr()))) {
            return false;
        }
        int overflow = 0;
        const long long read = PyLong_AsLongLongAndOverflow(source.ptr(), &overflow);
        if (read == -1 && PyErr_Occurred()) {
            PyErr_Clear();
            return false;
        }
        if (overflow != 0 || read < std::numeric_limits<T>::min() || read > std::numeric_limits<T>::max()) {
            caudalis::raiseError(caudalis::RuntimeError::Overflow);
        }
        value = static_cast<T>(read);
        return true;
    }

    static handle cast(T source, return_value_policy /*policy*/, handle /*parent*/) {
        return PyLong_FromLong(source);
    }
};

template <>
class type_caster<caudalis::Integer> : public CheckedIntegerCaster<caudalis::Integer> {};
template <>
class type_caster<caudalis::Long> : public CheckedIntegerCaster<caudalis::Long> {};

#define CAUDALIS_OBJECT_CASTER(Class) \
    template <>                       \
    class type_caster<std::shared_ptr<caudalis::Class>> : public ObjectCaster<caudalis::Class> {};
CAUDALIS_OBJECT_CASTER(Object)
CAUDALIS_OBJECT_CASTER(Collection)
CAUDALIS_OBJECT_CASTER(Comparator)
CAUDALIS_OBJECT_CASTER(Arrays)
CAUDALIS_OBJECT_CASTER(Doubles)
CAUDALIS_OBJECT_CASTER(Exceptions)
CAUDALIS_OBJECT_CASTER(Statics)
CAUDALIS_OBJECT_CASTER(Recordset)
CAUDALIS_OBJECT_CASTER(Connection)
CAUDALIS_OBJECT_CASTER(TableSchema)
CAUDALIS_OBJECT_CASTER(Tramos)
CAUDALIS_OBJECT_CASTER(Types)
CAUDALIS_OBJECT_CASTER(Pivots)
CAUDALIS_OBJECT_CASTER(CoordenadasSaidas)
CAUDALIS_OBJECT_CASTER(AspersoresStatic)
CAUDALIS_OBJECT_CASTER(CalculosStrategy)
CAUDALIS_OBJECT_CASTER(PivotApplier)
CAUDALIS_OBJECT_CASTER(ReguladorPression)
CAUDALIS_OBJECT_CASTER(PivotWrapper)
CAUDALIS_OBJECT_CASTER(Drops)
CAUDALIS_OBJECT_CASTER(PipeMaterials)
CAUDALIS_OBJECT_CASTER(MountedAspersor)
CAUDALIS_OBJECT_CASTER(CartaAspersores)
CAUDALIS_OBJECT_CASTER(CartaAspersoresStatic)
CAUDALIS_OBJECT_CASTER(FieldSamples)
CAUDALIS_OBJECT_CASTER(Pluviometros)
CAUDALIS_OBJECT_CASTER(WaterDepths)
CAUDALIS_OBJECT_CASTER(WaterDepthsComparator)
CAUDALIS_OBJECT_CASTER(PivotEvaluations)
#undef CAUDALIS_OBJECT_CASTER

}  // namespace pybind11::detail
