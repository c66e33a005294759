#include "VariantConversion.hpp"

#include <limits>
#include <string>

#include "RecordTypes.hpp"
#include "caudalis/core/Object.hpp"

namespace caudalis::python {

namespace {

template <class... Records>
std::optional<Variant> recordFromPython(py::handle value, TypeList<Records...> /*records*/) {
    std::optional<Variant> result;
    ((!result && py::isinstance<Records>(value) ? void(result = Variant::record(value.cast<Records>()))
                                                : void()),
     ...);
    return result;
}

template <class... Records>
py::object recordToPython(const Variant& value, TypeList<Records...> /*records*/) {
    py::object result;
    ((!result && value.holdsRecord<Records>() ? void(result = py::cast(value.toRecord<Records>())) : void()),
     ...);
    return result;
}

Variant integerVariant(py::handle value) {
    const auto number = value.cast<long long>();
    if (number >= std::numeric_limits<Long>::min() && number <= std::numeric_limits<Long>::max()) {
        return Variant(static_cast<Long>(number));
    }
    return Variant(static_cast<double>(number));
}

}  // namespace

py::object nullMarker() {
    static const py::handle marker = py::cast(NullType{}).release();
    return py::reinterpret_borrow<py::object>(marker);
}

std::optional<Variant> variantFromPython(py::handle value) {
    if (value.is_none()) {
        return Variant();
    }
    if (py::isinstance<NullType>(value)) {
        return Variant::null();
    }
    if (py::isinstance<VariantBox>(value)) {
        return value.cast<const VariantBox&>().value;
    }
    if (py::isinstance<py::bool_>(value)) {
        return Variant(value.cast<bool>());
    }
    if (py::isinstance<py::int_>(value)) {
        return integerVariant(value);
    }
    if (py::isinstance<py::float_>(value)) {
        return Variant(value.cast<double>());
    }
    if (py::isinstance<py::str>(value)) {
        return Variant(value.cast<std::string>());
    }
    if (py::isinstance<Object>(value)) {
        return Variant(value.cast<std::shared_ptr<Object>>());
    }
    return recordFromPython(value, AllRecords{});
}

py::object variantToPython(const Variant& value) {
    switch (value.type()) {
        case Variant::Type::Empty:
            return py::none();
        case Variant::Type::Null:
            return nullMarker();
        case Variant::Type::Boolean:
            return py::bool_(value.toBoolean());
        case Variant::Type::Integer:
            return py::int_(value.toInteger());
        case Variant::Type::Long:
            return py::int_(value.toLong());
        case Variant::Type::Double:
            return py::float_(value.toDouble());
        case Variant::Type::String:
            return py::str(value.toString());
        case Variant::Type::Object:
            return py::cast(value.toObject<Object>());
        case Variant::Type::Record:
            return recordToPython(value, AllRecords{});
    }
    return py::none();
}

}  // namespace caudalis::python
