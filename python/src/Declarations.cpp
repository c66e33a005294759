#include "Declarations.hpp"

namespace caudalis::python {

namespace {

template <class Class>
void declare(py::module_& m, const char* name) {
    Class(m, name, doc(name));
}

}  // namespace

void declareClasses(py::module_& m) {
    declare<ObjectClass>(m, "Object");
    declare<NullClass>(m, "NullType");
    declare<VariantClass>(m, "Variant");
    declare<CollectionClass>(m, "Collection");
    declare<ComparatorClass>(m, "Comparator");
    declare<ArraysClass>(m, "Arrays");
    declare<DoublesClass>(m, "Doubles");
    declare<ExceptionsClass>(m, "Exceptions");
    declare<StaticsClass>(m, "Statics");
    declare<RecordsetClass>(m, "Recordset");
    declare<ConnectionClass>(m, "Connection");
    declare<ConnectionSettingsClass>(m, "ConnectionSettings");
    declare<TableSchemaClass>(m, "TableSchema");
    declare<TramosClass>(m, "Tramos");
    declare<TypesClass>(m, "Types");
    declare<PivotsClass>(m, "Pivots");
    declare<CoordenadasSaidasClass>(m, "CoordenadasSaidas");
    declare<AspersorClass>(m, "Aspersor");
    declare<AspersoresStaticClass>(m, "AspersoresStatic");
    declare<CalculosStrategyClass>(m, "CalculosStrategy");
    declare<PivotApplierClass>(m, "PivotApplier");
    declare<ReguladorPressionClass>(m, "ReguladorPression");
    declare<PivotWrapperClass>(m, "PivotWrapper");
    declare<DropsClass>(m, "Drops");
    declare<PipeMaterialsClass>(m, "PipeMaterials");
    declare<MountedAspersorClass>(m, "MountedAspersor");
    declare<CartaAspersoresClass>(m, "CartaAspersores");
    declare<CartaAspersoresStaticClass>(m, "CartaAspersoresStatic");
    declare<FieldSamplesClass>(m, "FieldSamples");
    declare<PluviometrosClass>(m, "Pluviometros");
    declare<WaterDepthsClass>(m, "WaterDepths");
    declare<WaterDepthsComparatorClass>(m, "WaterDepthsComparator");
    declare<PivotEvaluationsClass>(m, "PivotEvaluations");
    py::enum_<Variant::Type>(m.attr("Variant"), "Type", "The kind of value a Variant holds.")
        .value("Empty", Variant::Type::Empty)
        .value("Null", Variant::Type::Null)
        .value("Boolean", Variant::Type::Boolean)
        .value("Integer", Variant::Type::Integer)
        .value("Long", Variant::Type::Long)
        .value("Double", Variant::Type::Double)
        .value("String", Variant::Type::String)
        .value("Object", Variant::Type::Object)
        .value("Record", Variant::Type::Record);
}

}  // namespace caudalis::python
