#include "OperatingPoints.hpp"

#include <cmath>

#include "caudalis/machine/Pivots.hpp"

namespace caudalis::design {

namespace {

/// Calls `visit(span, number)` for every fixed span and the overhang, outwards.
template <class Visit>
void forEachSpan(pivot& machine, Visit visit) {
    const auto pivots = Pivots::shared();
    const int fixed = pivots->FixedSpansCount(machine);
    for (int i = 1; i <= fixed; ++i) {
        visit(machine.Tramos(i), i);
    }
    if (pivots->hasOverHang(machine)) {
        visit(machine.tramoVOladizo, fixed + 1);
    }
}

}  // namespace

OperatingPoints::OperatingPoints(pivot& machine, double boosterKpa) {
    forEachSpan(machine, [this](const tramo& span, int) { addSpan(span); });
    if (Pivots::shared()->hasEndGun(machine)) {
        const auto& gun = machine.endGun.saida;
        endGun_ = OperatingPoint{gun.distanciaAoPivot, gun.pressao_ideal + boosterKpa, gun.caudal};
    }
}

void OperatingPoints::addSpan(const tramo& span) {
    for (Long j = 1; j <= span.Saidas.count(); ++j) {
        const auto& outlet = span.Saidas(j);
        const double pressure = span.temRegulador ? span.regulador.Preg : outlet.pressao_ideal;
        spanOutlets_.push_back(OperatingPoint{outlet.distanciaAoPivot, pressure, outlet.caudal});
    }
}

std::vector<RegulatorDescription> OperatingPoints::automaticRegulators(
    pivot& machine, const RegulationDescription& regulation) {
    double sum = 0;
    long count = 0;
    forEachSpan(machine, [&](const tramo& span, int) {
        for (Long j = 1; j <= span.Saidas.count(); ++j) {
            sum += span.Saidas(j).pressao_ideal;
            ++count;
        }
    });
    std::vector<RegulatorDescription> regulators;
    if (count == 0 || !regulation.ratingKpa) {
        return regulators;
    }
    const double mean = sum / static_cast<double>(count);
    forEachSpan(machine, [&](const tramo& span, int number) {
        bool spread = false;
        for (Long j = 1; j <= span.Saidas.count(); ++j) {
            spread = spread || std::fabs(span.Saidas(j).pressao_ideal - mean) > regulation.spreadLimit * mean;
        }
        if (spread) {
            regulators.push_back(RegulatorDescription{number, *regulation.ratingKpa, 0, 0, true, std::nullopt});
        }
    });
    return regulators;
}

}  // namespace caudalis::design
