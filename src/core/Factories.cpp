#include "caudalis/core/Factories.hpp"

namespace caudalis {

indicadores makeIndicadores(Double horas, Integer nsaidas) {
    indicadores result;
    result.horasRevolucao = horas;
    result.numeroSaidasObturadas = nsaidas;
    result.id = 0;
    return result;
}

PivotSample makePivotSample(Double centerDistance, Double wetDiameter, const String& code) {
    PivotSample result;
    result.distanceToCenter = centerDistance;
    result.wetDiameter = wetDiameter;
    result.code = code;
    return result;
}

KostiakovParameters makeKostiakovParameters(Double k, Double a) {
    KostiakovParameters result;
    result.k = k;
    result.a = a;
    return result;
}

}  // namespace caudalis
