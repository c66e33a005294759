// The pivot wrapper, the host's strategy, regulators and appliers, drops and pipe materials.
#include "Bindings.hpp"
#include "Declarations.hpp"
#include "VariantConversion.hpp"
#include "caudalis/catalogue/Aspersor.hpp"
#include "caudalis/charts/CartaAspersores.hpp"
#include "caudalis/db/Connection.hpp"
#include "caudalis/hydraulics/CalculosStrategy.hpp"
#include "caudalis/hydraulics/Drops.hpp"
#include "caudalis/hydraulics/PipeMaterials.hpp"
#include "caudalis/hydraulics/PivotApplier.hpp"
#include "caudalis/hydraulics/PivotWrapper.hpp"
#include "caudalis/hydraulics/ReguladorPression.hpp"

namespace caudalis::python {

namespace {

void bindStrategyAndAppliers(py::module_& m) {
    reopen<CalculosStrategyClass>()
        .def(py::init<>())
        .def("setAvaillableAspersores", &CalculosStrategy::setAvaillableAspersores, py::arg("all_aspersores"),
             doc("CalculosStrategy.setAvaillableAspersores"))
        .def("beforeCompute", &CalculosStrategy::beforeCompute, py::arg("pivot_wrapper"),
             doc("CalculosStrategy.beforeCompute"))
        .def("afterCompute", &CalculosStrategy::afterCompute, py::arg("pivot_wrapper"),
             doc("CalculosStrategy.afterCompute"))
        .def("aspersorFor", &CalculosStrategy::aspersorFor, py::arg("aSaida"),
             doc("CalculosStrategy.aspersorFor"))
        .def("carta", &CalculosStrategy::carta, doc("CalculosStrategy.carta"));
    reopen<PivotApplierClass>().def(py::init<>()).def("apply", &PivotApplier::apply, py::arg("apivot"));
    reopen<ReguladorPressionClass>()
        .def(py::init<>())
        .def("installed", &ReguladorPression::installed)
        .def("pression", &ReguladorPression::pression)
        .def("minimum_caudal", &ReguladorPression::minimum_caudal)
        .def("maximum_caudal", &ReguladorPression::maximum_caudal)
        .def("tramo", &ReguladorPression::tramo)
        .def("apply_to", &ReguladorPression::apply_to, py::arg("pivot_wrapper"),
             doc("ReguladorPression.apply_to"))
        .def("apply", &ReguladorPression::apply, py::arg("apivot"), doc("ReguladorPression.apply"));
    m.def("makeReguladorPression", &makeReguladorPression, py::arg("tramo"), py::arg("pression"),
          py::arg("caudal_max"), py::arg("caudal_min"), py::arg("installed"), doc("makeReguladorPression"));
}

void bindPivotWrapper() {
    reopen<PivotWrapperClass>()
        .def(py::init<>())
        .def("strategy", &PivotWrapper::strategy)
        .def("setAvaillableAspersores", &PivotWrapper::setAvaillableAspersores, py::arg("all_aspersores"))
        .def("aplicaReguladores", &PivotWrapper::aplicaReguladores, py::arg("reguladores"),
             doc("PivotWrapper.aplicaReguladores"))
        .def("getReguladores", &PivotWrapper::getReguladores)
        .def("setIndicadores", &PivotWrapper::setIndicadores, py::arg("aIndicadores"))
        .def("getIndicadores", &PivotWrapper::getIndicadores)
        .def("setPluviometriaCheck", &PivotWrapper::setPluviometriaCheck, py::arg("apluviometria"))
        .def("getPluviometriaCheck", &PivotWrapper::getPluviometriaCheck)
        .def("setEndGunBoost", &PivotWrapper::setEndGunBoost, py::arg("boost"))
        .def("getEndGunBoost", &PivotWrapper::getEndGunBoost)
        .def("setDrop", &PivotWrapper::setDrop, py::arg("aDrop"))
        .def("installDrop", &PivotWrapper::installDrop)
        .def("uninstallDrop", &PivotWrapper::uninstallDrop)
        .def("getDrop", &PivotWrapper::getDrop, doc("PivotWrapper.getDrop"))
        .def("apply", &PivotWrapper::apply, py::arg("applier"), doc("PivotWrapper.apply"))
        .def("setTimeForCompleteRevolution", &PivotWrapper::setTimeForCompleteRevolution,
             py::arg("tempo_revolucao"))
        .def("getLongitudeTotal", &PivotWrapper::getLongitudeTotal)
        .def("numeroTotalDeSaidas", &PivotWrapper::numeroTotalDeSaidas)
        .def("pluviosidadeMaxima", &PivotWrapper::pluviosidadeMaxima, py::arg("Sample"))
        .def("hasEndGun", &PivotWrapper::hasEndGun)
        .def("totalComputedDischarge", &PivotWrapper::totalComputedDischarge)
        .def("saidaAt", &PivotWrapper::saidaAt, py::arg("index"))
        .def("getPressaoCaudalAt", &PivotWrapper::getPressaoCaudalAt, py::arg("coordenadas"),
             doc("PivotWrapper.getPressaoCaudalAt"))
        .def("WaterDepthsSamples", &PivotWrapper::WaterDepthsSamples, py::arg("ideal"),
             doc("PivotWrapper.WaterDepthsSamples"))
        .def("extractCarta", &PivotWrapper::extractCarta, doc("PivotWrapper.extractCarta"))
        .def("calculate", &PivotWrapper::calculate, doc("PivotWrapper.calculate"))
        .def("compute", &PivotWrapper::compute, py::arg("strategy"), py::arg("aDrop"),
             doc("PivotWrapper.compute"))
        .def("carta", &PivotWrapper::carta, doc("PivotWrapper.carta"))
        .def("idealContinuosPressureLossForTramo", &PivotWrapper::idealContinuosPressureLossForTramo,
             py::arg("order"), doc("PivotWrapper.idealContinuosPressureLossForTramo"))
        .def("idealEndGunDischarge", &PivotWrapper::idealEndGunDischarge)
        .def("computeIdealOperationMode", &PivotWrapper::computeIdealOperationMode)
        .def("calculaEndGunIdeal", &PivotWrapper::calculaEndGunIdeal, py::arg("aGun"),
             py::arg("initial_conditions"), doc("PivotWrapper.calculaEndGunIdeal"))
        .def("update", &PivotWrapper::update, py::arg("toUpdate"), doc("PivotWrapper.update"));
}

void bindDropsAndMaterials() {
    reopen<DropsClass>()
        .def_static("shared", &Drops::shared)
        .def("isValid", &Drops::isValid, py::arg("self_"), doc("Drops.isValid"))
        .def("Differs", &Drops::Differs, py::arg("self_"), py::arg("other"))
        .def("Equals", &Drops::Equals, py::arg("self_"), py::arg("other"), doc("Drops.Equals"))
        .def("PressureLoss", &Drops::PressureLoss, py::arg("self_"), py::arg("discharge"),
             doc("Drops.PressureLoss"))
        .def("createNull", &Drops::createNull, doc("Drops.createNull"))
        .def("newDrop", &Drops::newDrop, py::arg("diameter"), py::arg("longitud"), py::arg("pipe_material"))
        .def("Install", &Drops::Install, py::arg("self_"), doc("Drops.Install"))
        .def("Uninstall", &Drops::Uninstall, py::arg("self_"))
        .def("IsInstalled", &Drops::IsInstalled, py::arg("self_"))
        .def("IsEmpty", &Drops::IsEmpty, py::arg("self_"), doc("Drops.IsEmpty"));
    reopen<PipeMaterialsClass>()
        .def(py::init<>())
        .def_static("shared", &PipeMaterials::shared)
        .def("All", &PipeMaterials::All, py::arg("con"), doc("PipeMaterials.All"))
        .def("NullPipeMaterial", &PipeMaterials::NullPipeMaterial, doc("PipeMaterials.NullPipeMaterial"))
        .def("Equals", &PipeMaterials::Equals, py::arg("self_"), py::arg("other"),
             doc("PipeMaterials.Equals"))
        .def("find", &PipeMaterials::find, py::arg("con"), py::arg("id"), doc("PipeMaterials.find"));
}

}  // namespace

void bindHydraulics(py::module_& m) {
    bindStrategyAndAppliers(m);
    bindPivotWrapper();
    bindDropsAndMaterials();
}

}  // namespace caudalis::python
