"""`BoundedArray[T]`: the bound array class for an element type."""
from . import _caudalis

_ELEMENT_NAMES = {float: "Double", int: "Long", str: "String", object: "Variant"}


class _BoundedArrayFamily:
    """Picks the array class of an element type: ``BoundedArray[tramo](1, 3)``,
    ``BoundedArray[float]([1.0, 2.0])``; ``int`` gives Long elements, ``object`` Variants."""

    def __getitem__(self, element):
        name = _ELEMENT_NAMES.get(element) or getattr(element, "__name__", str(element))
        try:
            return getattr(_caudalis, "BoundedArray_" + name)
        except AttributeError:
            raise TypeError(f"no bounded array of {name}") from None

    def __repr__(self):
        return "BoundedArray"


BoundedArray = _BoundedArrayFamily()
