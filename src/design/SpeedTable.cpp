#include "caudalis/design/SpeedTable.hpp"

#include <numbers>
#include <stdexcept>
#include <string>

namespace caudalis::design {

namespace {

void require(bool condition, const char* what) {
    if (!condition) {
        throw std::invalid_argument(what);
    }
}

}  // namespace

caixaVelocidades SpeedTable::build(double revolutionTimeAt100H, double endTowerDistanceM,
                                   double depthAt100Mm) {
    require(revolutionTimeAt100H > 0, "the revolution time at 100 % must be greater than 0 h");
    require(endTowerDistanceM > 0, "the end tower's distance from the centre must be greater than 0 m");
    require(depthAt100Mm >= 0, "the depth per revolution at 100 % must not be negative");
    caixaVelocidades table;
    table.tempoH100 = revolutionTimeAt100H;
    for (Long row = 1; row <= 10; ++row) {
        auto& speed = table.velocidades(row);
        speed.percentagem = 10.0 * row;
        const double slowdown = 100.0 / speed.percentagem;
        speed.tempoDeUmaVolta = revolutionTimeAt100H * slowdown;
        speed.velocidadeLinear = 2 * std::numbers::pi * endTowerDistanceM / speed.tempoDeUmaVolta;
        speed.dotacao = depthAt100Mm * slowdown;
    }
    return table;
}

double SpeedTable::depthPerRevolutionMm(double dischargeLps, double revolutionTimeH, double irrigatedAreaM2) {
    require(irrigatedAreaM2 > 0, "the irrigated area must be greater than 0 m2");
    return dischargeLps * 3600 * revolutionTimeH / irrigatedAreaM2;
}

}  // namespace caudalis::design
