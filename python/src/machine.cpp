// Spans, placements, end gun, pivot assembly and outlet addresses.
#include "ArrayClass.hpp"
#include "Bindings.hpp"
#include "Declarations.hpp"
#include "VariantConversion.hpp"
#include "caudalis/machine/CoordenadasSaidas.hpp"
#include "caudalis/machine/HazenWilliams.hpp"
#include "caudalis/machine/IntegerArithmetic.hpp"
#include "caudalis/machine/Pivots.hpp"
#include "caudalis/machine/Tramos.hpp"
#include "caudalis/machine/Types.hpp"

namespace caudalis::python {

namespace {

void bindTramos() {
    auto tramos = reopen<TramosClass>();
    tramos.def(py::init<>())
        .def_static("shared", &Tramos::shared)
        .def("newTramo", &Tramos::newTramo, py::arg("id"), py::arg("denominacion"), py::arg("longitud"),
             py::arg("diametro"), py::arg("separationSaidas_cm"), py::arg("cota") = Variant(),
             doc("Tramos.newTramo"))
        .def("AllComplete", &Tramos::AllComplete, py::arg("Tramos"), doc("Tramos.AllComplete"))
        .def("AllEqual", &Tramos::AllEqual, py::arg("tramos_set_1"), py::arg("tramos_set_2"),
             doc("Tramos.AllEqual"))
        .def("isComplete", &Tramos::isComplete, py::arg("self_"), doc("Tramos.isComplete"))
        .def("BuildPlacements", &Tramos::BuildPlacements, py::arg("Tramos"), py::arg("start_cota"),
             py::arg("cotas"), doc("Tramos.BuildPlacements"))
        .def("IdealConsumedDischarge", &Tramos::IdealConsumedDischarge, py::arg("self_"),
             doc("Tramos.IdealConsumedDischarge"))
        .def("ConsumedDischarge", &Tramos::ConsumedDischarge, py::arg("self_"),
             doc("Tramos.ConsumedDischarge"))
        .def("DischargeVariation", &Tramos::DischargeVariation, py::arg("self_"),
             doc("Tramos.DischargeVariation"))
        .def("OutletCount", &Tramos::OutletCount, py::arg("self_"), doc("Tramos.OutletCount"));
    tramos.def(
        "BuildPlacements",
        [](const Tramos&, const py::list&, const py::object&, const py::object&) {
            refuseList("BuildPlacements");
        },
        py::arg("Tramos"), py::arg("start_cota"), py::arg("cotas"));
    tramos.def(
        "BuildPlacements",
        [](const Tramos&, const py::tuple&, const py::object&, const py::object&) {
            refuseList("BuildPlacements");
        },
        py::arg("Tramos"), py::arg("start_cota"), py::arg("cotas"));
}

void bindTypes() {
    reopen<TypesClass>()
        .def(py::init<>())
        .def_static("application", &Types::application, doc("Types.application"))
        .def_static("gunInstance", &Types::gunInstance, doc("Types.gunInstance"))
        .def_static("placementsInstance", &Types::placementsInstance, doc("Types.placementsInstance"))
        .def_static("saidasInstance", &Types::saidasInstance, doc("Types.saidasInstance"))
        .def("newGun", &Types::newGun, py::arg("rs"), doc("Types.newGun"))
        .def("isComplete", &Types::isComplete, py::arg("self_"), doc("Types.isComplete"))
        .def("newPlacement", &Types::newPlacement, py::arg("start_cota"), py::arg("end_cota"),
             py::arg("Length"), doc("Types.newPlacement"))
        .def("newVirtualPlacement", &Types::newVirtualPlacement, py::arg("start_cota"), py::arg("angle"),
             py::arg("Length"), doc("Types.newVirtualPlacement"))
        .def("SlopeAngle", &Types::SlopeAngle, py::arg("self_"), doc("Types.SlopeAngle"))
        .def("Slope", &Types::Slope, py::arg("self_"), doc("Types.Slope"))
        .def("isValid", &Types::isValid, py::arg("self_"), doc("Types.isValid"))
        .def("ActualWaterDepthSample", &Types::ActualWaterDepthSample, py::arg("self_"),
             py::arg("coroaLength"), py::arg("revolutionTime"), doc("Types.ActualWaterDepthSample"))
        .def("IdealWaterDepthSample", &Types::IdealWaterDepthSample, py::arg("self_"), py::arg("coroaLength"),
             py::arg("revolutionTime"), doc("Types.IdealWaterDepthSample"));
}

void bindPivots() {
    reopen<PivotsClass>()
        .def_static("shared", &Pivots::shared)
        .def("saida2TramoeSaida", &Pivots::saida2TramoeSaida, py::arg("self_"), py::arg("numeroDaSaida"),
             doc("Pivots.saida2TramoeSaida"))
        .def("FixedSpanOutletCount", &Pivots::FixedSpanOutletCount, py::arg("self_"),
             doc("Pivots.FixedSpanOutletCount"))
        .def("AllSpanOutletCount", &Pivots::AllSpanOutletCount, py::arg("self_"),
             doc("Pivots.AllSpanOutletCount"))
        .def("AllOutletCount", &Pivots::AllOutletCount, py::arg("self_"), doc("Pivots.AllOutletCount"))
        .def("tramoAte", &Pivots::tramoAte, py::arg("self_"), py::arg("tramo"), doc("Pivots.tramoAte"))
        .def("aplicaRegulador", &Pivots::aplicaRegulador, py::arg("self_"), py::arg("reguladores"),
             doc("Pivots.aplicaRegulador"))
        .def("recolheReguladores", &Pivots::recolheReguladores, py::arg("self_"),
             doc("Pivots.recolheReguladores"))
        .def("pluviosidadeMaxima", &Pivots::pluviosidadeMaxima, py::arg("self_"), py::arg("Sample"),
             doc("Pivots.pluviosidadeMaxima"))
        .def("AllSpanLenght", &Pivots::AllSpanLenght, py::arg("self_"), doc("Pivots.AllSpanLenght"))
        .def("AllIrrigatedLenght", &Pivots::AllIrrigatedLenght, py::arg("self_"),
             doc("Pivots.AllIrrigatedLenght"))
        .def("IrrigatedArea", &Pivots::IrrigatedArea, py::arg("self_"), doc("Pivots.IrrigatedArea"))
        .def("setFixedSpans", &Pivots::setFixedSpans, py::arg("self_"), py::arg("spans"),
             py::arg("endSpanHeights"), doc("Pivots.setFixedSpans"))
        .def("removeFixedSpans", &Pivots::removeFixedSpans, py::arg("self_"), doc("Pivots.removeFixedSpans"))
        .def("setOverhangSpan", &Pivots::setOverhangSpan, py::arg("self_"), py::arg("span"),
             doc("Pivots.setOverhangSpan"))
        .def("removeOverhangSpan", &Pivots::removeOverhangSpan, py::arg("self_"),
             doc("Pivots.removeOverhangSpan"))
        .def("hasOverHang", &Pivots::hasOverHang, py::arg("self_"))
        .def("FixedSpansCount", &Pivots::FixedSpansCount, py::arg("self_"))
        .def("setEndGun", &Pivots::setEndGun, py::arg("self_"), py::arg("aGun"))
        .def("removeEndGun", &Pivots::removeEndGun, py::arg("self_"), doc("Pivots.removeEndGun"))
        .def("hasEndGun", &Pivots::hasEndGun, py::arg("self_"))
        .def("allSpansCount", &Pivots::allSpansCount, py::arg("self_"), doc("Pivots.allSpansCount"))
        .def("isComplete", &Pivots::isComplete, py::arg("self_"), doc("Pivots.isComplete"))
        .def("ResetIdealData", &Pivots::ResetIdealData, py::arg("self_"), doc("Pivots.ResetIdealData"))
        .def("newParPressaoCaudal", &Pivots::newParPressaoCaudal, py::arg("pressao"), py::arg("caudal"))
        .def("saidaAt", &Pivots::saidaAt, py::arg("self_"), py::arg("index"), doc("Pivots.saidaAt"));
}

void bindCoordenadasSaidas() {
    reopen<CoordenadasSaidasClass>()
        .def_static("shared", &CoordenadasSaidas::shared)
        .def("isValid", &CoordenadasSaidas::isValid, py::arg("self_"), doc("CoordenadasSaidas.isValid"))
        .def("newEndGunCoordenadas", &CoordenadasSaidas::newEndGunCoordenadas,
             doc("CoordenadasSaidas.newEndGunCoordenadas"))
        .def("newTramoCoordenadas", &CoordenadasSaidas::newTramoCoordenadas, py::arg("tramo"),
             py::arg("saida"), doc("CoordenadasSaidas.newTramoCoordenadas"))
        .def("isAtEndGun", &CoordenadasSaidas::isAtEndGun, py::arg("self_"),
             doc("CoordenadasSaidas.isAtEndGun"))
        .def("ToString", &CoordenadasSaidas::ToString, py::arg("self_"), doc("CoordenadasSaidas.ToString"))
        .def("Parse", &CoordenadasSaidas::Parse, py::arg("serialized"), doc("CoordenadasSaidas.Parse"));
}

}  // namespace

void bindMachine(py::module_& m) {
    bindTramos();
    bindTypes();
    bindPivots();
    bindCoordenadasSaidas();
    m.def("hazenWilliamsLoss", &hazenWilliamsLoss, py::arg("q"), py::arg("d"), py::arg("c"),
          doc("hazenWilliamsLoss"));
    auto integerModule = m.def_submodule("integer", "Integer (16-bit) arithmetic that raises 6 on overflow.");
    integerModule.def("from_", &integer::from, py::arg("value"), doc("integer.from"));
    integerModule.def("add", &integer::add, py::arg("a"), py::arg("b"), doc("integer.add"));
    integerModule.def("sub", &integer::sub, py::arg("a"), py::arg("b"), doc("integer.sub"));
}

}  // namespace caudalis::python
