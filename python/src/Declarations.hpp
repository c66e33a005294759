#pragma once

#include <memory>

#include "Bindings.hpp"
#include "Trampolines.hpp"
#include "VariantConversion.hpp"
#include "caudalis/caudalis.hpp"

namespace caudalis::python {

// The Python class of every library class. All are made first (`declareClasses`), so that
// every signature, whatever subsystem binds it, names the Python classes it takes and gives.
using ObjectClass = py::class_<Object, std::shared_ptr<Object>>;
using CollectionClass = py::class_<Collection, std::shared_ptr<Collection>>;
using ComparatorClass = py::class_<Comparator, Object, std::shared_ptr<Comparator>>;
using ArraysClass = py::class_<Arrays, std::shared_ptr<Arrays>>;
using DoublesClass = py::class_<Doubles, std::shared_ptr<Doubles>>;
using ExceptionsClass = py::class_<Exceptions, std::shared_ptr<Exceptions>>;
using StaticsClass = py::class_<Statics, std::shared_ptr<Statics>>;
using VariantClass = py::class_<VariantBox>;
using NullClass = py::class_<NullType>;
using RecordsetClass = py::class_<Recordset, Object, std::shared_ptr<Recordset>>;
using ConnectionClass = py::class_<Connection, Object, std::shared_ptr<Connection>>;
using ConnectionSettingsClass = py::class_<ConnectionSettings>;
using TableSchemaClass = py::class_<TableSchema, Object, std::shared_ptr<TableSchema>>;
using TramosClass = py::class_<Tramos, std::shared_ptr<Tramos>>;
using TypesClass = py::class_<Types, std::shared_ptr<Types>>;
using PivotsClass = py::class_<Pivots, std::shared_ptr<Pivots>>;
using CoordenadasSaidasClass = py::class_<CoordenadasSaidas, std::shared_ptr<CoordenadasSaidas>>;
using AspersorClass = py::class_<Aspersor, Object, std::shared_ptr<Aspersor>>;
using AspersoresStaticClass = py::class_<AspersoresStatic, std::shared_ptr<AspersoresStatic>>;
using CalculosStrategyClass =
    py::class_<CalculosStrategy, PyCalculosStrategy, Object, std::shared_ptr<CalculosStrategy>>;
using PivotApplierClass = py::class_<PivotApplier, PyPivotApplier, Object, std::shared_ptr<PivotApplier>>;
using ReguladorPressionClass =
    py::class_<ReguladorPression, PivotApplier, std::shared_ptr<ReguladorPression>>;
using PivotWrapperClass = py::class_<PivotWrapper, Object, std::shared_ptr<PivotWrapper>>;
using DropsClass = py::class_<Drops, std::shared_ptr<Drops>>;
using PipeMaterialsClass = py::class_<PipeMaterials, std::shared_ptr<PipeMaterials>>;
using MountedAspersorClass = py::class_<MountedAspersor, PivotApplier, std::shared_ptr<MountedAspersor>>;
using CartaAspersoresClass = py::class_<CartaAspersores, Object, std::shared_ptr<CartaAspersores>>;
using CartaAspersoresStaticClass = py::class_<CartaAspersoresStatic, std::shared_ptr<CartaAspersoresStatic>>;
using FieldSamplesClass = py::class_<FieldSamples, std::shared_ptr<FieldSamples>>;
using PluviometrosClass = py::class_<Pluviometros, std::shared_ptr<Pluviometros>>;
using WaterDepthsClass = py::class_<WaterDepths, std::shared_ptr<WaterDepths>>;
using WaterDepthsComparatorClass =
    py::class_<WaterDepthsComparator, Comparator, std::shared_ptr<WaterDepthsComparator>>;
using PivotEvaluationsClass = py::class_<PivotEvaluations, std::shared_ptr<PivotEvaluations>>;

/// Makes the Python class of every library class, with its docstring and no members yet.
void declareClasses(py::module_& m);

/// The Python class made by `declareClasses`, to add members to.
template <class Class>
Class reopen() {
    return Class(py::reinterpret_borrow<py::object>(py::type::of<typename Class::type>()));
}

}  // namespace caudalis::python
