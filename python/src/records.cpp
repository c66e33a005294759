// The library's records and the enumeration compareWhat.
#include "caudalis/core/Records.hpp"
#include "ArrayClass.hpp"
#include "Bindings.hpp"
#include "RecordClass.hpp"
#include "caudalis/catalogue/Aspersor.hpp"

namespace caudalis::python {

namespace {

void bindMachineRecords(py::module_& m) {
    RecordClass<ParPressaoCaudal>(m, "ParPressaoCaudal")
        .field("pressao", &ParPressaoCaudal::pressao)
        .field("caudal", &ParPressaoCaudal::caudal)
        .finish();
    RecordClass<Placement>(m, "Placement")
        .field("start_cota", &Placement::start_cota)
        .field("end_cota", &Placement::end_cota)
        .field("Length", &Placement::Length)
        .field("p_angle", &Placement::p_angle)
        .field("p_slope", &Placement::p_slope)
        .finish();
    RecordClass<saida>(m, "saida")
        .field("caudal", &saida::caudal)
        .field("caudal_do_aspersor", &saida::caudal_do_aspersor)
        .field("pressao_ideal", &saida::pressao_ideal)
        .field("pressao_real", &saida::pressao_real)
        .field("cota", &saida::cota)
        .field("distanciaAoPivot", &saida::distanciaAoPivot)
        .field("nomeAspersor", &saida::nomeAspersor)
        .field("pressao_actuante", &saida::pressao_actuante)
        .field("obj_aspersor", &saida::obj_aspersor)
        .field("over_pressure", &saida::over_pressure)
        .finish();
    bindBoundedArray<saida>(m, "BoundedArray_saida");
    RecordClass<regulador>(m, "regulador")
        .field("marca", &regulador::marca)
        .field("modelo", &regulador::modelo)
        .field("qmax", &regulador::qmax)
        .field("qmin", &regulador::qmin)
        .field("Preg", &regulador::Preg)
        .finish();
    RecordClass<tramo>(m, "tramo")
        .field("id", &tramo::id)
        .field("longitude", &tramo::longitude)
        .field("denominacion", &tramo::denominacion)
        .field("separationSaidas_cm", &tramo::separationSaidas_cm)
        .field("separacionSaidas", &tramo::separacionSaidas)
        .field("diametro", &tramo::diametro)
        .field("site", &tramo::site)
        .field("entry_conditions", &tramo::entry_conditions)
        .field("exit_condition", &tramo::exit_condition)
        .field("ideal_entry_conditions", &tramo::ideal_entry_conditions)
        .field("ideal_exit_conditions", &tramo::ideal_exit_conditions)
        .field("cota", &tramo::cota)
        .field("Saidas", &tramo::Saidas)
        .field("perdaDeCargaIdeal", &tramo::perdaDeCargaIdeal)
        .field("regulador", &tramo::regulador)
        .field("temRegulador", &tramo::temRegulador)
        .field("p_outlet_count", &tramo::p_outlet_count)
        .field("p_complete", &tramo::p_complete)
        .finish();
    bindBoundedArray<tramo>(m, "BoundedArray_tramo");
    RecordClass<Gun>(m, "Gun").field("rs", &Gun::rs).field("saida", &Gun::saida).finish();
    RecordClass<velocidadeDotacao>(m, "velocidadeDotacao")
        .field("percentagem", &velocidadeDotacao::percentagem)
        .field("velocidadeLinear", &velocidadeDotacao::velocidadeLinear)
        .field("tempoDeUmaVolta", &velocidadeDotacao::tempoDeUmaVolta)
        .field("dotacao", &velocidadeDotacao::dotacao)
        .finish();
    using SpeedRows = FixedArray<velocidadeDotacao, 1, 10>;
    py::class_<SpeedRows> rows(m, "FixedArray_velocidadeDotacao", doc("FixedArray"));
    rows.def("lbound", &SpeedRows::lbound).def("ubound", &SpeedRows::ubound).def("count", &SpeedRows::count);
    rows.def("bounds",
             [](const SpeedRows&) { return py::make_tuple(SpeedRows::lbound(), SpeedRows::ubound()); });
    addSequenceProtocol<SpeedRows, velocidadeDotacao>(rows);
    rows.def("__repr__", [](py::object self) {
        return "FixedArray_velocidadeDotacao(" + py::repr(self.attr("tolist")()).cast<std::string>() + ")";
    });
    RecordClass<caixaVelocidades>(m, "caixaVelocidades")
        .field("tempoH100", &caixaVelocidades::tempoH100)
        .field("velocidades", &caixaVelocidades::velocidades)
        .finish();
    RecordClass<pivot>(m, "pivot")
        .field("Tramos", &pivot::Tramos)
        .field("tramoVOladizo", &pivot::tramoVOladizo)
        .field("endGun", &pivot::endGun)
        .field("caudal", &pivot::caudal)
        .field("caudaDaCartaAssociada", &pivot::caudaDaCartaAssociada)
        .field("alcanceCanhao", &pivot::alcanceCanhao)
        .field("caixa", &pivot::caixa)
        .field("presion", &pivot::presion)
        .field("rugosidad", &pivot::rugosidad)
        .field("cota", &pivot::cota)
        .field("p_has_overhang", &pivot::p_has_overhang)
        .field("p_has_end_gun", &pivot::p_has_end_gun)
        .finish();
    RecordClass<CoordenadasSaida>(m, "CoordenadasSaida")
        .field("numeroTramo", &CoordenadasSaida::numeroTramo)
        .field("saida", &CoordenadasSaida::saida)
        .finish();
}

void bindAccessoryRecords(py::module_& m) {
    RecordClass<PipeMaterial>(m, "PipeMaterial")
        .field("id", &PipeMaterial::id)
        .field("name", &PipeMaterial::name)
        .field("rugosidade", &PipeMaterial::rugosidade)
        .finish();
    RecordClass<Drop>(m, "Drop")
        .field("longitud", &Drop::longitud)
        .field("diametro", &Drop::diametro)
        .field("pipe_material", &Drop::pipe_material)
        .field("p_pipe_material_id", &Drop::p_pipe_material_id)
        .field("p_is_null", &Drop::p_is_null)
        .field("p_installed", &Drop::p_installed)
        .finish();
    RecordClass<indicadores>(m, "indicadores")
        .field("horasRevolucao", &indicadores::horasRevolucao)
        .field("numeroSaidasObturadas", &indicadores::numeroSaidasObturadas)
        .field("id", &indicadores::id)
        .finish();
    RecordClass<PivotSample>(m, "PivotSample")
        .field("distanceToCenter", &PivotSample::distanceToCenter)
        .field("wetDiameter", &PivotSample::wetDiameter)
        .field("code", &PivotSample::code)
        .finish();
    RecordClass<KostiakovParameters>(m, "KostiakovParameters")
        .field("k", &KostiakovParameters::k)
        .field("a", &KostiakovParameters::a)
        .finish();
    RecordClass<PluviometryCheck>(m, "PluviometryCheck")
        .field("firstSample", &PluviometryCheck::firstSample)
        .field("secondSample", &PluviometryCheck::secondSample)
        .field("kostiakov", &PluviometryCheck::kostiakov)
        .finish();
}

void bindEvaluationRecords(py::module_& m) {
    RecordClass<WaterDepthSample>(m, "WaterDepthSample")
        .field("depth", &WaterDepthSample::depth)
        .field("distanceFromCenter", &WaterDepthSample::distanceFromCenter)
        .field("p_null", &WaterDepthSample::p_null)
        .finish();
    bindBoundedArray<WaterDepthSample>(m, "BoundedArray_WaterDepthSample");
    RecordClass<FieldSample>(m, "FieldSample")
        .field("collectedAmount", &FieldSample::collectedAmount)
        .field("distanceFromCenter", &FieldSample::distanceFromCenter)
        .finish();
    bindBoundedArray<FieldSample>(m, "BoundedArray_FieldSample");
    RecordClass<Pluviometro>(m, "Pluviometro")
        .field("diameter", &Pluviometro::diameter)
        .field("p_area", &Pluviometro::p_area)
        .finish();
    RecordClass<PivotEvaluation>(m, "PivotEvaluation")
        .field("id", &PivotEvaluation::id)
        .field("name", &PivotEvaluation::name)
        .field("pluviometer", &PivotEvaluation::pluviometer)
        .field("firstSample", &PivotEvaluation::firstSample)
        .field("secondSample", &PivotEvaluation::secondSample)
        .finish();
}

void bindCatalogueRecords(py::module_& m) {
    RecordClass<marca>(m, "marca").field("id", &marca::id).field("nome", &marca::nome).finish();
    RecordClass<modelo>(m, "modelo")
        .field("id", &modelo::id)
        .field("nome", &modelo::nome)
        .field("marca", &modelo::marca)
        .field("marca_id", &modelo::marca_id)
        .finish();
    RecordClass<CartaInfo>(m, "CartaInfo")
        .field("nome", &CartaInfo::nome)
        .field("id", &CartaInfo::id)
        .finish();
    RecordClass<Projecto>(m, "Projecto")
        .field("id", &Projecto::id)
        .field("nome", &Projecto::nome)
        .field("propietario", &Projecto::propietario)
        .field("areaParcela", &Projecto::areaParcela)
        .field("p", &Projecto::p)
        .field("q", &Projecto::q)
        .field("pipe_material", &Projecto::pipe_material)
        .field("cotaCentral", &Projecto::cotaCentral)
        .field("hasVoladizo", &Projecto::hasVoladizo)
        .field("hasGun", &Projecto::hasGun)
        .field("endGun", &Projecto::endGun)
        .field("horas_de_operacao_diaria", &Projecto::horas_de_operacao_diaria)
        .field("Tramos", &Projecto::Tramos)
        .field("p_pipe_material_id", &Projecto::p_pipe_material_id)
        .field("p_tramos_loaded", &Projecto::p_tramos_loaded)
        .field("p_destroyed", &Projecto::p_destroyed)
        .finish();
    RecordClass<TramoMarca>(m, "TramoMarca")
        .field("name", &TramoMarca::name)
        .field("id", &TramoMarca::id)
        .finish();
    RecordClass<ReferenceTramo>(m, "ReferenceTramo")
        .field("id", &ReferenceTramo::id)
        .field("denominacion", &ReferenceTramo::denominacion)
        .field("diametro", &ReferenceTramo::diametro)
        .field("longitud", &ReferenceTramo::longitud)
        .field("separacion_saidas", &ReferenceTramo::separacion_saidas)
        .field("marca", &ReferenceTramo::marca)
        .field("id_marca", &ReferenceTramo::id_marca)
        .finish();
    RecordClass<FrequencialData>(m, "FrequencialData")
        .field("frequencia", &FrequencialData::frequencia)
        .field("Qfc", &FrequencialData::Qfc)
        .field("ano", &FrequencialData::ano)
        .finish();
}

}  // namespace

void bindRecords(py::module_& m) {
    py::enum_<compareWhat>(m, "compareWhat", doc("compareWhat"))
        .value("depth", compareWhat::depth)
        .value("distance", compareWhat::distance);
    bindBoundedArray<Double>(m, "BoundedArray_Double");
    bindBoundedArray<Integer>(m, "BoundedArray_Integer");
    bindBoundedArray<Long>(m, "BoundedArray_Long");
    bindBoundedArray<String>(m, "BoundedArray_String");
    bindBoundedArray<Variant>(m, "BoundedArray_Variant");
    bindMachineRecords(m);
    bindAccessoryRecords(m);
    bindEvaluationRecords(m);
    bindCatalogueRecords(m);
}

}  // namespace caudalis::python
