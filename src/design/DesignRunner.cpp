#include "caudalis/design/DesignRunner.hpp"

#include <algorithm>

#include "OperatingPoints.hpp"
#include "PackageChooser.hpp"
#include "caudalis/charts/CartaAspersores.hpp"
#include "caudalis/core/Statics.hpp"
#include "caudalis/design/DesignAnalyser.hpp"
#include "caudalis/design/DesignChecks.hpp"
#include "caudalis/design/DesignValidation.hpp"
#include "caudalis/design/MachineBuilder.hpp"
#include "caudalis/design/NozzlePackageStrategy.hpp"
#include "caudalis/design/StarvedRegulators.hpp"
#include "caudalis/design/Uniformity.hpp"
#include "caudalis/hydraulics/Drops.hpp"
#include "caudalis/hydraulics/PivotWrapper.hpp"
#include "caudalis/hydraulics/ReguladorPression.hpp"
#include "caudalis/machine/Pivots.hpp"

namespace caudalis::design {

namespace {

CollectionRef makeRegulators(const DesignDescription& design) {
    const auto statics = Statics::application();
    auto regulators = Collection::create();
    for (const auto& regulator : design.regulators) {
        regulators->Add(Variant(statics->newReguladorPression(static_cast<Integer>(regulator.span),
                                                              regulator.pressureKpa, regulator.flowMaxLps,
                                                              regulator.flowMinLps, regulator.installed)));
    }
    return regulators;
}

Drop makeDrop(const DropDescription& drop) {
    const PipeMaterial material{static_cast<Long>(drop.material.id), drop.material.name,
                                static_cast<Long>(drop.material.c)};
    return Drops::shared()->newDrop(drop.diameterMm, drop.lengthM, material);
}

PivotSample makePoint(const PluviometryPointDescription& point) {
    return Statics::application()->newPivotSample(point.distanceM, point.wetDiameterM, point.code);
}

PluviometryCheck makePluviometryCheck(const PluviometryCheckDescription& check) {
    PluviometryCheck result;
    result.firstSample = makePoint(check.first);
    if (check.second) {
        result.secondSample = makePoint(*check.second);
    }
    result.kostiakov = Statics::application()->newKostiakovParameters(check.kostiakov.k, check.kostiakov.a);
    return result;
}

std::optional<double> deviationPercent(const saida& outlet) {
    if (outlet.caudal == 0) {
        return std::nullopt;
    }
    return (outlet.caudal_do_aspersor - outlet.caudal) / outlet.caudal * 100;
}

OutletResult outletResult(OutletPlace place, int span, long number, const saida& outlet, bool regulated) {
    OutletResult row;
    row.place = place;
    row.span = span;
    row.number = number;
    row.outlet = outlet;
    row.regulated = regulated;
    row.deviationPercent = deviationPercent(outlet);
    return row;
}

void addSpan(DesignResult& result, const tramo& span, int number, bool overhang) {
    result.spans.push_back(SpanResult{number, overhang, span});
    const auto place = overhang ? OutletPlace::Overhang : OutletPlace::Span;
    for (Long j = 1; j <= span.Saidas.count(); ++j) {
        auto row = outletResult(place, number, j, span.Saidas(j), span.temRegulador);
        if (span.temRegulador) {
            row.regulatorKpa = span.regulador.Preg;
        }
        result.outlets.push_back(row);
    }
}

/// Reasons come in march order, which is the order of the outlets.
void attachReasons(DesignResult& result, const std::vector<ChoiceReason>& reasons, double marginKpa) {
    for (std::size_t i = 0; i < result.outlets.size(); ++i) {
        auto& row = result.outlets[i];
        row.reason = i < reasons.size() ? reasons[i] : ChoiceReason::NoPackage;
        row.starvedRegulator = row.regulatorKpa && row.outlet.pressao_real < *row.regulatorKpa + marginKpa;
    }
}

PackageSummary summaryOf(const NozzlePackage& package) {
    PackageSummary summary;
    summary.spans = package.spans.label();
    if (package.inner) {
        summary.inner = package.inner->label();
        summary.innerToDistanceM = package.innerToDistanceM;
    }
    summary.endGun = package.endGun.label();
    return summary;
}

/// The samples come in the order of the outlets: spans outwards, overhang, end gun.
void attachDepths(DesignResult& result, const BoundedArray<WaterDepthSample>& actual,
                  const BoundedArray<WaterDepthSample>& ideal) {
    for (Long i = 1; i <= actual.count(); ++i) {
        auto& outlet = result.outlets[static_cast<std::size_t>(i - 1)];
        outlet.depthMm = actual(i).depth;
        outlet.idealDepthMm = ideal(i).depth;
    }
}

void collectOutlets(pivot& machine, DesignResult& result) {
    const auto pivots = Pivots::shared();
    const int fixed = pivots->FixedSpansCount(machine);
    for (int i = 1; i <= fixed; ++i) {
        addSpan(result, machine.Tramos(i), i, false);
    }
    if (pivots->hasOverHang(machine)) {
        addSpan(result, machine.tramoVOladizo, fixed + 1, true);
    }
    if (pivots->hasEndGun(machine)) {
        result.outlets.push_back(outletResult(OutletPlace::EndGun, -1, -1, machine.endGun.saida, false));
    }
}

}  // namespace

void DesignRunner::fitAccessories(PivotWrapper& wrapper, const DesignDescription& design) {
    const auto statics = Statics::application();
    wrapper.aplicaReguladores(makeRegulators(design));
    if (design.drop) {
        wrapper.setDrop(makeDrop(*design.drop));
        if (design.drop->installed) {
            wrapper.installDrop();
        }
    }
    wrapper.setIndicadores(statics->newIndicadores(design.indicators.revolutionHours,
                                                   static_cast<Integer>(design.indicators.blockedOutlets)));
    if (design.pluviometryCheck) {
        wrapper.setPluviometriaCheck(makePluviometryCheck(*design.pluviometryCheck));
    }
    if (design.endGun) {
        wrapper.setEndGunBoost(design.endGun->boosterKpa);
    }
    wrapper.setTimeForCompleteRevolution(design.revolutionTimeH);
}

DesignSummary DesignRunner::summarise(PivotWrapper& wrapper, DesignResult& result, long passes) {
    pivot machine;
    wrapper.update(machine);
    const auto pivots = Pivots::shared();
    DesignSummary summary;
    summary.designFlowLps = machine.caudal;
    summary.computedFlowLps = wrapper.totalComputedDischarge();
    summary.passes = passes;
    summary.hasEndGun = pivots->hasEndGun(machine);
    if (summary.hasEndGun) {
        summary.endGunPressureKpa = machine.endGun.saida.pressao_actuante;
        summary.endGunFlowLps = machine.endGun.saida.caudal_do_aspersor;
        summary.endGunBoosterKpa = wrapper.getEndGunBoost();
    }
    summary.irrigatedLengthM = pivots->AllIrrigatedLenght(machine);
    summary.irrigatedAreaM2 = pivots->IrrigatedArea(machine);
    summary.revolutionTimeH = machine.caixa.tempoH100;
    summary.outlets = static_cast<long>(result.outlets.size());
    summary.unfittedOutlets = std::count_if(result.outlets.begin(), result.outlets.end(),
                                            [](const OutletResult& o) { return !o.outlet.obj_aspersor; });
    summary.overPressureOutlets = std::count_if(result.outlets.begin(), result.outlets.end(),
                                                [](const OutletResult& o) { return o.outlet.over_pressure; });
    const auto actual = wrapper.WaterDepthsSamples(false);
    const auto ideal = wrapper.WaterDepthsSamples(true);
    attachDepths(result, actual, ideal);
    summary.depthMm = Uniformity::meanDepth(actual);
    summary.idealDepthMm = Uniformity::meanDepth(ideal);
    summary.uniformityCoefficient = Uniformity::heermannHein(actual);
    summary.uniformityBelowZero = Uniformity::heermannHeinFormula(actual).value_or(0) < 0;
    summary.idealUniformityCoefficient = Uniformity::heermannHein(ideal);
    summary.lowQuarterUniformity = Uniformity::lowQuarter(actual);
    summary.idealLowQuarterUniformity = Uniformity::lowQuarter(ideal);
    if (result.design.pluviometryCheck) {
        const auto& check = *result.design.pluviometryCheck;
        for (const auto& point : {std::optional(check.first), check.second}) {
            if (point) {
                const auto sample = makePoint(*point);
                summary.peakRates.push_back(PeakRate{sample, wrapper.pluviosidadeMaxima(sample)});
            }
        }
    }
    return summary;
}

DesignResult DesignRunner::run(const DesignDescription& description, NozzleSource& nozzles) const {
    DesignValidation::validate(description);
    auto design = description;
    auto strategy = std::make_shared<NozzlePackageStrategy>(NozzlePackage{}, options_.maxPasses);
    const auto wrapper = Statics::application()->newPivotWrapper(MachineBuilder().build(design), strategy);
    prepare(*wrapper, design);
    pivot machine;
    wrapper->update(machine);
    const OperatingPoints points(machine, wrapper->getEndGunBoost());
    strategy->usePackage(
        PackageChooser(design.nozzleSelection, nozzles).choose(points.spanOutlets(), points.endGun()));
    wrapper->calculate();

    auto chart = wrapper->extractCarta();
    chart->transferAcessoriesFrom(*strategy->carta());
    chart->setEndGunBoost(wrapper->getEndGunBoost());
    chart->setNome(design.name);
    auto result =
        gather(*wrapper, design, strategy->passes(), strategy->reasons(), chart, nozzles.wettedDiameters());
    result.package = summaryOf(strategy->package());
    return result;
}

void DesignRunner::prepare(PivotWrapper& wrapper, DesignDescription& design) {
    if (design.regulation.automatic) {
        pivot machine;
        wrapper.update(machine);
        design.regulators = OperatingPoints::automaticRegulators(machine, design.regulation);
    }
    fitAccessories(wrapper, design);
    wrapper.computeIdealOperationMode();
}

DesignResult DesignRunner::gather(PivotWrapper& wrapper, const DesignDescription& design, long passes,
                                  const std::vector<ChoiceReason>& reasons,
                                  std::shared_ptr<CartaAspersores> chart,
                                  const std::map<Long, double>& wettedDiameters) const {
    DesignResult result;
    result.design = design;
    pivot machine;
    wrapper.update(machine);
    collectOutlets(machine, result);
    result.machine = machine;
    attachReasons(result, reasons, design.regulation.marginKpa);
    result.summary = summarise(wrapper, result, passes);
    result.figuresAtPipePressure = StarvedRegulators::reassess(result);
    result.chart = std::move(chart);
    const Units units(options_.units.value_or(design.units));
    result.findings = DesignChecks::check(result, units);
    result.analysis = DesignAnalyser::analyse(result, wettedDiameters, UnitText(units));
    result.findings.insert(result.findings.end(), result.analysis.findings.begin(),
                           result.analysis.findings.end());
    std::stable_sort(result.findings.begin(), result.findings.end(),
                     [](const Finding& a, const Finding& b) { return a.severity < b.severity; });
    return result;
}

}  // namespace caudalis::design
