#pragma once

namespace caudalis {

/// Friction loss per unit length of pipe by the Hazen-Williams formula,
/// J = 1.21e10 x (q / c)^1.852 x d^-4.87: flow q in litres per second, inner diameter d in
/// millimetres, roughness coefficient c; J in metres of head per metre of pipe. Every step is
/// checked, so a coefficient of 0 raises instead of returning an infinity.
double hazenWilliamsLoss(double q, double d, double c);

}  // namespace caudalis
