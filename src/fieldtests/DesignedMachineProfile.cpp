#include "caudalis/fieldtests/DesignedMachineProfile.hpp"

#include "caudalis/hydraulics/PivotWrapper.hpp"
#include "caudalis/machine/Pivots.hpp"

namespace caudalis::design {

namespace {

/// Pairs the outlets of a span with their samples, which come in the same order.
void addSpan(DesignedMachine& machine, const tramo& span, int number, double& from,
             const BoundedArray<WaterDepthSample>& samples, Long& next) {
    machine.spans.push_back({number, from, from + span.longitude});
    from += span.longitude;
    for (Long j = 1; j <= span.Saidas.count(); ++j, ++next) {
        const auto& sample = samples(next);
        machine.outlets.push_back({number, static_cast<long>(j), false, sample.distanceFromCenter,
                                   sample.depth, span.separacionSaidas});
    }
}

}  // namespace

DesignedMachine DesignedMachineProfile::of(const DesignResult& result) {
    DesignedMachine machine;
    double from = 0;
    for (const auto& span : result.spans) {
        machine.spans.push_back({span.number, from, from + span.span.longitude});
        from += span.span.longitude;
    }
    const double gunRing = result.design.endGun ? result.design.endGun->ringWidthM : 0;
    for (const auto& outlet : result.outlets) {
        const bool gun = outlet.place == OutletPlace::EndGun;
        const double ring =
            gun ? gunRing : result.spans[static_cast<std::size_t>(outlet.span - 1)].span.separacionSaidas;
        machine.outlets.push_back(
            {outlet.span, outlet.number, gun, outlet.outlet.distanciaAoPivot, outlet.depthMm, ring});
    }
    return machine;
}

DesignedMachine DesignedMachineProfile::of(PivotWrapper& wrapper) {
    pivot record;
    wrapper.update(record);
    const auto samples = wrapper.WaterDepthsSamples(false);
    const auto pivots = Pivots::shared();
    DesignedMachine machine;
    double from = 0;
    Long next = 1;
    const int fixed = pivots->FixedSpansCount(record);
    for (int i = 1; i <= fixed; ++i) {
        addSpan(machine, record.Tramos(i), i, from, samples, next);
    }
    if (pivots->hasOverHang(record)) {
        addSpan(machine, record.tramoVOladizo, fixed + 1, from, samples, next);
    }
    if (pivots->hasEndGun(record)) {
        const auto& sample = samples(next);
        machine.outlets.push_back({-1, -1, true, sample.distanceFromCenter, sample.depth, record.endGun.rs});
    }
    return machine;
}

}  // namespace caudalis::design
