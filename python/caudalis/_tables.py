"""Rows of results as pandas DataFrames when pandas is installed, as lists of dicts otherwise."""


def flatten(row, prefix=""):
    """One level of keys: nested dicts become `outer_inner` columns."""
    flat = {}
    for key, value in row.items():
        name = f"{prefix}{key}"
        if isinstance(value, dict):
            flat.update(flatten(value, name + "_"))
        else:
            flat[name] = value
    return flat


def table(rows):
    """The rows, flattened, as a DataFrame when pandas is importable, else as a list of dicts."""
    flat = [flatten(row) for row in rows]
    try:
        import pandas
    except ImportError:
        return flat
    return pandas.DataFrame(flat)


def column(rows, name):
    """The values of one column of a table made by `table`."""
    if isinstance(rows, list):
        return [row[name] for row in rows]
    return rows[name].tolist()
