#pragma once

#include "caudalis/core/Records.hpp"

namespace caudalis::design {

/// The drive's timer table. A centre pivot's end tower runs a set percentage of the time (the
/// timer setting); at x % a revolution takes 100 / x times as long as at 100 %, and the depth
/// per revolution grows in the same proportion, since the discharge does not change.
class SpeedTable {
public:
    /// The ten rows 10 %, 20 %, ... 100 % (index 1 to 10) from the revolution time at 100 %:
    ///   tempoDeUmaVolta = T100 x 100 / x   (h)
    ///   velocidadeLinear = 2 pi R / tempoDeUmaVolta   (m/h, R = distance of the end tower)
    ///   dotacao = D100 x 100 / x   (mm, D100 = depth per revolution at 100 %)
    /// `tempoH100` is set to T100. Raises `std::invalid_argument` naming the value unless T100 > 0,
    /// R > 0 and D100 >= 0.
    static caixaVelocidades build(double revolutionTimeAt100H, double endTowerDistanceM, double depthAt100Mm);

    /// Depth per revolution as volume over area: Q x 3600 x T / A (mm for Q in l/s, T in h and
    /// A in m2): the gross depth the machine lays on its irrigated circle.
    static double depthPerRevolutionMm(double dischargeLps, double revolutionTimeH, double irrigatedAreaM2);
};

}  // namespace caudalis::design
