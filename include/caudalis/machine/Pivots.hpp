#pragma once

#include <memory>

#include "caudalis/core/BoundedArray.hpp"
#include "caudalis/core/Records.hpp"
#include "caudalis/core/Variant.hpp"

namespace caudalis {

/// Operations on a whole machine: assembly from fixed spans, overhang and end gun; outlet
/// counting and addressing; lengths, irrigated area and peak application rate; completeness.
/// Stateless.
///
/// The fixed spans' outlets are numbered globally from 1, span after span; the overhang's
/// outlets and the end gun are counted but have no global number.
///
/// Counting reads each span's cached outlet count (`Tramos::OutletCount`), which fills
/// `p_outlet_count` of the spans of the caller's pivot. The operations that count therefore take
/// the pivot as a non-const reference: `saida2TramoeSaida`, `FixedSpanOutletCount`,
/// `AllSpanOutletCount`, `AllOutletCount` and `saidaAt` write those caches (and nothing else);
/// the operations that assemble or reset the machine write the fields they name.
class Pivots {
public:
    /// The library-wide instance.
    static std::shared_ptr<Pivots> shared();

    /// (span, outlet within the span), indexed 1 to 2, of the global outlet number. Integer
    /// arithmetic (6 on overflow); 9 for numbers outside the fixed spans' outlets.
    BoundedArray<Integer> saida2TramoeSaida(pivot& self, Integer numeroDaSaida) const;
    /// Sum of the fixed spans' outlet counts as a Double; Empty when there are no fixed spans.
    Variant FixedSpanOutletCount(pivot& self) const;
    /// Fixed spans' outlets plus the overhang's.
    Integer AllSpanOutletCount(pivot& self) const;
    /// `AllSpanOutletCount` plus 1 for the end gun.
    Integer AllOutletCount(pivot& self) const;
    /// Distance from the centre to the outer end of span `tramo`; 0 when `tramo` < 1.
    Double tramoAte(const pivot& self, Integer tramo) const;
    /// Fits regulators to the fixed spans: element i Empty clears `temRegulador` of span i
    /// (its `regulador` stays), a `regulador` record is fitted; anything else raises 13.
    void aplicaRegulador(pivot& self, const BoundedArray<Variant>& reguladores) const;
    /// The fitted regulators span by span (Empty where none), indexed 1 to `FixedSpansCount`;
    /// unallocated when there are no fixed spans.
    BoundedArray<Variant> recolheReguladores(const pivot& self) const;
    /// Peak application rate at `Sample`: Q / L^2 x (4 / pi x 3600) x r / (w / 2), with Q the
    /// chart's computed discharge and L the irrigated length.
    Double pluviosidadeMaxima(const pivot& self, const PivotSample& Sample) const;
    /// Length of the fixed spans plus the overhang's.
    Double AllSpanLenght(const pivot& self) const;
    /// `AllSpanLenght` plus the end gun's ring width.
    Double AllIrrigatedLenght(const pivot& self) const;
    /// `AllIrrigatedLenght`^2 x pi.
    Double IrrigatedArea(const pivot& self) const;
    /// Copies the spans, lays them from the pivot's `cota` to `endSpanHeights`, and re-places
    /// the overhang when there is one.
    void setFixedSpans(pivot& self, const BoundedArray<tramo>& spans,
                       const BoundedArray<Double>& endSpanHeights) const;
    /// Erases the fixed spans; an overhang gets the flat placeholder placement 0, 0, 1.
    void removeFixedSpans(pivot& self) const;
    /// Sets the overhang; with fixed spans it continues the last span's slope from its end.
    void setOverhangSpan(pivot& self, const tramo& span) const;
    /// Clears the presence flag only; `tramoVOladizo` keeps its data.
    void removeOverhangSpan(pivot& self) const;
    bool hasOverHang(const pivot& self) const;
    Integer FixedSpansCount(const pivot& self) const;
    void setEndGun(pivot& self, const Gun& aGun) const;
    /// Clears the presence flag only; the result is always Empty.
    Variant removeEndGun(pivot& self) const;
    bool hasEndGun(const pivot& self) const;
    /// Fixed spans plus 1 for the overhang (the end gun is not a span).
    Integer allSpansCount(const pivot& self) const;
    /// Positive pressure, flow and roughness, every span complete, and the overhang and end gun
    /// complete when present. Every term is evaluated.
    bool isComplete(const pivot& self) const;
    /// Clears the spans' ideal head loss and the end gun's ideal flow and pressure.
    void ResetIdealData(pivot& self) const;
    ParPressaoCaudal newParPressaoCaudal(Double pressao, Double caudal) const;
    /// A copy of the outlet with global number `index` (6 beyond the Integer range, 9 outside
    /// the fixed spans' outlets).
    caudalis::saida saidaAt(pivot& self, Long index) const;

private:
    void placeOverhang(pivot& self) const;
    static Double peakApplicationRate(Double discharge, Double irrigatedLength, Double distance,
                                      Double wetDiameter);
};

}  // namespace caudalis
