#include "caudalis/design/PipePressures.hpp"

#include <algorithm>

#include "caudalis/machine/HazenWilliams.hpp"
#include "caudalis/machine/Pivots.hpp"
#include "caudalis/machine/Types.hpp"

namespace caudalis::design {

std::vector<double> PipePressures::ofSpan(const tramo& span, double roughnessC) {
    std::vector<double> pressures;
    Placement site = span.site;
    const double spacing = span.separacionSaidas;
    const double gain = Types::placementsInstance()->Slope(site) * spacing * 10.0;
    double pressure = span.entry_conditions.pressao;
    double flow = span.entry_conditions.caudal;
    for (Long j = 1; j <= span.Saidas.count(); ++j) {
        const double friction =
            spacing * 10.0 * hazenWilliamsLoss(std::max(0.0, flow), span.diametro, roughnessC);
        pressure = pressure - gain - friction;
        pressures.push_back(pressure);
        flow -= span.Saidas(j).caudal_do_aspersor;
    }
    return pressures;
}

double PipePressures::elevationGain(const tramo& span) {
    return span.site.end_cota - span.site.start_cota;
}

double PipePressures::frictionLoss(const tramo& span) {
    return span.entry_conditions.pressao - span.exit_condition.pressao - elevationGain(span) * 10.0;
}

std::vector<double> PipePressures::of(const pivot& machine) {
    const auto pivots = Pivots::shared();
    std::vector<double> pressures;
    double lastExit = machine.presion;
    const auto addSpan = [&](const tramo& span) {
        const auto spanPressures = ofSpan(span, machine.rugosidad);
        pressures.insert(pressures.end(), spanPressures.begin(), spanPressures.end());
        lastExit = span.exit_condition.pressao;
    };
    for (Long i = 1; i <= machine.Tramos.count(); ++i) {
        addSpan(machine.Tramos(i));
    }
    if (pivots->hasOverHang(machine)) {
        addSpan(machine.tramoVOladizo);
    }
    if (pivots->hasEndGun(machine)) {
        pressures.push_back(lastExit);
    }
    return pressures;
}

}  // namespace caudalis::design
