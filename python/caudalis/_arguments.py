"""Argument errors that name the parameter.

pybind11 answers a call whose arguments match no signature with a TypeError that lists the
signatures ("incompatible function arguments"). Every function and method of the extension is
wrapped here so that such an error says instead which parameter was given what, and what it
takes. Only the failing call pays for it: the wrapper calls straight through.
"""
import functools
import re

_INCOMPATIBLE = "incompatible function arguments"
_OVERLOAD = re.compile(r"^\s*\d+\. \((.*)\) -> .*$", re.M)
_ACCEPTS_ANYTHING = {"object", "Any", "handle", "args", "kwargs", "*args", "**kwargs"}


def _split(text):
    """The parameters of a signature, split at top-level commas."""
    parts, depth, current = [], 0, ""
    for char in text:
        depth += char in "[(" and 1 or char in "])" and -1 or 0
        if char == "," and depth == 0:
            parts.append(current.strip())
            current = ""
        else:
            current += char
    return [part for part in parts + [current.strip()] if part]


def _parameters(signature):
    """(name, type) of each parameter of one signature line."""
    result = []
    for part in _split(signature):
        name, _, rest = part.partition(":")
        result.append((name.strip(), rest.partition("=")[0].strip()))
    return result


def _short(type_name):
    return re.sub(r"\bcaudalis\._caudalis\.", "", type_name)


def _accepts(type_name, value, module):
    """Whether `value` can be passed where the signature says `type_name` (a close reading)."""
    short = _short(type_name)
    if short.startswith("Optional["):
        return value is None or _accepts(short[len("Optional["):-1], value, module)
    if value is None:
        return short in _ACCEPTS_ANYTHING
    if short == "float":
        return isinstance(value, (int, float))
    if short == "int":
        return isinstance(value, int) or hasattr(value, "__index__")
    if short == "bool":
        return isinstance(value, (bool, int))
    if short == "str":
        return isinstance(value, str)
    if short.startswith(("List[", "Tuple[", "Iterable", "Sequence")):
        return isinstance(value, (list, tuple)) or hasattr(value, "__iter__")
    wanted = getattr(module, short.split(".")[-1], None)
    if isinstance(wanted, type):
        if short.startswith(("BoundedArray_", "FixedArray_")) and isinstance(value, (list, tuple)):
            return True
        return isinstance(value, wanted)
    return True


def _describe(value):
    text = repr(value)
    return type(value).__name__ + (f" {text}" if len(text) <= 40 else "")


def _mismatches(parameters, args, kwargs, module):
    """The parameters of one signature that do not take what they were given (None when the
    call does not even fit its names and number)."""
    names = [name for name, _ in parameters]
    if len(args) > len(names) or any(key not in names for key in kwargs):
        return None
    given = dict(zip(names, args), **kwargs)
    return [(name, type_name, given[name]) for name, type_name in parameters
            if name in given and not _accepts(type_name, given[name], module)]


def _explain(qualname, message, args, kwargs, module, setter=False):
    """A message naming the first parameter that does not take what it was given."""
    signatures = [_parameters(found) for found in _OVERLOAD.findall(message)]
    fitting = [found for found in (_mismatches(p, args, kwargs, module) for p in signatures) if found]
    if fitting:
        name, type_name, value = min(fitting, key=len)[0]
        if setter:
            return f"{qualname} takes {_short(type_name)}, not {_describe(value)}"
        return f"{qualname}(): parameter '{name}' takes {_short(type_name)}, not {_describe(value)}"
    shown = " or ".join("(" + ", ".join(f"{n}: {_short(t)}" for n, t in p if n != "self") + ")"
                        for p in signatures)
    given = ", ".join([_describe(arg) for arg in args[1 if qualname.count(".") else 0:]] +
                      [f"{key}={_describe(value)}" for key, value in kwargs.items()])
    return f"{qualname}() takes {shown or 'other arguments'}; it was given ({given})"


def _wrap(function, qualname, module, setter=False):
    @functools.wraps(function)
    def call(*args, **kwargs):
        try:
            return function(*args, **kwargs)
        except TypeError as error:
            message = str(error)
            if _INCOMPATIBLE not in message:
                raise
            raise TypeError(_explain(qualname, message, args, kwargs, module, setter)) from None
    return call


def _is_binding(value):
    return type(value).__name__ in ("builtin_function_or_method", "instancemethod")


# Classes that Python code derives from to override their methods: the library finds an override
# by looking for a method that is not its own, so these keep the extension's own methods.
_OVERRIDABLE = ("CalculosStrategy", "PivotApplier")


def _wrap_class(cls, module):
    if cls.__name__ in _OVERRIDABLE:
        return
    for name, value in list(vars(cls).items()):
        qualname = f"{cls.__name__}.{name}"
        if type(value).__name__ == "instancemethod":
            setattr(cls, name, _wrap(value.__func__, qualname, module))
        elif isinstance(value, staticmethod) and _is_binding(value.__func__):
            setattr(cls, name, staticmethod(_wrap(value.__func__, qualname, module)))
        elif isinstance(value, property) and value.fset is not None and _is_binding(value.fset):
            setattr(cls, name, property(value.fget, _wrap(value.fset, qualname, module, True), value.fdel, value.__doc__))
        elif isinstance(value, type) and value.__module__.startswith("caudalis"):
            _wrap_class(value, module)


def name_parameters(module, namespace=None):
    """Wraps every function and method that `namespace` (default `module`) holds."""
    namespace = namespace or module
    for name, value in list(vars(namespace).items()):
        if name.startswith("__"):
            continue
        if _is_binding(value):
            setattr(namespace, name, _wrap(value, name, module))
        elif isinstance(value, type) and getattr(value, "__module__", "").startswith("caudalis"):
            _wrap_class(value, module)
        elif type(value).__name__ == "module" and value.__name__.startswith(module.__name__):
            name_parameters(module, value)
