"""The units a result document is written in, as its `units` object states them."""


class DocumentUnits:
    """Keys, labels and conversions for one document's unit system ("si" or "us"): every figure
    of the document is in these units and every key of a measure ends in its suffix."""

    def __init__(self, units):
        self.system = units["system"]
        self._symbols = {name: units[name] for name in units["suffixes"]}
        self._suffixes = units["suffixes"]
        self._factors = units["si_factors"]

    def key(self, base, quantity):
        """`key("depth", "depth")` is "depth_mm" or "depth_in"."""
        return f"{base}_{self._suffixes[quantity]}"

    def label(self, text, quantity):
        """An axis or column label with its unit: "pressure (psi)"."""
        return f"{text} ({self._symbols[quantity]})"

    def to_si(self, quantity, value):
        return value * self._factors[quantity]

    def from_si(self, quantity, value):
        return value / self._factors[quantity]
