"""`caudalis.evaluate(...)`: the catch-can readings of a field test evaluated by the library's
field-evaluation service, as `caudalis evaluate --json` evaluates them, with tables and a plot
of the measured (and designed) depths.

Readings are a `.csv` file with named columns, or one or two files in the text form ("amount
distance" lines, ml and m, "." as decimal point, "#" comments, the two radial lines separated
by a blank line or given as two files), or a list of (amount ml, distance m) pairs.
"""
import json
import os

from . import _caudalis
from ._caudalis import services
from ._plots import plot_evaluation
from ._tables import table

ReadingsError = services.ReadingsError

_REASONS = {
    services.ExclusionReason.Invalid: "invalid",
    services.ExclusionReason.CrewFlag: "crew",
    services.ExclusionReason.InsideRadius: "inside_inner_radius",
}


def _is_csv(path):
    return os.fspath(path).lower().endswith(".csv")


def _text_of(source):
    """A `ReadingsText` of a readings file's path, or of (amount, distance) pairs."""
    if isinstance(source, (str, os.PathLike)):
        path = os.fspath(source)
        return services.ReadingsText(path, services.readTextFile(path, "readings file"))
    lines = [f"{float(amount)!r} {float(distance)!r}" for amount, distance in source]
    return services.ReadingsText("readings", "\n".join(lines) + "\n")


def _readings(sources, gauge_diameter):
    if any(isinstance(s, (str, os.PathLike)) and _is_csv(s) for s in sources):
        if len(sources) != 1:
            raise ValueError("a CSV readings file holds both radial lines (a line column): give it alone")
        return services.FieldReadingsCsv.read(_text_of(sources[0]), gauge_diameter)
    if not gauge_diameter or gauge_diameter <= 0:
        raise ValueError("readings in the text form are volumes in ml: give gauge_diameter, "
                         "the catch cans' opening in metres, > 0")
    return services.FieldReadingsText.read([_text_of(s) for s in sources], gauge_diameter)


def _figures(figures):
    return dict(services.CatchCanStatistics.named(figures))


def _reading(reading):
    return {"line": reading.line, "collector": reading.collector, "file": reading.source,
            "file_line": reading.sourceLine, "amount": reading.sample.collectedAmount,
            "distance_m": reading.sample.distanceFromCenter,
            "depth_mm": None if reading.depth.p_null else reading.depth.depth, "crew_flag": reading.crewExclusion}


def _document(name, readings, result):
    """The evaluation as `caudalis evaluate --json` writes it."""
    settings = result.settings
    return {
        "name": name, "units": "si", "readings": result.readings,
        "amounts": "ml" if readings.amounts == services.StoredAmount.VolumeMl else "mm",
        "gauge_diameter_m": readings.gaugeDiameterM, "inner_radius_m": settings.innerRadiusM,
        "last_span_end_m": settings.lastSpanEndM, "outlier_percent": settings.outlierPercent,
        "expected_depth_mm": settings.expectedDepthMm,
        "applied_percent_of_expected": result.appliedPercentOfExpected,
        "lines": [{"line": line.line, "name": line.name, "figures": _figures(line.figures)} for line in result.lines],
        "lines_mean": _figures(result.lineAverage), "together": _figures(result.together),
        "end_gun_zone": _figures(result.endGunZone) if result.endGunZone is not None else None,
        "left_out": [dict(_reading(e.reading), reason=_REASONS[e.reason]) for e in result.excluded],
        "outliers": [dict(_reading(o.reading), deviation_percent=o.deviationPercent) for o in result.outliers],
        "collectors": [_reading(reading) for reading in readings.readings],
        "comparison": None,
    }


