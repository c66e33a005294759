// The extension module `caudalis._caudalis`: the whole library, subsystem by subsystem.
#include "Bindings.hpp"
#include "Declarations.hpp"

PYBIND11_MODULE(_caudalis, m) {
    using namespace caudalis::python;
    m.doc() = "Caudalis: design and evaluation of centre-pivot irrigation machines.";
    declareClasses(m);
    bindRecords(m);
    bindCore(m);
    bindDb(m);
    bindMachine(m);
    bindCatalogue(m);
    bindHydraulics(m);
    bindCharts(m);
    bindEvaluation(m);
    bindDesign(m);
}
