// Sprinklers and the sprinkler catalogue.
#include "Bindings.hpp"
#include "Declarations.hpp"
#include "caudalis/catalogue/Aspersor.hpp"
#include "caudalis/catalogue/AspersoresStatic.hpp"

namespace caudalis::python {

void bindCatalogue(py::module_& /*m*/) {
    reopen<AspersorClass>()
        .def("id", &Aspersor::id, doc("Aspersor.id"))
        .def("nome", &Aspersor::nome)
        .def("modelo", &Aspersor::modelo)
        .def("marca", &Aspersor::marca)
        .def("a", &Aspersor::a, doc("Aspersor.a"))
        .def("b", &Aspersor::b, doc("Aspersor.b"))
        .def("pmin", &Aspersor::pmin)
        .def("pmax", &Aspersor::pmax)
        .def("qmin", &Aspersor::qmin)
        .def("qmax", &Aspersor::qmax)
        .def("calculate", &Aspersor::calculate, py::arg("pressao"), doc("Aspersor.calculate"))
        .def("flowWithin", &Aspersor::flowWithin, py::arg("pressao"), py::arg("caudal"), py::arg("variacao"),
             doc("Aspersor.flowWithin"))
        .def("variacaoCaudal", &Aspersor::variacaoCaudal, py::arg("pressao"), py::arg("caudal"),
             doc("Aspersor.variacaoCaudal"))
        .def("isOnPressureRange", &Aspersor::isOnPressureRange, py::arg("presion"),
             doc("Aspersor.isOnPressureRange"))
        .def("isLowPressure", &Aspersor::isLowPressure, py::arg("presion"), doc("Aspersor.isLowPressure"))
        .def("isHighPressure", &Aspersor::isHighPressure, py::arg("presion"), doc("Aspersor.isHighPressure"))
        .def("__repr__", [](const Aspersor& self) { return "<Aspersor " + self.nome() + ">"; });
    reopen<AspersoresStaticClass>()
        .def("find", &AspersoresStatic::find, py::arg("connectionString"), doc("AspersoresStatic.find"))
        .def("find_by_marca", &AspersoresStatic::find_by_marca, py::arg("connectionString"), py::arg("marca"),
             doc("AspersoresStatic.find_by_marca"))
        .def("find_by_modelo", &AspersoresStatic::find_by_modelo, py::arg("connectionString"),
             py::arg("modelo"), doc("AspersoresStatic.find_by_modelo"))
        .def("save", &AspersoresStatic::save, py::arg("connectionString"), py::arg("anAspersor"),
             doc("AspersoresStatic.save"))
        .def("MarcasAll", &AspersoresStatic::MarcasAll, py::arg("connectionString"),
             doc("AspersoresStatic.MarcasAll"))
        .def("ModelosAll", &AspersoresStatic::ModelosAll, py::arg("connectionString"),
             doc("AspersoresStatic.ModelosAll"))
        .def("newAspersor", &AspersoresStatic::newAspersor, py::arg("boquilla"), py::arg("a"), py::arg("b"),
             py::arg("pmin"), py::arg("pmax"), py::arg("qmin"), py::arg("qmax"), py::arg("aModelo"),
             doc("AspersoresStatic.newAspersor"))
        .def("getPossibleAspersores", &AspersoresStatic::getPossibleAspersores,
             py::arg("availlableAspersores"), py::arg("pressao"), py::arg("caudal"), py::arg("variacao"),
             doc("AspersoresStatic.getPossibleAspersores"))
        .def("getBestMatch", &AspersoresStatic::getBestMatch, py::arg("availlableAspersores"),
             py::arg("pressao"), py::arg("caudal"), py::arg("variacaoMaxima"),
             doc("AspersoresStatic.getBestMatch"))
        .def("NullAspersor", &AspersoresStatic::NullAspersor, doc("AspersoresStatic.NullAspersor"));
}

}  // namespace caudalis::python
