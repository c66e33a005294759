#pragma once

#include <memory>

#include "caudalis/core/BoundedArray.hpp"
#include "caudalis/core/Records.hpp"
#include "caudalis/core/Variant.hpp"

namespace caudalis {

/// Operations on single spans and on span lists (1-based arrays of `tramo`). Stateless.
class Tramos {
public:
    /// The library-wide instance.
    static std::shared_ptr<Tramos> shared();

    /// A span with its outlets sized from its length and outlet spacing: Int(longitud /
    /// (separationSaidas_cm / 100)) outlets, `p_complete` true, when the spacing is > 0; no
    /// outlets and `p_complete` false otherwise. `cota` is converted to a Double (0 when Empty).
    tramo newTramo(Long id, const String& denominacion, Double longitud, Double diametro,
                   Double separationSaidas_cm, const Variant& cota = Variant()) const;
    /// True when every span is complete; true for an empty list.
    bool AllComplete(const BoundedArray<tramo>& Tramos) const;
    /// Same length and the same `id` at every index; nothing else is compared.
    bool AllEqual(const BoundedArray<tramo>& tramos_set_1, const BoundedArray<tramo>& tramos_set_2) const;
    /// The placement is valid and the outlets are sized.
    bool isComplete(const tramo& self) const;
    /// Lays the spans end to end: span i goes from the previous elevation (first `start_cota`)
    /// to `cotas(i)`. The spans are written back; 9 when `cotas` is too short, leaving the spans
    /// before the failure placed.
    void BuildPlacements(BoundedArray<tramo>& Tramos, Double start_cota,
                         const BoundedArray<Double>& cotas) const;
    /// Ideal entry flow minus ideal exit flow.
    Double IdealConsumedDischarge(const tramo& self) const;
    /// Computed entry flow minus computed exit flow.
    Double ConsumedDischarge(const tramo& self) const;
    /// |(ideal - computed) / ideal| consumption; raises when the ideal consumption is 0.
    Double DischargeVariation(const tramo& self) const;
    /// The cached outlet count: filled from the length of `Saidas` when 0 (or NaN) and written
    /// back into `self`; never refreshed afterwards.
    Double OutletCount(tramo& self) const;

private:
    void sizeSaidas(tramo& self) const;
};

}  // namespace caudalis
