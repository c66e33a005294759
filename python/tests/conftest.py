"""Shared helpers of the package's tests: machines, nozzles, strategies and databases."""
import os
import pathlib

import pytest

import caudalis

SOURCE_DIR = pathlib.Path(os.environ.get("CAUDALIS_SOURCE_DIR", pathlib.Path(__file__).parents[2]))


@pytest.fixture
def statics():
    return caudalis.Statics.application()


def make_nozzle(name="test nozzle", a=0.0045, b=0.5, pmin=50.0, pmax=500.0):
    model = caudalis.modelo(nome="Test model", marca=caudalis.marca(nome="Test brand"))
    qmin, qmax = a * pmin**b, a * pmax**b
    return caudalis.Statics.application().Aspersores().newAspersor(name, a, b, pmin, pmax, qmin, qmax, model)


def make_machine(spans=2, length=50.0, spacing_cm=250.0, heights=None):
    """A pivot of `spans` spans of `length` metres with an outlet every `spacing_cm`."""
    statics = caudalis.Statics.application()
    machine = statics.newPivot()
    machine.cota = 100.0
    machine.presion = 300.0
    machine.caudal = 10.0
    machine.rugosidad = 140.0
    tramos = caudalis.BoundedArray[caudalis.tramo](
        [statics.Tramos().newTramo(i, f"span {i}", length, 168.0, spacing_cm) for i in range(1, spans + 1)]
    )
    heights = heights or [100.0 + i for i in range(1, spans + 1)]
    statics.Pivots().setFixedSpans(machine, tramos, heights)
    return machine


class FixedNozzleStrategy(caudalis.CalculosStrategy):
    """Gives every outlet one nozzle and records what the wrapper asks."""

    def __init__(self, nozzle):
        super().__init__()
        self.nozzle = nozzle
        self.chart = caudalis.makeCartaAspersores()
        self.asked = []
        self.before = 0
        self.after = 0

    def beforeCompute(self, pivot_wrapper):
        self.before += 1

    def afterCompute(self, pivot_wrapper):
        self.after += 1

    def aspersorFor(self, aSaida):
        self.asked.append(aSaida)
        return self.nozzle

    def carta(self):
        return self.chart


@pytest.fixture
def project_db(tmp_path):
    """A new project database made from the shipped schema; its connection string."""
    path = tmp_path / "project.db"
    with caudalis.Connection(str(path)) as con:
        con.Open()
        caudalis.runScriptFile(con, str(SOURCE_DIR / "data" / "schema" / "project.sql"))
    return str(path)


@pytest.fixture
def catalogue_db(tmp_path):
    path = tmp_path / "catalogue.db"
    with caudalis.Connection(str(path)) as con:
        con.Open()
        caudalis.runScriptFile(con, str(SOURCE_DIR / "data" / "schema" / "catalogue.sql"))
    return str(path)
