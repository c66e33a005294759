"""Plots of designs and evaluations with matplotlib (imported only when a plot is asked for)."""


def _figure(rows):
    import matplotlib

    if matplotlib.get_backend().lower() not in ("agg", "svg", "pdf"):
        matplotlib.use("Agg")
    import matplotlib.pyplot as pyplot

    return pyplot.subplots(rows, 1, figsize=(9, 3 * rows), sharex=True, constrained_layout=True)


def _save(figure, path):
    if path is not None:
        figure.savefig(path, dpi=100)
    return figure


def plot_design(result, path, wet_diameter_m):
    units = result.units
    outlets = [o for o in result.document["outlets"] if o["place"] != "end_gun"] or result.document["outlets"]
    distance = [o["distanciaAoPivot"] for o in outlets]
    figure, (pressure, flow, depth, rate) = _figure(4)
    figure.suptitle(result.name)
    pressure.plot(distance, [o["pressao_actuante"] for o in outlets], label="acting")
    pressure.plot(distance, [o["pressao_real"] for o in outlets], label="in the pipe", linestyle="--")
    pressure.plot(distance, [o["pressao_ideal"] for o in outlets], label="ideal", linestyle=":")
    pressure.set_ylabel(units.label("pressure", "pressure"))
    flow.plot(distance, [o["caudal"] for o in outlets], label="required")
    flow.plot(distance, [o["caudal_do_aspersor"] for o in outlets], label="delivered", marker=".", linestyle="")
    flow.set_ylabel(units.label("flow", "flow"))
    depth.plot(distance, [o[units.key("depth", "depth")] for o in outlets], label="delivered")
    depth.plot(distance, [o[units.key("ideal_depth", "depth")] for o in outlets], label="ideal", linestyle="--")
    depth.set_ylabel(units.label("depth per revolution", "depth"))
    rates = result.application_rates(wet_diameter_m)
    if rates:
        rate.plot(*rates, label="peak")
        for peak in result.summary.get("peak_application_rates", []):
            rate.plot(peak[units.key("distance", "length")], peak[units.key("rate", "rate")], marker="o",
                      linestyle="", label=peak["code"])
    else:
        rate.text(0.5, 0.5, "no wetted diameter to compute it from", ha="center", transform=rate.transAxes)
    rate.set_ylabel(units.label("application rate", "rate"))
    rate.set_xlabel(units.label("distance from the centre", "length"))
    for axes in (pressure, flow, depth, rate):
        axes.grid(True, alpha=0.3)
        if axes.get_legend_handles_labels()[0]:
            axes.legend(loc="best", fontsize="small")
    return _save(figure, path)


def plot_evaluation(evaluation, rows, path, designed):
    figure, depth = _figure(1)
    figure.suptitle(evaluation.name)
    for line in sorted({row["line"] for row in rows}):
        valid = [row for row in rows if row["line"] == line and row["depth_mm"] is not None]
        depth.plot([r["distance_m"] for r in valid], [r["depth_mm"] for r in valid], marker="o", linestyle="",
                   label=f"measured, line {line}")
    mean = evaluation.summary["mean_depth_mm"]
    if mean:
        depth.axhline(mean, color="grey", linestyle=":", label=f"measured mean {mean:.1f} mm")
    if designed is not None:
        units = designed.units
        outlets = [o for o in designed.document["outlets"] if o["place"] != "end_gun"]
        depth.plot([units.to_si("length", o["distanciaAoPivot"]) for o in outlets],
                   [units.to_si("depth", o[units.key("depth", "depth")]) for o in outlets], label="designed")
    depth.set_xlabel("distance from the centre (m)")
    depth.set_ylabel("depth (mm)")
    depth.grid(True, alpha=0.3)
    depth.legend(loc="best", fontsize="small")
    return _save(figure, path)
