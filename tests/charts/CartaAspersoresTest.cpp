#include <gtest/gtest.h>

#include "ErrorMatchers.hpp"
#include "MachineFixtures.hpp"
#include "caudalis/charts/CartaAspersores.hpp"
#include "caudalis/charts/MountedAspersor.hpp"
#include "caudalis/core/Factories.hpp"
#include "caudalis/core/Statics.hpp"
#include "caudalis/hydraulics/Drops.hpp"
#include "caudalis/hydraulics/PivotWrapper.hpp"
#include "caudalis/hydraulics/ReguladorPression.hpp"
#include "caudalis/machine/CoordenadasSaidas.hpp"

using namespace caudalis;
using namespace caudalis::testing;

namespace {

CoordenadasSaida at(Integer span, Integer outlet) {
    return CoordenadasSaidas::shared()->newTramoCoordenadas(span, outlet);
}

std::shared_ptr<MountedAspersor> mountedAt(Integer span, Integer outlet, const String& name = "n") {
    return makeMountedAspersor(at(span, outlet), makeNozzle(name, 0.1, 0.5));
}

}  // namespace

TEST(CartaAspersores, NewChartIsInitialised) {
    auto chart = Statics::application()->newCartaAspersores();
    EXPECT_NE(chart, Statics::application()->newCartaAspersores());
    EXPECT_EQ(chart->mountedAspersores()->Count(), 0);
    EXPECT_TRUE(chart->getDrop().p_is_null);
    EXPECT_EQ(chart->id(), 0);
    EXPECT_EQ(chart->getNome(), "");
    EXPECT_EQ(chart->getEndGunBoost(), 0);
}

TEST(CartaAspersores, NameBoostAndId) {
    auto chart = makeCartaAspersores();
    chart->setNome("Norte");
    chart->setEndGunBoost(25);
    chart->id(7);
    EXPECT_EQ(chart->getNome(), "Norte");
    EXPECT_EQ(chart->getEndGunBoost(), 25);
    EXPECT_EQ(chart->id(), 7);
}

TEST(CartaAspersores, TwoSprinklersAtTheSameOutletLeaveTheSecond) {
    auto chart = makeCartaAspersores();
    auto first = mountedAt(1, 2, "first");
    auto second = mountedAt(1, 2, "second");
    auto other = mountedAt(1, 3);
    chart->addMountedAspersor(first);
    chart->addMountedAspersor(other);
    chart->addMountedAspersor(second);
    EXPECT_EQ(chart->mountedAspersores()->Count(), 2);
    EXPECT_EQ(chart->mountedAspersorAt(at(1, 2)), second);
    EXPECT_EQ(chart->mountedAspersores()->Item(1).toObject<MountedAspersor>(), other);
    EXPECT_EQ(chart->mountedAspersores()->Item(2).toObject<MountedAspersor>(), second);
}

TEST(CartaAspersores, RemovedSprinklerStaysMarkedDeleted) {
    auto chart = makeCartaAspersores();
    auto mounted = mountedAt(2, 1);
    chart->addMountedAspersor(mounted);
    chart->removeAspersorAt(at(2, 1));
    EXPECT_FALSE(chart->hasMountedAspersorAt(at(2, 1)));
    EXPECT_EQ(chart->mountedAspersorAt(at(2, 1)), nullptr);
    ASSERT_EQ(chart->mountedAspersores()->Count(), 1);
    EXPECT_TRUE(chart->mountedAspersores()->Item(1).toObject<MountedAspersor>()->deleted());
    auto again = mountedAt(2, 1);
    chart->addMountedAspersor(again);
    EXPECT_TRUE(chart->hasMountedAspersorAt(at(2, 1)));
    EXPECT_EQ(chart->mountedAspersores()->Count(), 1);
}

TEST(CartaAspersores, RemovingAnEmptyOutletChangesNothing) {
    auto chart = makeCartaAspersores();
    auto mounted = mountedAt(1, 1);
    chart->addMountedAspersor(mounted);
    chart->removeAspersorAt(at(5, 5));
    chart->removeMountedAspersor(mountedAt(3, 3));
    EXPECT_EQ(chart->mountedAspersores()->Count(), 1);
    EXPECT_TRUE(chart->hasMountedAspersorAt(at(1, 1)));
    EXPECT_FALSE(chart->hasMountedAspersorAt(at(5, 5)));
    chart->removeMountedAspersor(mounted);
    EXPECT_FALSE(chart->hasMountedAspersorAt(at(1, 1)));
}

TEST(CartaAspersores, RegulatorsOfAFreshChartAreOneEmptyCollection) {
    auto chart = makeCartaAspersores();
    auto regulators = chart->getReguladores();
    ASSERT_NE(regulators, nullptr);
    EXPECT_EQ(regulators->Count(), 0);
    EXPECT_EQ(chart->getReguladores(), regulators);
}

