"""Every function and method of the extension, found by walking the module (so a new binding is
swept as soon as it exists), called with None, wrong types, NaN, huge values and views whose
memory is gone, one argument at a time, the others plausible. Each call either returns or raises
a Python exception; the interpreter never crashes (the sanitizer build runs this file too), and
the misuse that cannot make sense raises:
- None or a wrong type where a number, a text or a library object is expected,
- an int beyond 32 bits where an Integer or a Long is expected (the library's Overflow, 6),
- a view whose array was emptied (ReferenceError)."""
import math
import re

import pytest

import caudalis
import caudalis._caudalis as module
from caudalis._arguments import _parameters, _short

SIGNATURE = re.compile(r"^(?:\d+\. )?\w+\((.*)\) -> .*$", re.M)
STATICS = caudalis.Statics.application()


def is_binding(value):
    value = getattr(value, "__wrapped__", value)
    return type(value).__name__ in ("builtin_function_or_method", "instancemethod")


def classes(namespace, prefix):
    for name, value in vars(namespace).items():
        if isinstance(value, type) and value.__module__.startswith("caudalis") and not issubclass(value, BaseException):
            yield prefix + name, value
        elif type(value).__name__ == "module" and value.__name__.startswith("caudalis._caudalis"):
            yield from classes(value, prefix + name + ".")


def bindings():
    """(name, class or None, callable, is_method, is_setter) of every binding of the module."""
    found = []
    for name, value in vars(module).items():
        if is_binding(value):
            found.append((name, None, value, False, False))
    for qualname, cls in classes(module, ""):
        for name, value in vars(cls).items():
            if isinstance(value, staticmethod) and is_binding(value.__func__):
                found.append((f"{qualname}.{name}", cls, value.__func__, False, False))
            elif isinstance(value, property) and value.fset is not None and is_binding(value.fset):
                found.append((f"{qualname}.{name}", cls, value.fset, True, True))
            elif is_binding(value) and name not in ("__init__", "__hash__"):
                found.append((f"{qualname}.{name}", cls, value, True, False))
    return found


BINDINGS = bindings()


def signatures(function):
    """The parameter lists (name, type) of every overload, self left out."""
    doc = getattr(function, "__doc__", "") or ""
    result = []
    for found in SIGNATURE.findall(doc):
        parameters = _parameters(found)
        if parameters and parameters[0][0] == "self":
            parameters = parameters[1:]
        result.append([(name, _short(kind)) for name, kind in parameters])
    return result or [[]]


def instance_of(cls):
    """A plausible object of a library class, or None when a host cannot make one."""
    makers = [lambda: cls(), lambda: getattr(STATICS, cls.__name__)(), lambda: cls.shared()]
    for make in makers:
        try:
            made = make()
        except Exception:
            continue
        if isinstance(made, cls):
            return made
    return None


def plausible(kind):
    if kind.startswith("Optional["):
        return plausible(kind[len("Optional["):-1])
    simple = {"float": 1.0, "int": 1, "str": "x", "bool": True}
    if kind in simple:
        return simple[kind]
    if kind.startswith(("List[", "Tuple[")):
        return []
    cls = getattr(module, kind.split(".")[-1], None) or getattr(module.services, kind.split(".")[-1], None)
    if isinstance(cls, type):
        return instance_of(cls)
    return 1.0


def must_refuse(kind, bad):
    """Whether a parameter of this kind cannot take `bad`."""
    if kind.startswith("Optional[") or kind in ("object", "handle", "args", "kwargs", "list", "tuple"):
        return False
    if bad is None:
        # pybind11 reads None as False for a bool; a nozzle may be None (an outlet without one).
        return kind != "bool" and kind.split(".")[-1] != "Aspersor"
    if isinstance(bad, str):
        return kind in ("float", "int", "bool") or kind.split(".")[-1] in vars(module)
    return isinstance(bad, Sentinel)


class Sentinel:
    """An object that no parameter of the library takes."""

    def __repr__(self):
        return "Sentinel()"


# Python protocols that answer for any object: equality is False, a context exit takes the
# exception (or None) it is given. They are swept for crashes only.
ANSWERS_ANYTHING = ("__eq__", "__ne__", "__exit__")
BAD_VALUES = [None, "not a number", Sentinel(), math.nan, math.inf, -1e308, 2**40, -(2**40)]


