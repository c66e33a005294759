"""`caudalis.evaluate(...)`: catch-can readings of a field test turned into water depths and
their distance-weighted uniformity, with a plot of measured (and designed) depths.

Readings are "amount distance" lines (ml, m, "." as decimal point); the machine's two passes
are separated by a blank line or given as two sources. Lines starting with "#" are comments.
"""
import os

from . import _caudalis
from ._caudalis import services
from ._plots import plot_evaluation
from ._tables import table

FLAG_LIMIT_PERCENT = 20.0


class ReadingsError(ValueError):
    """A readings source that cannot be read: names the source and line at fault."""


def _parse_line(text, source, number):
    pieces = text.split(" ")
    if len(pieces) != 2 or not all(_is_number(piece) for piece in pieces):
        raise ReadingsError(f'{source} line {number}: "{text}" is not a reading '
                            '(amount, one space, distance; "." as decimal point)')
    return _caudalis.FieldSamples.shared().Parse(text)


def _is_number(text):
    try:
        float(text)
    except ValueError:
        return False
    return True


def _passes_of_text(text, source):
    passes, starts_pass = [], True
    for number, line in enumerate(text.splitlines(), start=1):
        content = line.strip(" \t\r")
        if not content:
            starts_pass = True
        elif not content.startswith("#"):
            if starts_pass:
                passes.append([])
                starts_pass = False
            passes[-1].append(_parse_line(content, source, number))
    return passes


def _passes_of(source):
    if isinstance(source, (str, os.PathLike)):
        path = os.fspath(source)
        try:
            with open(path, encoding="utf-8") as readings:
                return _passes_of_text(readings.read(), path)
        except OSError as error:
            raise ReadingsError(f"readings file {path} cannot be read: {error.strerror}") from None
    pairs = [_caudalis.FieldSamples.shared().newFieldSample(float(a), float(d)) for a, d in source]
    return [pairs] if pairs else []


class Evaluation:
    """Field-test figures: `summary` (dict), `readings` (table of every reading with its pass,
    depth and whether it counts), `excluded` and `flagged` (readings left out, and readings
    more than 20 % off the mean) and `plot()`."""

    def __init__(self, passes, gauge_diameter_m, name):
        self.name = name
        statics = _caudalis.Statics.application()
        gauge = statics.Pluviometros().newPluviometro(gauge_diameter_m)
        rows, all_depths, per_pass = [], [], []
        for index, readings in enumerate(passes, start=1):
            depths = statics.FieldSamples().CollectionToWaterDepth(readings, gauge)
            valid = [sample for sample in depths if statics.WaterDepths().Valid(sample)]
            per_pass.append(services.Uniformity.meanDepth(valid))
            all_depths += valid
            for reading, depth in zip(readings, depths):
                rows.append({"pass": index, "amount_ml": reading.collectedAmount,
                             "distance_m": reading.distanceFromCenter,
                             "depth_mm": None if depth.p_null else depth.depth, "valid": not depth.p_null})
        together = _caudalis.BoundedArray_WaterDepthSample(all_depths)
        mean = services.Uniformity.meanDepth(together)
        self.summary = {
            "gauge_diameter_m": gauge_diameter_m, "readings": len(rows), "valid_readings": len(all_depths),
            "mean_depth_mm": mean, "mean_depth_by_pass_mm": per_pass,
            "low_quarter_mean_mm": services.Uniformity.lowQuarterMean(together),
            "cu_percent": services.Uniformity.heermannHein(together),
            "du_percent": services.Uniformity.lowQuarter(together),
        }
        self._rows = rows
        self.readings = table(rows)
        self.excluded = table([row for row in rows if not row["valid"]])
        self.flagged = table([row for row in rows if row["valid"] and mean
                              and abs(row["depth_mm"] / mean - 1) * 100 > FLAG_LIMIT_PERCENT])

    def plot(self, path=None, designed=None):
        """Measured depths along the radius, beside the designed ones of a `DesignResult`
        when given; written to `path` (PNG or SVG) when given. Returns the figure."""
        return plot_evaluation(self, self._rows, path, designed)

    def __repr__(self):
        return f"<Evaluation {self.name!r}: {self.summary['valid_readings']} readings>"


def evaluate(readings, second=None, gauge_diameter=None, name=None):
    """Evaluates a field test: `readings` is a readings file's path (one or two passes) or a
    list of (amount ml, distance m) pairs; `second` an optional second pass given apart;
    `gauge_diameter` the catch cans' opening in metres."""
    if not gauge_diameter or gauge_diameter <= 0:
        raise ValueError("gauge_diameter must be the catch cans' opening in metres, > 0")
    passes = _passes_of(readings) + (_passes_of(second) if second is not None else [])
    if not passes:
        raise ReadingsError(f"{readings} holds no readings")
    if len(passes) > 2:
        raise ReadingsError(f"{readings} holds {len(passes)} passes separated by blank lines; at most two")
    default_name = os.path.basename(os.fspath(readings)) if isinstance(readings, (str, os.PathLike)) else "readings"
    return Evaluation(passes, gauge_diameter, name or default_name)
