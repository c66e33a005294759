#pragma once

#include <pybind11/pybind11.h>

#include <memory>

#include "caudalis/catalogue/Aspersor.hpp"
#include "caudalis/charts/CartaAspersores.hpp"
#include "caudalis/hydraulics/CalculosStrategy.hpp"
#include "caudalis/hydraulics/PivotApplier.hpp"
#include "caudalis/hydraulics/PivotWrapper.hpp"

namespace caudalis::python {

namespace py = pybind11;

/// Lets Python classes derive from `CalculosStrategy`. Each outlet reaches Python as a copy,
/// so a strategy may keep the outlets it is shown.
class PyCalculosStrategy : public CalculosStrategy {
public:
    void setAvaillableAspersores(const CollectionRef& all_aspersores) override {
        PYBIND11_OVERRIDE(void, CalculosStrategy, setAvaillableAspersores, all_aspersores);
    }
    void beforeCompute(PivotWrapper& pivot_wrapper) override {
        PYBIND11_OVERRIDE(void, CalculosStrategy, beforeCompute, pivot_wrapper);
    }
    void afterCompute(PivotWrapper& pivot_wrapper) override {
        PYBIND11_OVERRIDE(void, CalculosStrategy, afterCompute, pivot_wrapper);
    }
    std::shared_ptr<Aspersor> aspersorFor(const saida& aSaida) override {
        py::gil_scoped_acquire gil;
        if (py::function override =
                py::get_override(static_cast<const CalculosStrategy*>(this), "aspersorFor")) {
            return override(saida(aSaida)).cast<std::shared_ptr<Aspersor>>();
        }
        return CalculosStrategy::aspersorFor(aSaida);
    }
    std::shared_ptr<CartaAspersores> carta() override {
        PYBIND11_OVERRIDE(std::shared_ptr<CartaAspersores>, CalculosStrategy, carta);
    }
};

/// Lets Python classes derive from `PivotApplier`. `apply` is shown a copy of the caller's pivot
/// and its changes are copied back, so an applier that keeps the pivot keeps its own copy.
class PyPivotApplier : public PivotApplier {
public:
    void apply(pivot& apivot) override {
        py::gil_scoped_acquire gil;
        if (py::function override = py::get_override(static_cast<const PivotApplier*>(this), "apply")) {
            const py::object shown = py::cast(pivot(apivot));
            override(shown);
            apivot = shown.cast<const pivot&>();
            return;
        }
        PivotApplier::apply(apivot);
    }
};

}  // namespace caudalis::python