def call(function, receiver, is_method, args):
    return function(receiver, *args) if is_method else function(*args)


@pytest.fixture(autouse=True)
def scratch_directory(tmp_path, monkeypatch):
    # Calls given "x" for a path make and read files there, not in the source tree.
    monkeypatch.chdir(tmp_path)


def test_the_sweep_finds_every_binding():
    names = {name for name, *_ in BINDINGS}
    assert len(BINDINGS) > 500
    for expected in ("PivotWrapper.aplicaReguladores", "Arrays.Push", "Tramos.BuildPlacements",
                     "tramo.Saidas", "BoundedArray_tramo.__getitem__", "isNewRecord", "Exceptions.throw",
                     "services.DesignFile.load", "CoordenadasSaidas.newTramoCoordenadas"):
        assert expected in names


@pytest.mark.parametrize("name,cls,function,is_method,is_setter", BINDINGS, ids=[b[0] for b in BINDINGS])
def test_misuse_raises_and_never_crashes(name, cls, function, is_method, is_setter):
    receiver = instance_of(cls) if is_method else None
    for parameters in signatures(function):
        kinds = [kind for _, kind in parameters]
        for position, kind in enumerate(kinds):
            for bad in BAD_VALUES:
                args = [plausible(other) for other in kinds]
                args[position] = bad
                try:
                    call(function, receiver, is_method, args)
                except Exception as raised:  # any Python exception is an answer
                    if bad in (2**40, -(2**40)) and kind == "int" and isinstance(raised, caudalis.Error):
                        assert raised.number == 6, (name, position)
                    continue
                if len(signatures(function)) == 1 and not name.endswith(ANSWERS_ANYTHING):
                    assert not must_refuse(kind, bad), f"{name} took {bad!r} for {parameters[position][0]}"
        # A wrong receiver: the method of one class called on another object.
        if is_method and not name.endswith(ANSWERS_ANYTHING):
            with pytest.raises(Exception):
                call(function, Sentinel(), True, [plausible(kind) for kind in kinds])


def dead_views():
    """Views of every kind whose array has been emptied since they were taken."""
    machine = STATICS.newPivot()
    machine.Tramos = caudalis.BoundedArray[caudalis.tramo]([STATICS.Tramos().newTramo(1, "a", 50.0, 168.0, 250.0)])
    STATICS.Pivots().setFixedSpans(machine, machine.Tramos, [101.0])
    span = machine.Tramos[1]
    saidas = span.Saidas
    outlet = saidas[1]
    samples = caudalis.BoundedArray[caudalis.WaterDepthSample]([caudalis.WaterDepthSample()])
    sample = samples[1]
    field_samples = caudalis.BoundedArray[caudalis.FieldSample]([caudalis.FieldSample()])
    field_sample = field_samples[1]
    views = {"tramo": span, "BoundedArray_saida": saidas, "saida": outlet, "WaterDepthSample": sample,
             "FieldSample": field_sample, "Gun": outlet and machine.endGun}
    machine.Tramos = caudalis.BoundedArray[caudalis.tramo]()
    samples.erase()
    field_samples.erase()
    del views["Gun"]  # a field of the pivot, which lives on
    return views, machine


def test_dead_views_raise_reference_error_wherever_they_go():
    views, machine = dead_views()
    for view in views.values():
        for field in getattr(type(view), "_fields", ()):
            with pytest.raises(ReferenceError):
                getattr(view, field)
        with pytest.raises(ReferenceError):
            view.copy() if hasattr(view, "copy") else len(view)
    passed = 0
    for name, cls, function, is_method, _ in BINDINGS:
        receiver = instance_of(cls) if is_method else None
        for parameters in signatures(function):
            kinds = [kind for _, kind in parameters]
            for position, kind in enumerate(kinds):
                if kind not in views:
                    continue
                args = [plausible(other) for other in kinds]
                args[position] = views[kind]
                with pytest.raises((ReferenceError, TypeError)):
                    call(function, receiver, is_method, args)
                passed += 1
    assert passed > 20
    assert machine.endGun.saida.caudal == machine.endGun.saida.caudal  # the live field still reads
