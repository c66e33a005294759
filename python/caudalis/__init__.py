"""Caudalis: design and evaluation of centre-pivot irrigation machines.

The whole library under its own names (``Statics.application().newPivot()``,
``PivotWrapper.calculate()``, ...), records as mutable objects, numbered errors as
:class:`Error`, and a Pythonic layer over the design services.
"""
from . import _caudalis
from ._arguments import name_parameters as _name_parameters

_name_parameters(_caudalis)
from ._caudalis import *  # noqa: F401,F403
from ._caudalis import Error, Null, checked, integer  # noqa: F401
from ._arrays import BoundedArray  # noqa: F401
from ._caudalis import services  # noqa: F401
from ._design import DesignResult, design  # noqa: F401
from ._evaluate import Evaluation, ReadingsError, evaluate, evaluations, stored_evaluation  # noqa: F401

# `RuntimeError` and `DatabaseError` hold error numbers; they stay out of `import *`, which
# would otherwise hide Python's own RuntimeError.
__all__ = [name for name in dir(_caudalis) if not name.startswith("_") and name != "RuntimeError"]
__all__ += ["BoundedArray", "DesignResult", "design", "Evaluation", "ReadingsError", "evaluate", "evaluations",
            "stored_evaluation"]
