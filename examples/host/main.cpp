// A tiny host program built against the installed Caudalis package: it assembles a small
// pivot and prints its lengths, area and outlet counts.
#include <iostream>

#include <caudalis/caudalis.hpp>

int main() {
    using namespace caudalis;
    const auto statics = Statics::application();
    const auto tramos = statics->Tramos();
    const auto pivots = statics->Pivots();

    pivot machine = statics->newPivot();
    machine.presion = 250;
    machine.caudal = 50;
    machine.rugosidad = 140;
    machine.cota = 100;

    const auto spans = BoundedArray<tramo>::of(
        {tramos->newTramo(1, "S-50", 50, 168, 250), tramos->newTramo(2, "S-40", 40, 168, 250)});
    pivots->setFixedSpans(machine, spans, BoundedArray<Double>::of({101, 101.5}));
    pivots->setOverhangSpan(machine, tramos->newTramo(3, "Overhang", 20, 127, 250));
    pivots->setEndGun(machine, statics->Gun()->newGun(25));

    const Variant fixedOutlets = pivots->FixedSpanOutletCount(machine);
    std::cout << "AllSpanLenght: " << pivots->AllSpanLenght(machine) << '\n'
              << "AllIrrigatedLenght: " << pivots->AllIrrigatedLenght(machine) << '\n'
              << "IrrigatedArea: " << pivots->IrrigatedArea(machine) << '\n'
              << "FixedSpansCount: " << pivots->FixedSpansCount(machine) << '\n'
              << "FixedSpanOutletCount: " << fixedOutlets.toString() << '\n'
              << "AllSpanOutletCount: " << pivots->AllSpanOutletCount(machine) << '\n'
              << "AllOutletCount: " << pivots->AllOutletCount(machine) << '\n'
              << "complete: " << (pivots->isComplete(machine) ? "yes" : "no") << '\n';
    return 0;
}
