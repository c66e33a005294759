"""Errors reach Python as `caudalis.Error` with their number, source and description."""
import caudalis
import pytest


def test_runtime_errors_keep_their_standard_numbers_and_texts():
    with pytest.raises(caudalis.Error) as raised:
        caudalis.checked.div(1.0, 0.0)
    assert raised.value.number == caudalis.RuntimeError.DivisionByZero == 11
    assert raised.value.source == "Caudalis"
    assert raised.value.description == caudalis.standardErrorText(11)
    assert "(11)" in str(raised.value)


def test_library_codes_are_raised_with_their_number(statics):
    drop = statics.Drops().createNull()
    with pytest.raises(caudalis.Error) as raised:
        statics.Drops().Install(drop)
    assert raised.value.number == caudalis.DropException.DropIncompleteException.number


def test_an_incomplete_nozzle_is_refused(statics):
    with pytest.raises(caudalis.Error) as raised:
        statics.Aspersores().newAspersor("", 1, 0.5, 1, 2, 1, 2, caudalis.modelo())
    assert raised.value.number == caudalis.AspersorException.MissingAsperorDataException.number


def test_raise_error_and_throw(statics):
    with pytest.raises(caudalis.Error) as raised:
        caudalis.raiseError(3021, "no current row")
    assert (raised.value.number, raised.value.description) == (3021, "no current row")
    with pytest.raises(caudalis.Error) as raised:
        caudalis.Exceptions.throw(caudalis.ObjectErrorBase + 900)
    assert raised.value.number == caudalis.ObjectErrorBase + 900
    with pytest.raises(caudalis.Error) as raised:
        getattr(caudalis.Exceptions, "throw")("1000")
    assert raised.value.number == 1000
    with pytest.raises(caudalis.Error) as raised:
        caudalis.Exceptions.throw_("no number")
    assert raised.value.number == 13


def test_hosts_reach_neither_the_shared_exceptions_nor_a_new_one():
    assert not hasattr(caudalis.Exceptions, "shared")
    with pytest.raises(TypeError):
        caudalis.Exceptions()


def test_error_is_an_exception_that_python_code_may_raise():
    error = caudalis.Error(5, "Invalid procedure call or argument")
    assert isinstance(error, Exception)
    assert error.source == "Caudalis"


def test_a_low_quarter_of_nothing_raises_its_code(statics):
    with pytest.raises(caudalis.Error) as raised:
        statics.WaterDepths().LowQuarter(caudalis.BoundedArray[caudalis.WaterDepthSample]())
    assert raised.value.number == caudalis.WaterDepthSampleException.NotEnoughSamplesToComputeLowQuarter.number


def test_a_wrapper_without_a_chart_raises_91(statics):
    from conftest import make_machine

    wrapper = statics.newPivotWrapper(make_machine(), caudalis.CalculosStrategy())
    with pytest.raises(caudalis.Error) as raised:
        wrapper.carta()
    assert raised.value.number == caudalis.RuntimeError.ObjectNotSet
