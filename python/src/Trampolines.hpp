#pragma once

#include <pybind11/pybind11.h>

#include <memory>

#include "caudalis/catalogue/Aspersor.hpp"
#include "caudalis/charts/CartaAspersores.hpp"
#include "caudalis/core/Comparator.hpp"
#include "caudalis/hydraulics/CalculosStrategy.hpp"
#include "caudalis/hydraulics/PivotApplier.hpp"
#include "caudalis/hydraulics/PivotWrapper.hpp"

namespace caudalis::python {

namespace py = pybind11;

/// Lets Python classes derive from `Comparator` and be used by `Arrays.Sort`.
class PyComparator : public Comparator {
public:
    bool GT(const Variant& First, const Variant& second) override {
        PYBIND11_OVERRIDE(bool, Comparator, GT, First, second);
    }
    bool GTE(const Variant& First, const Variant& second) override {
        PYBIND11_OVERRIDE(bool, Comparator, GTE, First, second);
    }
    bool LT(const Variant& First, const Variant& second) override {
        PYBIND11_OVERRIDE(bool, Comparator, LT, First, second);
    }
    bool LTE(const Variant& First, const Variant& second) override {
        PYBIND11_OVERRIDE(bool, Comparator, LTE, First, second);
    }
    bool EQ(const Variant& First, const Variant& second) override {
        PYBIND11_OVERRIDE(bool, Comparator, EQ, First, second);
    }
};

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

/// Lets Python classes derive from `PivotApplier`; `apply` edits the caller's pivot in place.
class PyPivotApplier : public PivotApplier {
public:
    void apply(pivot& apivot) override {
        py::gil_scoped_acquire gil;
        if (py::function override = py::get_override(static_cast<const PivotApplier*>(this), "apply")) {
            override(py::cast(&apivot, py::return_value_policy::reference));
            return;
        }
        PivotApplier::apply(apivot);
    }
};

}  // namespace caudalis::python
