"""A strategy written in Python drives the march; appliers written in Python edit the pivot."""
import caudalis
import pytest

from conftest import FixedNozzleStrategy, make_machine, make_nozzle


def test_a_python_strategy_drives_the_march_to_convergence(statics):
    strategy = FixedNozzleStrategy(make_nozzle())
    wrapper = statics.newPivotWrapper(make_machine(spans=2), strategy)
    wrapper.calculate()
    assert (strategy.before, strategy.after) == (1, 1)
    outlets = wrapper.numeroTotalDeSaidas()
    assert outlets == 40
    assert len(strategy.asked) >= 2 * outlets and len(strategy.asked) % outlets == 0
    first = wrapper.saidaAt(1)
    assert first.obj_aspersor is strategy.nozzle
    assert first.caudal_do_aspersor == pytest.approx(strategy.nozzle.calculate(first.pressao_actuante))
    total = sum(wrapper.saidaAt(i).caudal_do_aspersor for i in range(1, outlets + 1))
    assert wrapper.totalComputedDischarge() == pytest.approx(total)


def test_outlets_shown_to_the_strategy_are_copies_it_may_keep(statics):
    strategy = FixedNozzleStrategy(make_nozzle())
    wrapper = statics.newPivotWrapper(make_machine(spans=1), strategy)
    wrapper.calculate()
    distances = [outlet.distanciaAoPivot for outlet in strategy.asked[:20]]
    assert distances == sorted(distances) and distances[0] > 0


def test_the_wrapper_keeps_the_python_strategy_alive(statics):
    wrapper = statics.newPivotWrapper(make_machine(spans=1), FixedNozzleStrategy(make_nozzle()))
    import gc

    gc.collect()
    wrapper.calculate()
    assert isinstance(wrapper.strategy(), FixedNozzleStrategy)
    assert wrapper.strategy().after == 1


def test_a_strategy_that_leaves_outlets_empty(statics):
    class NoNozzles(FixedNozzleStrategy):
        def aspersorFor(self, aSaida):
            return None

    wrapper = statics.newPivotWrapper(make_machine(spans=1), NoNozzles(None))
    wrapper.calculate()
    assert wrapper.totalComputedDischarge() == 0
    assert wrapper.saidaAt(1).obj_aspersor is None


def test_an_exception_in_the_strategy_reaches_the_caller(statics):
    class Failing(FixedNozzleStrategy):
        def aspersorFor(self, aSaida):
            raise caudalis.Error(5, "no nozzle for this outlet")

    wrapper = statics.newPivotWrapper(make_machine(spans=1), Failing(make_nozzle()))
    with pytest.raises(caudalis.Error) as raised:
        wrapper.calculate()
    assert raised.value.number == 5


def test_accessories_go_to_the_strategys_chart(statics):
    strategy = FixedNozzleStrategy(make_nozzle())
    wrapper = statics.newPivotWrapper(make_machine(spans=2), strategy)
    regulators = caudalis.Collection()
    regulators.Add(statics.newReguladorPression(1, 140.0, 2.0, 0.05, True))
    wrapper.aplicaReguladores(regulators)
    wrapper.setIndicadores(statics.newIndicadores(20.0, 0))
    wrapper.setDrop(statics.Drops().newDrop(20.0, 2.0, caudalis.PipeMaterial(id=1, name="hose", rugosidade=140)))
    wrapper.installDrop()
    wrapper.calculate()
    assert strategy.chart.getReguladores() is regulators
    assert strategy.chart.getIndicadores().horasRevolucao == 20.0
    assert strategy.chart.getDrop().p_installed
    machine = caudalis.pivot()
    wrapper.update(machine)
    assert machine.Tramos[1].temRegulador and not machine.Tramos[2].temRegulador
    assert wrapper.saidaAt(1).pressao_actuante == pytest.approx(140.0)


def test_a_python_applier_edits_the_wrapped_pivot(statics):
    class RaiseInletPressure(caudalis.PivotApplier):
        def apply(self, apivot):
            apivot.presion += 50.0

    wrapper = statics.newPivotWrapper(make_machine(), FixedNozzleStrategy(make_nozzle()))
    wrapper.apply(RaiseInletPressure())
    machine = caudalis.pivot()
    wrapper.update(machine)
    assert machine.presion == 350.0


def test_the_chart_of_a_march_mounts_the_chosen_nozzles(statics):
    strategy = FixedNozzleStrategy(make_nozzle("chosen"))
    wrapper = statics.newPivotWrapper(make_machine(spans=1), strategy)
    wrapper.calculate()
    chart = wrapper.extractCarta()
    address = statics.CoordenadasSaidas().newTramoCoordenadas(1, 3)
    assert chart.hasMountedAspersorAt(address)
    assert chart.mountedAspersorAt(address).Aspersor().nome() == "chosen"
    wrapper.setTimeForCompleteRevolution(20.0)
    samples = wrapper.WaterDepthsSamples(False)
    assert len(samples) == 20 and all(s.depth > 0 for s in samples)
