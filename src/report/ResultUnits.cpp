#include "caudalis/report/ResultUnits.hpp"

namespace caudalis::design {

namespace {

class Converter {
public:
    explicit Converter(const Units& units) : units_(units) {}

    void operator()(Quantity quantity, double& value) const { value = units_.fromSI(quantity, value); }
    void operator()(Quantity quantity, std::optional<double>& value) const {
        if (value) {
            (*this)(quantity, *value);
        }
    }
    void conditions(ParPressaoCaudal& pair) const {
        (*this)(Quantity::Pressure, pair.pressao);
        (*this)(Quantity::Flow, pair.caudal);
    }
    void outlet(saida& o) const {
        (*this)(Quantity::Length, o.distanciaAoPivot);
        (*this)(Quantity::Length, o.cota);
        (*this)(Quantity::Flow, o.caudal);
        (*this)(Quantity::Flow, o.caudal_do_aspersor);
        (*this)(Quantity::Pressure, o.pressao_ideal);
        (*this)(Quantity::Pressure, o.pressao_real);
        (*this)(Quantity::Pressure, o.pressao_actuante);
    }
    void span(tramo& s) const {
        (*this)(Quantity::Length, s.longitude);
        (*this)(Quantity::Diameter, s.diametro);
        (*this)(Quantity::Spacing, s.separationSaidas_cm);
        (*this)(Quantity::Length, s.site.start_cota);
        (*this)(Quantity::Length, s.site.end_cota);
        conditions(s.entry_conditions);
        conditions(s.exit_condition);
        conditions(s.ideal_entry_conditions);
        conditions(s.ideal_exit_conditions);
        (*this)(Quantity::Pressure, s.perdaDeCargaIdeal);
        (*this)(Quantity::Pressure, s.regulador.Preg);
    }
    void row(OutletResult& r) const {
        outlet(r.outlet);
        (*this)(Quantity::Depth, r.depthMm);
        (*this)(Quantity::Depth, r.idealDepthMm);
        (*this)(Quantity::Pressure, r.regulatorKpa);
    }
    void summary(DesignSummary& s) const {
        (*this)(Quantity::Flow, s.designFlowLps);
        (*this)(Quantity::Flow, s.computedFlowLps);
        (*this)(Quantity::Pressure, s.endGunPressureKpa);
        (*this)(Quantity::Flow, s.endGunFlowLps);
        (*this)(Quantity::Pressure, s.endGunBoosterKpa);
        (*this)(Quantity::Length, s.irrigatedLengthM);
        (*this)(Quantity::Area, s.irrigatedAreaM2);
        (*this)(Quantity::Depth, s.depthMm);
        (*this)(Quantity::Depth, s.idealDepthMm);
        for (auto& peak : s.peakRates) {
            (*this)(Quantity::Rate, peak.rateMmH);
            (*this)(Quantity::Length, peak.point.distanceToCenter);
            (*this)(Quantity::Length, peak.point.wetDiameter);
        }
    }
    void design(DesignDescription& d) const {
        (*this)(Quantity::Pressure, d.inletPressureKpa);
        (*this)(Quantity::Flow, d.designFlowLps);
        (*this)(Quantity::Pressure, d.regulation.marginKpa);
        (*this)(Quantity::Pressure, d.regulation.ratingKpa);
        for (auto& regulator : d.regulators) {
            (*this)(Quantity::Pressure, regulator.pressureKpa);
        }
    }

private:
    const Units& units_;
};

}  // namespace

DesignResult ResultUnits::convert(const DesignResult& result, const Units& units) {
    DesignResult converted = result;
    const Converter convert(units);
    convert.design(converted.design);
    convert(Quantity::Length, converted.package.innerToDistanceM);
    for (auto& span : converted.spans) {
        convert.span(span.span);
    }
    for (auto& row : converted.outlets) {
        convert.row(row);
    }
    convert.summary(converted.summary);
    return converted;
}

}  // namespace caudalis::design
