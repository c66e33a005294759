#include "caudalis/design/MachineBuilder.hpp"

#include "caudalis/core/Statics.hpp"
#include "caudalis/machine/Pivots.hpp"
#include "caudalis/machine/Tramos.hpp"
#include "caudalis/machine/Types.hpp"

namespace caudalis::design {

tramo MachineBuilder::makeSpan(const SpanDescription& span) {
    return Tramos::shared()->newTramo(static_cast<Long>(span.id), span.name, span.lengthM, span.diameterMm,
                                      span.outletSpacingCm, Variant(span.endElevationM));
}

pivot MachineBuilder::build(const DesignDescription& design) const {
    const auto statics = Statics::application();
    const auto pivots = statics->Pivots();
    pivot machine = statics->newPivot();
    machine.presion = design.inletPressureKpa;
    machine.caudal = design.designFlowLps;
    machine.rugosidad = design.roughnessC;
    machine.cota = design.centreElevationM;

    const auto count = static_cast<Long>(design.spans.size());
    BoundedArray<tramo> spans(1, count);
    BoundedArray<Double> endElevations(1, count);
    for (Long i = 1; i <= count; ++i) {
        const auto& span = design.spans[static_cast<std::size_t>(i - 1)];
        spans(i) = makeSpan(span);
        endElevations(i) = span.endElevationM;
    }
    pivots->setFixedSpans(machine, spans, endElevations);
    if (design.overhang) {
        pivots->setOverhangSpan(machine, makeSpan(*design.overhang));
    }
    if (design.endGun) {
        pivots->setEndGun(machine, statics->Gun()->newGun(design.endGun->ringWidthM));
    }
    return machine;
}

}  // namespace caudalis::design
