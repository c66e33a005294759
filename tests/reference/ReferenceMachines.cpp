#include "ReferenceMachines.hpp"

#include <cmath>
#include <string>

#include "SeededDraws.hpp"
#include "caudalis/catalogue/AspersoresStatic.hpp"
#include "caudalis/charts/CartaAspersores.hpp"
#include "caudalis/hydraulics/Drops.hpp"
#include "caudalis/machine/Pivots.hpp"
#include "caudalis/machine/Tramos.hpp"
#include "caudalis/machine/Types.hpp"

namespace caudalis::testing {
namespace {

constexpr std::uint64_t seriesSeed = 0x43415544414c4953ULL;

/// Every fiftieth machine carries one deliberate fault, so the raised errors are compared too.
enum class Fault { None, ZeroRoughness, TinyDiameter, HugeInflow, BareHose, NegativeSetting, ZeroLength };

Fault faultOf(std::uint64_t index, SeededDraws& draw) {
    if (index % 50 != 7) {
        return Fault::None;
    }
    return static_cast<Fault>(draw.integer(1, 6));
}

double spacingCm(SeededDraws& draw) {
    static constexpr double usual[] = {100, 150, 200, 250, 300, 400};
    return draw.chance(0.7) ? usual[draw.integer(0, 5)] : draw.uniform(80, 450);
}

tramo drawSpan(SeededDraws& draw, Long id) {
    const double length = draw.uniform(20, 65);
    const double diameter = draw.uniform(100, 260);
    return Tramos::shared()->newTramo(id, "span " + std::to_string(id), length, diameter, spacingCm(draw));
}

void drawSpans(SeededDraws& draw, pivot& machine, Fault fault) {
    const long count = draw.chance(0.03) ? 0 : draw.integer(1, 6);
    if (count == 0) {
        return;
    }
    BoundedArray<tramo> spans(1, count);
    BoundedArray<Double> heights(1, count);
    double height = machine.cota;
    for (long i = 1; i <= count; ++i) {
        spans(i) = drawSpan(draw, i);
        height += draw.uniform(-4, 4);
        heights(i) = height;
    }
    if (fault == Fault::TinyDiameter) {
        spans(count).diametro = 1e-70;
    }
    if (fault == Fault::ZeroLength) {
        spans(1).longitude = 0;
    }
    Pivots::shared()->setFixedSpans(machine, spans, heights);
}

pivot drawPivot(SeededDraws& draw, Fault fault) {
    pivot machine;
    machine.cota = draw.uniform(50, 150);
    machine.presion = draw.uniform(150, 500);
    machine.caudal = fault == Fault::HugeInflow ? 1e300 : draw.uniform(10, 120);
    machine.rugosidad = fault == Fault::ZeroRoughness ? 0.0 : draw.uniform(100, 150);
    drawSpans(draw, machine, fault);
    if (draw.chance(0.4) || machine.Tramos.count() == 0) {
        const double length = draw.uniform(5, 25);
        Pivots::shared()->setOverhangSpan(
            machine,
            Tramos::shared()->newTramo(99, "overhang", length, draw.uniform(100, 170), spacingCm(draw)));
    }
    if (draw.chance(0.4)) {
        Pivots::shared()->setEndGun(machine, Types::gunInstance()->newGun(draw.uniform(5, 30)));
    }
    return machine;
}

/// The numbers of a nozzle, kept so that a twin with the very same numbers can be made.
struct NozzleNumbers {
    modelo model;
    double coefficient = 0;
    double exponent = 0;
    double pmax = 0;
};

NozzleNumbers drawNozzleNumbers(SeededDraws& draw) {
    NozzleNumbers numbers;
    numbers.model.id = draw.integer(1, 5);
    numbers.model.nome = "model " + std::to_string(numbers.model.id);
    numbers.model.marca.nome = "brand";
    numbers.exponent = draw.uniform(0.45, 0.55);
    const double flowAt300 = std::exp(draw.uniform(std::log(0.005), std::log(3.0)));
    numbers.coefficient = flowAt300 / std::pow(300.0, numbers.exponent);
    numbers.pmax = draw.uniform(200, 450);
    return numbers;
}

std::shared_ptr<Aspersor> nozzleOf(const NozzleNumbers& numbers, long number) {
    const double a = numbers.coefficient;
    const double b = numbers.exponent;
    return AspersoresStatic().newAspersor("nozzle " + std::to_string(number), a, b, 50, numbers.pmax,
                                          a * std::pow(50.0, b), a * std::pow(numbers.pmax, b),
                                          numbers.model);
}

void drawCatalogue(SeededDraws& draw, ReferenceMachine& reference) {
    const long count = draw.integer(4, 30);
    std::vector<NozzleNumbers> drawn;
    reference.catalogue = Collection::create();
    for (long i = 0; i < count; ++i) {
        // Now and then a twin of an earlier nozzle, so that ties between equal deviations occur.
        const bool twin = i > 0 && draw.chance(0.1);
        drawn.push_back(twin ? drawn[static_cast<std::size_t>(draw.integer(0, i - 1))]
                             : drawNozzleNumbers(draw));
        auto nozzle = nozzleOf(drawn.back(), i);
        reference.nozzles.push_back(nozzle);
        reference.catalogue->Add(Variant(nozzle));
    }
}

void drawAccessories(SeededDraws& draw, ReferenceMachine& reference, Fault fault) {
    const long spans = reference.machine.Tramos.count() + (reference.machine.p_has_overhang ? 1 : 0);
    if (draw.chance(0.3) || fault == Fault::NegativeSetting) {
        for (long i = 1; i <= spans; ++i) {
            if (draw.chance(0.5) || fault == Fault::NegativeSetting) {
                const double setting = fault == Fault::NegativeSetting ? -20.0 : draw.uniform(60, 200);
                reference.regulators.push_back({static_cast<Integer>(i), setting, draw.chance(0.85)});
            }
        }
    }
    reference.hasDrop = draw.chance(0.5) || fault == Fault::BareHose;
    if (reference.hasDrop) {
        const PipeMaterial material{static_cast<Long>(draw.integer(1, 3)), "hose",
                                    fault == Fault::BareHose ? 0 : static_cast<Long>(draw.integer(120, 150))};
        reference.drop = Drops::shared()->newDrop(draw.uniform(15, 30), draw.uniform(0.5, 3), material);
        reference.dropInstalled = draw.chance(0.8) || fault == Fault::BareHose;
    }
    reference.boost = draw.chance(0.3) ? draw.uniform(0, 50) : 0.0;
    reference.revolutionHours = draw.uniform(8, 40);
    reference.sample.distanceToCenter = draw.uniform(10, 300);
    reference.sample.wetDiameter = draw.uniform(5, 30);
}

}  // namespace

ReferenceMachine referenceMachine(std::uint64_t index) {
    SeededDraws draw(seriesSeed + index * 0x9E3779B97F4A7C15ULL);
    const Fault fault = faultOf(index, draw);
    ReferenceMachine reference;
    reference.machine = drawPivot(draw, fault);
    drawCatalogue(draw, reference);
    reference.rule = static_cast<ChoiceRule>(draw.integer(0, 3));
    reference.tolerance = draw.uniform(0.05, 0.3);
    drawAccessories(draw, reference, fault);
    return reference;
}

ReferenceStrategy::ReferenceStrategy(const ReferenceMachine& reference, long outletsPerPass)
    : reference_(reference), outletsPerPass_(outletsPerPass), chart_(makeCartaAspersores()) {}

void ReferenceStrategy::beforeCompute(PivotWrapper& /*pivot_wrapper*/) {
    calls_ = 0;
}

std::shared_ptr<Aspersor> ReferenceStrategy::aspersorFor(const saida& aSaida) {
    const long position = outletsPerPass_ > 0 ? calls_ % outletsPerPass_ : 0;
    ++calls_;
    if (outletsPerPass_ > 0 && calls_ > passLimit * outletsPerPass_) {
        throw PassLimitReached();
    }
    const auto& nozzles = reference_.nozzles;
    switch (reference_.rule) {
        case ChoiceRule::OneNozzle:
            return nozzles.front();
        case ChoiceRule::BestAtActing:
            return AspersoresStatic().getBestMatch(reference_.catalogue, aSaida.pressao_actuante,
                                                   aSaida.caudal, reference_.tolerance);
        case ChoiceRule::BestAtIdeal:
            return AspersoresStatic().getBestMatch(reference_.catalogue, aSaida.pressao_ideal, aSaida.caudal,
                                                   reference_.tolerance);
        case ChoiceRule::ByPosition:
            if (position % 13 == 5) {
                return nullptr;
            }
            return nozzles[static_cast<std::size_t>(position * 7) % nozzles.size()];
    }
    return nullptr;
}

}  // namespace caudalis::testing