class Evaluation:
    """A field test's figures: `document` (what `caudalis evaluate --json` writes), `summary`
    (the figures of both lines together, with the name and the applied % of expected),
    `lines` (each line's figures), `collectors`, `left_out` and `outliers` (tables), `result`
    (the library's `FieldEvaluationResult`), `json()` and `plot()`."""

    def __init__(self, name, readings, result):
        self.name = name
        self.readings = readings
        self.result = result
        self.document = _document(name, readings, result)
        self.summary = {"name": name, "readings": result.readings, **self.document["together"],
                        "applied_percent_of_expected": result.appliedPercentOfExpected}
        self.lines = table([{"line": line["line"], "name": line["name"], **line["figures"]}
                            for line in self.document["lines"]])
        self.collectors = table(self.document["collectors"])
        self.left_out = table(self.document["left_out"])
        self.outliers = table(self.document["outliers"])

    def json(self):
        return json.dumps(self.document, indent=2)

    def report(self, path):
        """Writes the HTML report of `--report` (plot, figures, left out, outliers, collectors)
        to `path`. Returns the path."""
        with open(path, "w", encoding="utf-8") as file:
            file.write(services.evaluationReport(self.name, self.readings, self.result))
        return path

    def save(self, project="project.db"):
        """Stores the evaluation (readings, figures and settings) in a project database as
        `caudalis evaluate --save` does, under its name, and returns its id. Raises ValueError
        when an evaluation of that name is stored already."""
        with _project(project) as connection:
            connection.BeginTrans()
            store = services.FieldEvaluationStore(connection)
            if store.nameTaken(self.name):
                connection.RollbackTrans()
                raise ValueError(f'an evaluation named "{self.name}" already exists in project database {project}')
            stored = store.save(self.readings, self.result, self.name)
            connection.CommitTrans()
        return stored

    def plot(self, path=None, designed=None):
        """Measured depths along the radius, beside the designed ones of a `DesignResult`
        when given; written to `path` (PNG or SVG) when given. Returns the figure."""
        return plot_evaluation(self, self.document["collectors"], path, designed)

    def __repr__(self):
        return f"<Evaluation {self.name!r}: {self.summary['collectors']} collectors count>"


def _default_name(readings):
    if isinstance(readings, (str, os.PathLike)):
        return os.path.splitext(os.path.basename(os.fspath(readings)))[0]
    return "readings"


def evaluate(readings, second=None, gauge_diameter=None, name=None, inner_radius=0.0, last_span_end=None,
             outlier_percent=20.0, expected_depth=None):
    """Evaluates a field test as `caudalis evaluate` does: `readings` is a readings file's path
    (text form or `.csv`) or a list of (amount ml, distance m) pairs; `second` an optional
    second line given apart; `gauge_diameter` the catch cans' opening in metres (needed for
    volumes without a collector area column); `inner_radius` (m) leaves the collectors nearer
    the centre out; collectors beyond `last_span_end` (m) are the end-gun zone; collectors more
    than `outlier_percent` off the mean are listed; `expected_depth` (mm) is what the machine
    should apply. Raises `ReadingsError` naming the file and line at fault."""
    sources = [readings] + ([second] if second is not None else [])
    field_readings = _readings(sources, gauge_diameter)
    settings = services.FieldEvaluationSettings()
    settings.innerRadiusM = inner_radius
    settings.lastSpanEndM = last_span_end
    settings.outlierPercent = outlier_percent
    settings.expectedDepthMm = expected_depth
    result = services.FieldEvaluator.evaluate(field_readings, settings)
    return Evaluation(name or _default_name(readings), field_readings, result)


def _project(path):
    """An open connection to an existing project database."""
    path = os.fspath(path)
    if not os.path.isfile(path):
        raise FileNotFoundError(f"project database {path} does not exist (make one with `caudalis init`)")
    connection = _caudalis.Connection(path)
    connection.Open()
    return connection


def evaluations(project="project.db"):
    """The evaluations stored in a project database, as `caudalis evaluate list` lists them:
    id, name and the CU and DU of both lines together (None for one stored without figures)."""
    with _project(project) as connection:
        stored = services.FieldEvaluationStore(connection).list()
    return table([{"id": e.id, "name": e.name, "cu_hh_percent": e.cuHeermannHein, "du_lq_percent": e.duLowQuarter}
                  for e in stored])


def stored_evaluation(evaluation_id, project="project.db"):
    """One stored evaluation, as `caudalis evaluate show ID` shows it: its record (`evaluation`,
    the readings as stored) and its `figures` (scope, figure, value, note). Raises LookupError
    when the project holds none of that id."""
    with _project(project) as connection:
        found = services.FieldEvaluationStore(connection).find(evaluation_id)
    if found is None:
        raise LookupError(f"project database {project} holds no evaluation {evaluation_id}")
    return {"id": evaluation_id, "name": found.evaluation.name, "evaluation": found.evaluation,
            "figures": table([{"scope": f.scope, "figure": f.figure, "value": f.value, "note": f.note}
                              for f in found.figures])}