TEST(CartaAspersores, TransferSharesTheRegulatorCollection) {
    auto source = makeCartaAspersores();
    source->setIndicadores(makeIndicadores(21, 2));
    PluviometryCheck check;
    check.kostiakov.k = 3;
    source->setPluviometriaCheck(check);
    source->setDrop(Drops::shared()->newDrop(20, 2, PipeMaterial{1, "PVC", 150}));
    source->setNome("source");
    source->setEndGunBoost(30);
    source->id(4);
    auto mounted = mountedAt(1, 1);
    source->addMountedAspersor(mounted);
    auto target = makeCartaAspersores();
    EXPECT_TRUE(target->transferAcessoriesFrom(*source).isEmpty());
    EXPECT_EQ(target->getIndicadores(), source->getIndicadores());
    EXPECT_EQ(target->getPluviometriaCheck(), check);
    EXPECT_EQ(target->getDrop(), source->getDrop());
    EXPECT_EQ(target->getNome(), "");
    EXPECT_EQ(target->getEndGunBoost(), 0);
    EXPECT_EQ(target->id(), 0);
    EXPECT_EQ(target->mountedAspersores()->Count(), 0);
    source->getReguladores()->Add(Variant(makeReguladorPression(1, 100, 0, 0, true)));
    EXPECT_EQ(target->getReguladores()->Count(), 1);
}

TEST(CartaAspersores, CopiesOfRecords) {
    auto chart = makeCartaAspersores();
    indicadores figures = makeIndicadores(20, 1);
    chart->setIndicadores(figures);
    figures.horasRevolucao = 99;
    EXPECT_EQ(chart->getIndicadores().horasRevolucao, 20);
}

TEST(CartaAspersores, InstallAndUninstallTheChartDrop) {
    auto chart = makeCartaAspersores();
    EXPECT_RAISES(chart->installDrop(), -2147220604);
    chart->setDrop(Drops::shared()->newDrop(20, 2, PipeMaterial{1, "PVC", 150}));
    chart->installDrop();
    EXPECT_TRUE(chart->getDrop().p_installed);
    chart->uninstalDrop();
    EXPECT_FALSE(chart->getDrop().p_installed);
}

TEST(CartaAspersores, MountsLiveEntriesAndClearsDeletedOnes) {
    pivot machine = makePivot({makeSpan(1, 10, 168, 500)}, {0});
    auto wrapper = Statics::application()->newPivotWrapper(machine, std::make_shared<RecordingStrategy>());
    auto chart = makeCartaAspersores();
    auto kept = mountedAt(1, 1);
    auto removed = mountedAt(1, 2);
    chart->addAndMountAspersor(kept, *wrapper);
    chart->addAndMountAspersor(removed, *wrapper);
    pivot copy;
    wrapper->update(copy);
    EXPECT_EQ(copy.Tramos(1).Saidas(2).obj_aspersor, removed->Aspersor());
    chart->removeAndUmountAt(at(1, 2), *wrapper);
    wrapper->update(copy);
    EXPECT_EQ(copy.Tramos(1).Saidas(2).obj_aspersor, nullptr);
    EXPECT_EQ(copy.Tramos(1).Saidas(1).obj_aspersor, kept->Aspersor());
    auto fresh = Statics::application()->newPivotWrapper(machine, std::make_shared<RecordingStrategy>());
    wrapper->apply(*makeMountedAspersor(at(1, 2), removed->Aspersor()));
    chart->mountAsperoresOn(*wrapper);
    chart->mountAsperoresOn(*fresh);
    wrapper->update(copy);
    EXPECT_EQ(copy.Tramos(1).Saidas(2).obj_aspersor, nullptr);
    fresh->update(copy);
    EXPECT_EQ(copy.Tramos(1).Saidas(1).obj_aspersor, kept->Aspersor());
}

TEST(CartaAspersores, AddAndMountOutsideThePivotKeepsTheEntry) {
    pivot machine = makePivot({makeSpan(1, 10, 168, 500)}, {0});
    auto wrapper = Statics::application()->newPivotWrapper(machine, std::make_shared<RecordingStrategy>());
    auto chart = makeCartaAspersores();
    auto outside = mountedAt(3, 1);
    EXPECT_RAISES(chart->addAndMountAspersor(outside, *wrapper), RuntimeError::SubscriptOutOfRange);
    EXPECT_TRUE(chart->hasMountedAspersorAt(at(3, 1)));
}

TEST(CartaAspersores, EndGunEntryUsesTheEndGunKey) {
    auto chart = makeCartaAspersores();
    auto gun =
        makeMountedAspersor(CoordenadasSaidas::shared()->newEndGunCoordenadas(), makeNozzle("g", 1, 0.5));
    chart->addMountedAspersor(gun);
    EXPECT_TRUE(chart->mountedAspersores()->Contains("-1--1"));
    EXPECT_TRUE(chart->hasMountedAspersorAt(CoordenadasSaidas::shared()->newEndGunCoordenadas()));
}
