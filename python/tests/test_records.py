"""Records are mutable objects and the operations that write into them change the caller's."""
import copy
import math

import caudalis
import pytest

from conftest import make_machine


def test_nested_records_are_changed_in_place():
    machine = caudalis.pivot()
    machine.endGun.saida.caudal = 2.5
    machine.caixa.velocidades[3].dotacao = 7.0
    assert machine.endGun.saida.caudal == 2.5
    assert machine.caixa.velocidades[3].dotacao == 7.0
    assert len(machine.caixa.velocidades) == 10


def test_keyword_construction_equality_and_copies():
    first = caudalis.PivotSample(distanceToCenter=100.0, wetDiameter=30.0, code="A")
    second = copy.copy(first)
    assert first == second
    second.code = "B"
    assert first != second
    assert "distanceToCenter=100.0" in repr(first)
    with pytest.raises(TypeError, match="no field"):
        caudalis.PivotSample(distance=1.0)


def test_set_fixed_spans_writes_into_the_pivot_passed(statics):
    machine = make_machine(spans=3)
    assert statics.Pivots().FixedSpansCount(machine) == 3
    assert machine.Tramos[3].site.end_cota == 103.0
    assert statics.Pivots().AllSpanLenght(machine) == 150.0


def test_elements_of_arrays_are_reached_in_place():
    machine = make_machine(spans=2)
    machine.Tramos[2].Saidas[1].caudal = 0.75
    assert machine.Tramos[2].Saidas[1].caudal == 0.75
    with pytest.raises(caudalis.Error) as raised:
        machine.Tramos[3]
    assert raised.value.number == 9


def test_outlet_counting_fills_the_span_caches_of_the_callers_pivot(statics):
    machine = make_machine(spans=2, length=50.0, spacing_cm=250.0)
    assert machine.Tramos[1].p_outlet_count == 0
    assert statics.Pivots().AllOutletCount(machine) == 40
    assert machine.Tramos[1].p_outlet_count == 20


def test_build_placements_writes_back_into_the_span_array(statics):
    tramos = caudalis.BoundedArray[caudalis.tramo]([statics.Tramos().newTramo(1, "a", 40.0, 168.0, 200.0)])
    statics.Tramos().BuildPlacements(tramos, 10.0, [12.0])
    assert tramos[1].site.start_cota == 10.0
    assert tramos[1].site.end_cota == 12.0


def test_slope_angle_is_cached_in_the_placement_passed(statics):
    placement = statics.Placements().newPlacement(0.0, 3.0, 5.0)
    angle = statics.Placements().SlopeAngle(placement)
    assert angle == pytest.approx(math.asin(0.6))
    assert placement.p_angle == angle


def test_the_gauge_area_is_cached_in_the_gauge_passed(statics):
    gauge = statics.Pluviometros().newPluviometro(0.2)
    area = statics.Pluviometros().Area(gauge)
    assert area == pytest.approx(0.1**2 * 3.14159265358979)
    assert gauge.p_area == area


def test_drop_install_marks_the_drop_passed(statics):
    drop = statics.Drops().newDrop(20.0, 2.5, caudalis.PipeMaterial(id=1, name="hose", rugosidade=140))
    statics.Drops().Install(drop)
    assert drop.p_installed
    statics.Drops().Uninstall(drop)
    assert not drop.p_installed


def test_average_gives_back_the_limit_it_wrote(statics):
    depths = statics.WaterDepths()
    samples = [depths.newWaterDepthSample(d, r) for d, r in [(10.0, 1.0), (20.0, 3.0)]]
    average, limit = depths.Average(samples, 5)
    assert limit == 2
    assert average == pytest.approx((10 * 1 + 20 * 3) / 4)
    assert depths.Average(samples) == average


def test_wrapper_update_copies_into_the_callers_record(statics):
    from conftest import FixedNozzleStrategy, make_nozzle

    wrapper = statics.newPivotWrapper(make_machine(), FixedNozzleStrategy(make_nozzle()))
    target = caudalis.pivot()
    wrapper.update(target)
    assert statics.Pivots().FixedSpansCount(target) == 2
    assert target.Tramos[1].Saidas[1].caudal > 0


def test_end_gun_ideal_is_written_into_the_gun_passed(statics):
    from conftest import FixedNozzleStrategy, make_nozzle

    machine = make_machine()
    statics.Pivots().setEndGun(machine, statics.Gun().newGun(20.0))
    wrapper = statics.newPivotWrapper(machine, FixedNozzleStrategy(make_nozzle()))
    gun = statics.Gun().newGun(20.0)
    gun.saida.distanciaAoPivot = 110.0
    wrapper.calculaEndGunIdeal(gun, statics.Pivots().newParPressaoCaudal(250.0, 1.0))
    assert gun.saida.caudal > 0


def test_arrays_push_grows_the_array_passed(statics):
    values = caudalis.BoundedArray[float]()
    statics.Arrays().Push(values, 1.5)
    statics.Arrays().Push(values, 2.5)
    assert values.bounds() == (1, 2)
    assert statics.Arrays().Last(values) == 2.5
    assert statics.Arrays().First(caudalis.BoundedArray[float]()) is None


def test_coordinates_print_and_parse(statics):
    coordinates = statics.CoordenadasSaidas()
    address = coordinates.newTramoCoordenadas(3, 12)
    assert coordinates.ToString(address) == "3-12"
    assert coordinates.Parse("3-12") == address
    assert coordinates.isAtEndGun(coordinates.newEndGunCoordenadas())
