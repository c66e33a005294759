"""`caudalis.design(...)`: a design file (or a dict of the same shape) run against a nozzle
catalogue, with the outlets, spans and findings as tables and a plot of the machine."""
import functools
import json
import os

from . import _caudalis
from ._caudalis import services
from ._plots import plot_design
from ._tables import table
from ._units import DocumentUnits


def _description(source):
    if isinstance(source, dict):
        return services.DesignFile.parse(json.dumps(source), "<dict>")
    if isinstance(source, (str, os.PathLike)):
        path = os.fspath(source)
        if not os.path.isfile(path):
            raise FileNotFoundError(f"design file {path} does not exist")
        return services.DesignFile.load(path)
    raise TypeError(f"design() takes a design file path or a dict, not {type(source).__name__}")


def _catalogue(catalogue):
    """The nozzles and the wetted diameter of each model (by model id) a design may use."""
    if isinstance(catalogue, _caudalis.Collection):
        return catalogue, {}
    if isinstance(catalogue, (list, tuple)):
        collection = _caudalis.Collection()
        for nozzle in catalogue:
            collection.Add(nozzle)
        return collection, {}
    path = os.fspath(catalogue)
    if not os.path.isfile(path):
        raise FileNotFoundError(f"catalogue database {path} does not exist (make one with `caudalis init`)")
    with _caudalis.Connection(path) as connection:
        connection.Open()
        wetted_diameters = services.WettedDiameters.load(connection)
    return _caudalis.Statics.application().Aspersores().find(path), wetted_diameters


class DesignResult:
    """A computed design: `summary` (dict), `outlets`, `spans` and `findings` (tables) in
    `units` ("si", "us" or the design file's own when None), `chart` (the `CartaAspersores` to
    store), `json()`, `text()`, `csv()`, `report()`, `fails()` and `plot()`."""

    def __init__(self, raw, units=None):
        self.raw = raw
        self.document = raw.document(units)
        self.name = self.document["name"]
        self.units = DocumentUnits(self.document["units"])
        self.summary = self.document["summary"]
        self.chart = raw.chart

    # The tables are made when first asked for: a design run for its summary or its report
    # does not pay for them.
    @functools.cached_property
    def outlets(self):
        return table([_outlet_row(outlet) for outlet in self.document["outlets"]])

    @functools.cached_property
    def spans(self):
        return table(self.document["spans"])

    @functools.cached_property
    def findings(self):
        return table(self.document["findings"])

    def json(self):
        """The whole result as the command line's `--json` writes it."""
        return self.raw.json(self.units.system)

    def text(self):
        return self.raw.text(self.units.system)

    def csv(self):
        return self.raw.csv(self.units.system)

    def report(self, path):
        """Writes the report to `path`: the HTML page of `--report` (with its plots) for a
        `.html` or `.htm` file, the printed sprinkler chart otherwise. Returns the path."""
        html = os.fspath(path).lower().endswith((".html", ".htm"))
        with open(path, "w", encoding="utf-8") as file:
            file.write(self.raw.html(self.units.system) if html else self.text())
        return path

    def fails(self, strict=False):
        """Whether the design must not be delivered: an error finding, or under `strict` any
        warning (the command line's exit status 4)."""
        return self.raw.fails(strict)

    def application_rates(self, wet_diameter_m=None):
        """(distance, peak application rate) of every outlet, in the result's units, for the
        wetted diameter given (m), or the design's pluviometry check's; None when neither is known."""
        wet = wet_diameter_m or self.raw.design.pluviometryWetDiameterM
        if not wet:
            return None
        units = self.units
        statics = _caudalis.Statics.application()
        machine = services.MachineBuilder().build(self.raw.design)
        machine.caudaDaCartaAssociada = units.to_si("flow", self.summary[units.key("computed_flow", "flow")])
        distances = [outlet["distanciaAoPivot"] for outlet in self.document["outlets"]]
        samples = [statics.newPivotSample(units.to_si("length", r), wet, "") for r in distances]
        rates = [units.from_si("rate", statics.Pivots().pluviosidadeMaxima(machine, s)) for s in samples]
        return distances, rates

    def plot(self, path=None, wet_diameter_m=None):
        """Pressure, flow, depth and application rate along the machine; written to `path`
        (PNG or SVG by its extension) when given. Returns the matplotlib figure."""
        return plot_design(self, path, wet_diameter_m)

    def __repr__(self):
        return f"<DesignResult {self.name!r}: {self.summary['outlets']} outlets>"


def _outlet_row(outlet):
    row = dict(outlet)
    nozzle = row.pop("aspersor") or {}
    row["nozzle"] = nozzle.get("nome")
    row["nozzle_model"] = nozzle.get("modelo")
    row["nozzle_brand"] = nozzle.get("marca")
    return row


def design(source, catalogue="catalogue.db", max_passes=1000, wetted_diameters=None, units=None, strict=False):
    """Runs a design as `caudalis design` does: `source` is a design file's path or a dict of
    the same shape; `catalogue` is a catalogue database's path (default ./catalogue.db, as the
    command line; its models' wetted diameters come with it) or the nozzles themselves (a
    `Collection` or a list of `Aspersor`). `wetted_diameters` ({model id: metres}) adds to or
    replaces the catalogue's. `units` ("si" or "us") is what the results are given in, the
    design file's own by default. With `strict`, a design with warnings raises `DesignError`
    (kind "findings") as one with errors always does under `--strict`."""
    description = _description(source)
    nozzles, known_diameters = _catalogue(catalogue)
    known_diameters.update(wetted_diameters or {})
    result = DesignResult(services.run(description, nozzles, max_passes, known_diameters, units), units)
    if strict and result.fails(strict):
        reason = "errors" if result.fails() else "warnings and strict was given"
        raise services.DesignError(f"the design has {reason}", "findings")
    return result
