#include "MarchRecorder.hpp"

#include <cmath>

#include "SeededDraws.hpp"
#include "caudalis/catalogue/AspersoresStatic.hpp"
#include "caudalis/charts/CartaAspersores.hpp"
#include "caudalis/charts/MountedAspersor.hpp"
#include "caudalis/core/Error.hpp"
#include "caudalis/core/Statics.hpp"
#include "caudalis/hydraulics/PivotWrapper.hpp"
#include "caudalis/hydraulics/ReguladorPression.hpp"
#include "caudalis/machine/Pivots.hpp"

namespace caudalis::testing {
namespace {

long nozzleIndex(const ReferenceMachine& reference, const std::shared_ptr<Aspersor>& nozzle) {
    for (std::size_t i = 0; i < reference.nozzles.size(); ++i) {
        if (reference.nozzles[i] == nozzle) {
            return static_cast<long>(i);
        }
    }
    return nozzle ? -2 : -1;
}

void recordPair(OutputRecord& out, const char* name, const ParPressaoCaudal& pair, long span) {
    out.number(name, pair.pressao, span, 0);
    out.number(name, pair.caudal, span, 1);
}

void recordSaida(OutputRecord& out, const ReferenceMachine& reference, const saida& outlet, long span,
                 long number) {
    out.number("caudal", outlet.caudal, span, number);
    out.number("caudal_do_aspersor", outlet.caudal_do_aspersor, span, number);
    out.number("pressao_ideal", outlet.pressao_ideal, span, number);
    out.number("pressao_real", outlet.pressao_real, span, number);
    out.number("cota", outlet.cota, span, number);
    out.number("distanciaAoPivot", outlet.distanciaAoPivot, span, number);
    out.number("pressao_actuante", outlet.pressao_actuante, span, number);
    out.integer("over_pressure", outlet.over_pressure ? 1 : 0, span, number);
    out.integer("nozzle", nozzleIndex(reference, outlet.obj_aspersor), span, number);
}

void recordTramo(OutputRecord& out, const ReferenceMachine& reference, const tramo& span, long number) {
    recordPair(out, "entry_conditions", span.entry_conditions, number);
    recordPair(out, "exit_condition", span.exit_condition, number);
    recordPair(out, "ideal_entry_conditions", span.ideal_entry_conditions, number);
    recordPair(out, "ideal_exit_conditions", span.ideal_exit_conditions, number);
    out.number("perdaDeCargaIdeal", span.perdaDeCargaIdeal, number);
    out.number("p_slope", span.site.p_slope, number);
    out.number("p_outlet_count", span.p_outlet_count, number);
    long outlet = 0;
    for (const saida& each : span.Saidas) {
        recordSaida(out, reference, each, number, ++outlet);
    }
}

void recordPivot(OutputRecord& out, const ReferenceMachine& reference, const pivot& machine) {
    long number = 0;
    for (const tramo& span : machine.Tramos) {
        recordTramo(out, reference, span, ++number);
    }
    recordTramo(out, reference, machine.tramoVOladizo, number + 1);
    recordSaida(out, reference, machine.endGun.saida, -1, -1);
    out.number("caudaDaCartaAssociada", machine.caudaDaCartaAssociada);
}

void recordState(OutputRecord& out, const ReferenceMachine& reference, PivotWrapper& wrapper) {
    pivot machine;
    wrapper.update(machine);
    recordPivot(out, reference, machine);
}

void applyAccessories(const ReferenceMachine& reference, PivotWrapper& wrapper) {
    wrapper.setEndGunBoost(reference.boost);
    wrapper.setTimeForCompleteRevolution(reference.revolutionHours);
    if (reference.hasDrop) {
        wrapper.setDrop(reference.drop);
        if (reference.dropInstalled) {
            wrapper.installDrop();
        }
    }
    if (!reference.regulators.empty()) {
        auto regulators = Collection::create();
        for (const ReferenceRegulator& regulator : reference.regulators) {
            regulators->Add(Variant(
                makeReguladorPression(regulator.tramo, regulator.pression, 2, 0.1, regulator.installed)));
        }
        wrapper.aplicaReguladores(regulators);
    }
}

void recordSamples(OutputRecord& out, PivotWrapper& wrapper, bool ideal) {
    const char* name = ideal ? "ideal_sample" : "actual_sample";
    attempt(out, name, [&] {
        long number = 0;
        for (const WaterDepthSample& sample : wrapper.WaterDepthsSamples(ideal)) {
            out.number(name, sample.depth, ++number, 0);
            out.number(name, sample.distanceFromCenter, number, 1);
            out.integer(name, sample.p_null ? 1 : 0, number, 2);
        }
    });
}

void recordQueries(OutputRecord& out, const ReferenceMachine& reference, PivotWrapper& wrapper) {
    pivot machine;
    wrapper.update(machine);
    const long spans = machine.Tramos.count();
    for (long span = 1; span <= spans + 1; ++span) {
        const tramo& each = span <= spans ? machine.Tramos(span) : machine.tramoVOladizo;
        attempt(out, "ideal_loss", [&] {
            out.number("ideal_loss", wrapper.idealContinuosPressureLossForTramo(static_cast<Integer>(span)),
                       span);
        });
        for (long outlet = 1; outlet <= each.Saidas.count(); ++outlet) {
            attempt(out, "pressure_flow", [&] {
                const auto pair =
                    wrapper.getPressaoCaudalAt({static_cast<Integer>(span), static_cast<Long>(outlet)});
                recordPair(out, "pressure_flow", pair, span * 100000 + outlet);
            });
        }
    }
    attempt(out, "end_gun_pressure_flow", [&] {
        recordPair(out, "end_gun_pressure_flow", wrapper.getPressaoCaudalAt({-1, -1}), -1);
    });
    out.number("total", wrapper.totalComputedDischarge());
    out.number("end_gun_discharge", wrapper.idealEndGunDischarge());
    out.number("length", wrapper.getLongitudeTotal());
    recordSamples(out, wrapper, true);
    recordSamples(out, wrapper, false);
    attempt(out, "peak_rate", [&] { out.number("peak_rate", wrapper.pluviosidadeMaxima(reference.sample)); });
    attempt(out, "chart", [&] {
        const auto chart = wrapper.extractCarta();
        long number = 0;
        for (const Variant& item : *chart->mountedAspersores()) {
            const auto mounted = item.toObject<MountedAspersor>();
            out.integer("mounted_span", mounted->saida().numeroTramo, ++number);
            out.integer("mounted_outlet", mounted->saida().saida, number);
            out.integer("mounted_nozzle", nozzleIndex(reference, mounted->Aspersor()), number);
        }
        out.number("chart_boost", chart->getEndGunBoost());
    });
}

}  // namespace

bool attempt(OutputRecord& out, const char* name, const std::function<void()>& step) {
    try {
        step();
        out.integer(name, 0);
        return true;
    } catch (const Error& error) {
        out.integer(name, error.number());
    } catch (const std::exception&) {
        out.integer(name, -1);
    }
    return false;
}

void recordDesignRun(const ReferenceMachine& reference, OutputRecord& out) {
    pivot counted = reference.machine;
    const long outletsPerPass = Pivots::shared()->AllOutletCount(counted);
    auto strategy = std::make_shared<ReferenceStrategy>(reference, outletsPerPass);
    std::shared_ptr<PivotWrapper> wrapper;
    if (!attempt(out, "create",
                 [&] { wrapper = Statics::application()->newPivotWrapper(reference.machine, strategy); })) {
        return;
    }
    recordState(out, reference, *wrapper);
    if (!attempt(out, "accessories", [&] { applyAccessories(reference, *wrapper); })) {
        return;
    }
    attempt(out, "calculate", [&] { wrapper->calculate(); });
    out.integer("calls", strategy->calls());
    recordState(out, reference, *wrapper);
    recordQueries(out, reference, *wrapper);
}

void recordMatching(const ReferenceMachine& reference, std::uint64_t seed, OutputRecord& out) {
    SeededDraws draw(seed);
    const AspersoresStatic matcher;
    long number = 0;
    for (const auto& nozzle : reference.nozzles) {
        ++number;
        out.text("a", nozzle->a(), number);
        out.text("b", nozzle->b(), number);
        const double pressure = draw.chance(0.05) ? -draw.uniform(1, 50) : draw.uniform(0, 600);
        const double flow = draw.uniform(0, 3);
        attempt(out, "law", [&] {
            out.number("calculate", nozzle->calculate(pressure), number);
            out.integer("high", nozzle->isHighPressure(pressure) ? 1 : 0, number);
            out.integer("within", nozzle->flowWithin(pressure, flow, reference.tolerance) ? 1 : 0, number);
            out.number("deviation", nozzle->variacaoCaudal(pressure, flow), number);
        });
    }
    for (long query = 1; query <= 8; ++query) {
        const double pressure = draw.chance(0.05) ? -draw.uniform(1, 50) : draw.uniform(20, 600);
        const double flow = draw.chance(0.05) ? 0.0 : std::exp(draw.uniform(std::log(0.005), std::log(3.0)));
        const double tolerance = draw.uniform(0, 0.4);
        attempt(out, "best", [&] {
            out.integer(
                "best",
                nozzleIndex(reference, matcher.getBestMatch(reference.catalogue, pressure, flow, tolerance)),
                query);
        });
        attempt(out, "possible", [&] {
            const auto possible =
                matcher.getPossibleAspersores(reference.catalogue, pressure, flow, tolerance);
            long item = 0;
            for (const Variant& each : *possible) {
                out.integer("possible", nozzleIndex(reference, each.toObject<Aspersor>()), query, ++item);
            }
        });
    }
}

}  // namespace caudalis::testing
