#include "caudalis/hydraulics/PivotWrapper.hpp"

#include <cmath>

#include "ActualMarch.hpp"
#include "DropLossTable.hpp"
#include "IdealMarch.hpp"
#include "OutletCount.hpp"
#include "caudalis/charts/CartaAspersores.hpp"
#include "caudalis/charts/MountedAspersor.hpp"
#include "caudalis/core/Arrays.hpp"
#include "caudalis/hydraulics/CalculosStrategy.hpp"
#include "caudalis/hydraulics/Drops.hpp"
#include "caudalis/hydraulics/PivotApplier.hpp"
#include "caudalis/hydraulics/ReguladorPression.hpp"
#include "caudalis/machine/CoordenadasSaidas.hpp"
#include "caudalis/machine/Pivots.hpp"
#include "caudalis/machine/Types.hpp"

namespace caudalis {
namespace {

constexpr double settledDischargeChange = 1e-5;

}  // namespace

void PivotWrapper::initWrapper(const pivot& apivot, const std::shared_ptr<CalculosStrategy>& strategy) {
    pivot_ = apivot;
    strategy_ = strategy;
    dropLosses_.table.reset();
    idealMarchAlongPivot(Drops::shared()->createNull());
}

void PivotWrapper::setAvaillableAspersores(const CollectionRef& all_aspersores) {
    storedStrategy().setAvaillableAspersores(all_aspersores);
}

void PivotWrapper::aplicaReguladores(const CollectionRef& reguladores) {
    clearReguladores();
    for (const Variant& element : *reguladores) {
        element.toObject<ReguladorPression>()->apply_to(*this);
    }
    reguladores_ = reguladores;
    carta()->setReguladores(reguladores);
}

void PivotWrapper::setIndicadores(const indicadores& aIndicadores) {
    carta()->setIndicadores(aIndicadores);
}

indicadores PivotWrapper::getIndicadores() {
    return carta()->getIndicadores();
}

Variant PivotWrapper::setPluviometriaCheck(const PluviometryCheck& apluviometria) {
    carta()->setPluviometriaCheck(apluviometria);
    return Variant();
}

PluviometryCheck PivotWrapper::getPluviometriaCheck() {
    return carta()->getPluviometriaCheck();
}

void PivotWrapper::setEndGunBoost(Double boost) {
    carta()->setEndGunBoost(boost);
}

Double PivotWrapper::getEndGunBoost() {
    return carta()->getEndGunBoost();
}

void PivotWrapper::setDrop(const Drop& aDrop) {
    carta()->setDrop(aDrop);
}

void PivotWrapper::installDrop() {
    carta()->installDrop();
}

void PivotWrapper::uninstallDrop() {
    carta()->uninstalDrop();
}

Drop PivotWrapper::getDrop() {
    try {
        return carta()->getDrop();
    } catch (const std::exception&) {
        return Drop{};
    }
}

void PivotWrapper::apply(PivotApplier& applier) {
    applier.apply(pivot_);
}

void PivotWrapper::setTimeForCompleteRevolution(Double tempo_revolucao) {
    pivot_.caixa.tempoH100 = tempo_revolucao;
}

Double PivotWrapper::getLongitudeTotal() {
    return Pivots::shared()->AllSpanLenght(pivot_);
}

Long PivotWrapper::numeroTotalDeSaidas() {
    return Pivots::shared()->FixedSpanOutletCount(pivot_).toLong();
}

Double PivotWrapper::pluviosidadeMaxima(const PivotSample& Sample) {
    return Pivots::shared()->pluviosidadeMaxima(pivot_, Sample);
}

bool PivotWrapper::hasEndGun() {
    return Pivots::shared()->hasEndGun(pivot_);
}

Double PivotWrapper::totalComputedDischarge() const {
    return pivot_.caudaDaCartaAssociada;
}

saida PivotWrapper::saidaAt(Long index) {
    return Pivots::shared()->saidaAt(pivot_, index);
}

ParPressaoCaudal PivotWrapper::getPressaoCaudalAt(const CoordenadasSaida& coordenadas) {
    const saida* outlet = outletAt(coordenadas);
    if (outlet == nullptr) {
        return ParPressaoCaudal{};
    }
    return Pivots::shared()->newParPressaoCaudal(outlet->pressao_actuante, outlet->caudal);
}

saida* PivotWrapper::outletAt(const CoordenadasSaida& coordenadas) {
    const auto pivots = Pivots::shared();
    if (CoordenadasSaidas::shared()->isAtEndGun(coordenadas) && hasEndGun()) {
        return &pivot_.endGun.saida;
    }
    if (coordenadas.numeroTramo <= pivots->FixedSpansCount(pivot_)) {
        return &pivot_.Tramos(coordenadas.numeroTramo).Saidas(coordenadas.saida);
    }
    if (pivots->hasOverHang(pivot_) && coordenadas.numeroTramo == pivots->allSpansCount(pivot_)) {
        return &pivot_.tramoVOladizo.Saidas(coordenadas.saida);
    }
    return nullptr;
}

BoundedArray<WaterDepthSample> PivotWrapper::WaterDepthsSamples(bool ideal) {
    const auto pivots = Pivots::shared();
    BoundedArray<WaterDepthSample> samples;
    const Integer spans = pivots->FixedSpansCount(pivot_);
    for (Long i = 1; i <= spans; ++i) {
        addTramoSamples(pivot_.Tramos(i), samples, ideal);
    }
    if (pivots->hasOverHang(pivot_)) {
        addTramoSamples(pivot_.tramoVOladizo, samples, ideal);
    }
    if (pivots->hasEndGun(pivot_)) {
        addSaidaSample(pivot_.endGun.saida, pivot_.endGun.rs, samples, ideal);
    }
    return samples;
}

void PivotWrapper::addTramoSamples(tramo& aTramo, BoundedArray<WaterDepthSample>& samples, bool ideal) const {
    const Integer outlets = outletLoopCount(aTramo);
    for (Long j = 1; j <= outlets; ++j) {
        addSaidaSample(aTramo.Saidas(j), aTramo.separacionSaidas, samples, ideal);
    }
}

void PivotWrapper::addSaidaSample(const saida& aSaida, Double coroaLength,
                                  BoundedArray<WaterDepthSample>& samples, bool ideal) const {
    const auto types = Types::saidasInstance();
    const double revolutionTime = pivot_.caixa.tempoH100;
    const WaterDepthSample sample = ideal
                                        ? types->IdealWaterDepthSample(aSaida, coroaLength, revolutionTime)
                                        : types->ActualWaterDepthSample(aSaida, coroaLength, revolutionTime);
    Arrays::shared()->Push(samples, sample);
}

std::shared_ptr<CartaAspersores> PivotWrapper::extractCarta() {
    const auto pivots = Pivots::shared();
    auto extracted = makeCartaAspersores();
    const Integer spans = pivots->FixedSpansCount(pivot_);
    for (Long i = 1; i <= spans; ++i) {
        mountTramoAspersores(*extracted, pivot_.Tramos(i), static_cast<Integer>(i));
    }
    if (pivots->hasOverHang(pivot_)) {
        mountTramoAspersores(*extracted, pivot_.tramoVOladizo, static_cast<Integer>(spans + 1));
    }
    if (pivots->hasEndGun(pivot_) && pivot_.endGun.saida.obj_aspersor) {
        auto mounted = makeMountedAspersor(CoordenadasSaidas::shared()->newEndGunCoordenadas(),
                                           pivot_.endGun.saida.obj_aspersor);
        extracted->addMountedAspersor(mounted);
        extracted->setEndGunBoost(getEndGunBoost());
    }
    return extracted;
}

void PivotWrapper::mountTramoAspersores(CartaAspersores& target, tramo& aTramo, Integer numero) const {
    const Integer outlets = outletLoopCount(aTramo);
    const auto coordinates = CoordenadasSaidas::shared();
    for (Long j = 1; j <= outlets; ++j) {
        const auto& sprinkler = aTramo.Saidas(j).obj_aspersor;
        if (sprinkler) {
            auto mounted = makeMountedAspersor(
                coordinates->newTramoCoordenadas(numero, static_cast<Integer>(j)), sprinkler);
            target.addMountedAspersor(mounted);
        }
    }
}

void PivotWrapper::calculate() {
    const Drop drop = effectiveDrop();
    idealMarchAlongPivot(drop);
    CalculosStrategy& chooser = storedStrategy();
    chooser.beforeCompute(*this);
    compute(chooser, drop);
    chooser.afterCompute(*this);
}

void PivotWrapper::compute(CalculosStrategy& /*strategy*/, const Drop& aDrop) {
    ActualMarch march(*this, pivot_, aDrop, dropLosses());
    double inflow = pivot_.caudal;
    for (;;) {
        const double outflow = march.alongPivot(inflow);
        if (!(std::fabs(outflow - inflow) > settledDischargeChange)) {
            return;
        }
        inflow = outflow;
    }
}

std::shared_ptr<CartaAspersores> PivotWrapper::carta() const {
    auto chart = strategy_ ? strategy_->carta() : nullptr;
    if (!chart) {
        raiseError(RuntimeError::ObjectNotSet);
    }
    return chart;
}

CalculosStrategy& PivotWrapper::storedStrategy() const {
    if (!strategy_) {
        raiseError(RuntimeError::ObjectNotSet);
    }
    return *strategy_;
}

Double PivotWrapper::idealContinuosPressureLossForTramo(Integer order) {
    const Integer spans = Pivots::shared()->FixedSpansCount(pivot_);
    if (order != spans + 1) {
        return pivot_.Tramos(order).perdaDeCargaIdeal;
    }
    return pivot_.tramoVOladizo.perdaDeCargaIdeal;
}

Double PivotWrapper::idealEndGunDischarge() const {
    return pivot_.endGun.saida.caudal;
}

void PivotWrapper::computeIdealOperationMode() {
    idealMarchAlongPivot(effectiveDrop());
}

void PivotWrapper::calculaEndGunIdeal(Gun& aGun, const ParPressaoCaudal& initial_conditions) {
    const Drop none = Drops::shared()->createNull();
    IdealMarch(pivot_, none, dropLosses()).endGun(aGun, initial_conditions);
}

void PivotWrapper::update(pivot& toUpdate) const {
    toUpdate = pivot_;
}

Drop PivotWrapper::effectiveDrop() {
    const Drop drop = getDrop();
    const auto drops = Drops::shared();
    return drops->IsInstalled(drop) ? drop : drops->createNull();
}

void PivotWrapper::idealMarchAlongPivot(const Drop& drop) {
    IdealMarch(pivot_, drop, dropLosses()).alongPivot();
}

DropLossTable& PivotWrapper::dropLosses() {
    if (!dropLosses_.table) {
        dropLosses_.table = std::make_shared<DropLossTable>();
    }
    return *dropLosses_.table;
}

void PivotWrapper::clearReguladores() {
    const auto pivots = Pivots::shared();
    const Integer spans = pivots->FixedSpansCount(pivot_);
    for (Long i = 1; i <= spans; ++i) {
        pivot_.Tramos(i).temRegulador = false;
    }
    if (pivots->hasOverHang(pivot_)) {
        pivot_.tramoVOladizo.temRegulador = false;
    }
}

}  // namespace caudalis
