// Mounted sprinklers, sprinkler charts and their persistence.
#include "Bindings.hpp"
#include "Declarations.hpp"
#include "VariantConversion.hpp"
#include "caudalis/catalogue/Aspersor.hpp"
#include "caudalis/charts/CartaAspersores.hpp"
#include "caudalis/charts/CartaAspersoresStatic.hpp"
#include "caudalis/charts/MountedAspersor.hpp"
#include "caudalis/hydraulics/PivotWrapper.hpp"

namespace caudalis::python {

namespace {

void bindMountedAspersor(py::module_& m) {
    reopen<MountedAspersorClass>()
        .def("deleted", py::overload_cast<>(&MountedAspersor::deleted, py::const_))
        .def("deleted", py::overload_cast<bool>(&MountedAspersor::deleted), py::arg("value"))
        .def("init", &MountedAspersor::init, py::arg("coordenadas"), py::arg("umAspersor"),
             doc("MountedAspersor.init"))
        .def("id", &MountedAspersor::id)
        .def("Aspersor", &MountedAspersor::Aspersor)
        .def("saida", &MountedAspersor::saida, doc("MountedAspersor.saida"))
        .def("mount_on", &MountedAspersor::mount_on, py::arg("apivot"))
        .def("unMount_on", &MountedAspersor::unMount_on, py::arg("apivot"))
        .def("apply", &MountedAspersor::apply, py::arg("apivot"));
    m.def("makeMountedAspersor", &makeMountedAspersor, py::arg("coordenadas"), py::arg("umAspersor"),
          doc("makeMountedAspersor"));
}

void bindCartaAspersores(py::module_& m) {
    reopen<CartaAspersoresClass>()
        .def("id", py::overload_cast<>(&CartaAspersores::id, py::const_))
        .def("id", py::overload_cast<Long>(&CartaAspersores::id), py::arg("value"))
        .def("setNome", &CartaAspersores::setNome, py::arg("nome"))
        .def("getNome", &CartaAspersores::getNome)
        .def("setEndGunBoost", &CartaAspersores::setEndGunBoost, py::arg("value"))
        .def("getEndGunBoost", &CartaAspersores::getEndGunBoost)
        .def("init", &CartaAspersores::init, doc("CartaAspersores.init"))
        .def("setIndicadores", &CartaAspersores::setIndicadores, py::arg("aIdicadores"))
        .def("getIndicadores", &CartaAspersores::getIndicadores)
        .def("setReguladores", &CartaAspersores::setReguladores, py::arg("reguladores"),
             doc("CartaAspersores.setReguladores"))
        .def("getReguladores", &CartaAspersores::getReguladores, doc("CartaAspersores.getReguladores"))
        .def("setPluviometriaCheck", &CartaAspersores::setPluviometriaCheck, py::arg("pluviometria"))
        .def("getPluviometriaCheck", &CartaAspersores::getPluviometriaCheck)
        .def("mountedAspersorAt", &CartaAspersores::mountedAspersorAt, py::arg("coordenadas"))
        .def("removeMountedAspersor", &CartaAspersores::removeMountedAspersor, py::arg("amountedAspersor"))
        .def("setDrop", &CartaAspersores::setDrop, py::arg("aDrop"))
        .def("getDrop", &CartaAspersores::getDrop)
        .def("installDrop", &CartaAspersores::installDrop)
        .def("uninstalDrop", &CartaAspersores::uninstalDrop)
        .def("removeAndUmountAt", &CartaAspersores::removeAndUmountAt, py::arg("coordenadas"),
             py::arg("apivot"))
        .def("addAndMountAspersor", &CartaAspersores::addAndMountAspersor, py::arg("amountedAspersor"),
             py::arg("apivot"))
        .def("addMountedAspersor", &CartaAspersores::addMountedAspersor, py::arg("amountedAspersor"))
        .def("removeAspersorAt", &CartaAspersores::removeAspersorAt, py::arg("coordenadas"))
        .def("mountAsperoresOn", &CartaAspersores::mountAsperoresOn, py::arg("umPivot"),
             doc("CartaAspersores.mountAsperoresOn"))
        .def("hasMountedAspersorAt", &CartaAspersores::hasMountedAspersorAt, py::arg("coordenadas"),
             doc("CartaAspersores.hasMountedAspersorAt"))
        .def("transferAcessoriesFrom", &CartaAspersores::transferAcessoriesFrom, py::arg("source"),
             doc("CartaAspersores.transferAcessoriesFrom"));
    m.def("makeCartaAspersores", &makeCartaAspersores, doc("makeCartaAspersores"));
}

void bindCartaAspersoresStatic() {
    reopen<CartaAspersoresStaticClass>()
        .def(py::init<>())
        .def("newMountedAspersor", &CartaAspersoresStatic::newMountedAspersor, py::arg("coordenadas"),
             py::arg("umAspersor"), doc("CartaAspersoresStatic.newMountedAspersor"))
        .def("destroy", &CartaAspersoresStatic::destroy, py::arg("connectionString"), py::arg("id_carta"),
             doc("CartaAspersoresStatic.destroy"))
        .def("find", &CartaAspersoresStatic::find, py::arg("connectionString"), py::arg("asperdbpath"),
             py::arg("id_carta"), doc("CartaAspersoresStatic.find"))
        .def("enumerateAll", &CartaAspersoresStatic::enumerateAll, py::arg("connectionString"),
             py::arg("id_sistema"), doc("CartaAspersoresStatic.enumerateAll"))
        .def("AnyFor", &CartaAspersoresStatic::AnyFor, py::arg("connectionString"), py::arg("id_sistema"),
             doc("CartaAspersoresStatic.AnyFor"))
        .def("saveAsNew", &CartaAspersoresStatic::saveAsNew, py::arg("connectionString"),
             py::arg("id_sistema"), py::arg("carta"), doc("CartaAspersoresStatic.saveAsNew"))
        .def("save", &CartaAspersoresStatic::save, py::arg("connectionString"), py::arg("id_sistema"),
             py::arg("carta"), doc("CartaAspersoresStatic.save"));
}

}  // namespace

void bindCharts(py::module_& m) {
    bindMountedAspersor(m);
    bindCartaAspersores(m);
    bindCartaAspersoresStatic();
}

}  // namespace caudalis::python
