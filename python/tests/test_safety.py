"""The misuses that once crashed the interpreter or lost a change, each a Python exception now,
and the names and errors hosts reach."""
import pytest

import caudalis

from conftest import SOURCE_DIR, make_machine


def test_an_element_of_a_re_dimensioned_array_raises_reference_error(statics):
    spans = caudalis.BoundedArray[caudalis.tramo](1, 1)
    span = spans[1]
    span.longitude = 12.5
    assert spans[1].longitude == 12.5  # reached in place while it stands
    statics.Arrays().Push(spans, caudalis.tramo())
    with pytest.raises(ReferenceError):
        span.longitude
    with pytest.raises(ReferenceError):
        span.longitude = 3.0
    assert spans[1].longitude == 12.5


def test_an_outlet_of_a_replaced_span_list_raises_reference_error(statics):
    machine = make_machine(spans=2)
    outlet = machine.Tramos[1].Saidas[3]
    outlets = machine.Tramos[1].Saidas
    kept = machine.Tramos[1].Saidas[3].copy()
    machine.Tramos = caudalis.BoundedArray[caudalis.tramo]()
    with pytest.raises(ReferenceError):
        outlet.nomeAspersor = "z" * 100000
    with pytest.raises(ReferenceError):
        len(outlets)
    with pytest.raises(ReferenceError):
        outlet.copy()
    kept.nomeAspersor = "z" * 100000  # a copy is the caller's own
    assert len(kept.nomeAspersor) == 100000


def test_an_element_stands_again_where_an_equal_array_is_assigned_in_place():
    machine = make_machine(spans=2)
    span = machine.Tramos[2]
    machine.Tramos[2].diametro = 150.0
    assert span.diametro == 150.0
    iterated = list(machine.Tramos)
    iterated[0].diametro = 99.0
    assert machine.Tramos[1].diametro == 99.0


def test_none_where_an_object_is_expected_raises_type_error(statics):
    with pytest.raises(TypeError, match="parameter 'reguladores'"):
        caudalis.PivotWrapper().aplicaReguladores(None)
    nozzle_free = FixedNone()
    wrapper = statics.newPivotWrapper(make_machine(spans=1), nozzle_free)
    with pytest.raises(TypeError, match="parameter 'reguladores' takes Collection, not NoneType"):
        wrapper.aplicaReguladores(None)


class FixedNone(caudalis.CalculosStrategy):
    def aspersorFor(self, aSaida):
        return None


def test_write_back_functions_refuse_a_plain_list(statics):
    first, second = statics.Tramos().newTramo(1, "a", 50.0, 168.0, 250.0), statics.Tramos().newTramo(
        2, "b", 50.0, 168.0, 250.0)
    with pytest.raises(TypeError, match="BuildPlacements writes back .* pass a caudalis.BoundedArray"):
        statics.Tramos().BuildPlacements([first, second], 100.0, [101.0, 99.5])
    values = [1.0, 2.0]
    with pytest.raises(TypeError, match="Push writes back"):
        statics.Arrays().Push(values, 3.0)
    with pytest.raises(TypeError, match="Push writes back"):
        statics.Arrays().Push((1.0,), 3.0)
    assert values == [1.0, 2.0]
    spans = caudalis.BoundedArray[caudalis.tramo]([first, second])
    statics.Tramos().BuildPlacements(spans, 100.0, [101.0, 99.5])
    assert spans[1].site.start_cota == 100.0 and spans[2].site.end_cota == 99.5
    array = caudalis.BoundedArray[float](values)
    statics.Arrays().Push(array, 3.0)
    assert array.tolist() == [1.0, 2.0, 3.0]


def test_an_applier_written_in_python_edits_a_copy_that_is_copied_back(statics):
    kept = []

    class Raise(caudalis.PivotApplier):
        def apply(self, apivot):
            apivot.cota = 123.0
            kept.append(apivot)

    wrapper = statics.newPivotWrapper(make_machine(spans=1), FixedNone())
    wrapper.apply(Raise())
    assert kept[0].cota == 123.0
    kept[0].Tramos = caudalis.BoundedArray[caudalis.tramo]()  # the applier's own copy
    assert wrapper.getLongitudeTotal() > 0


def test_exceptions_throw_is_reachable_by_its_name():
    throw = getattr(caudalis.Exceptions, "throw")
    with pytest.raises(caudalis.Error) as raised:
        throw(1000)
    assert raised.value.number == 1000
    assert not hasattr(caudalis.Exceptions, "shared")


def test_is_new_record_reads_the_id_by_name():
    assert caudalis.isNewRecord(caudalis.marca(id=0))
    assert not caudalis.isNewRecord(caudalis.marca(id=1))
    assert caudalis.isNewRecord(caudalis.Statics.application().newCartaAspersores())

    class Stored:
        id = 7

    assert not caudalis.isNewRecord(Stored())
    with pytest.raises(TypeError, match="has no id"):
        caudalis.isNewRecord(3.0)


def test_an_integer_out_of_range_is_the_overflow_error(statics):
    with pytest.raises(caudalis.Error) as raised:
        statics.CoordenadasSaidas().newTramoCoordenadas(40000, 1)
    assert raised.value.number == caudalis.RuntimeError.Overflow == 6
    with pytest.raises(caudalis.Error) as raised:
        caudalis.tramo().id = 2**31
    assert raised.value.number == 6
    assert statics.CoordenadasSaidas().newTramoCoordenadas(32767, 1) is not None


def test_a_wrong_argument_type_names_the_parameter(statics):
    with pytest.raises(TypeError) as raised:
        statics.Tramos().newTramo(1, 2, 50.0, 168.0, 250.0)
    assert str(raised.value) == "Tramos.newTramo(): parameter 'denominacion' takes str, not int 2"
    with pytest.raises(TypeError) as raised:
        caudalis.tramo().longitude = "long"
    assert str(raised.value) == "tramo.longitude takes float, not str 'long'"
    with pytest.raises(TypeError) as raised:
        statics.Tramos().newTramo(1)
    assert "incompatible function arguments" not in str(raised.value)
    assert "denominacion: str" in str(raised.value)


def test_design_errors_are_value_errors_and_a_missing_file_is_not_found(tmp_path):
    assert issubclass(caudalis.services.DesignError, ValueError)
    with pytest.raises(FileNotFoundError, match="design file"):
        caudalis.design(str(tmp_path / "missing.json"), catalogue=[])
    broken = tmp_path / "broken.json"
    broken.write_text("{")
    with pytest.raises(ValueError):
        caudalis.design(str(broken), catalogue=[])
    assert (SOURCE_DIR / "examples" / "designs" / "small.json").is_file()
