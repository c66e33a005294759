#include "DesignFile.hpp"

#include <cmath>
#include <limits>

#include <fmt/format.h>

#include "CliErrors.hpp"
#include "JsonFields.hpp"
#include "PlainText.hpp"
#include "TextFile.hpp"

namespace caudalis::cli {

namespace {

constexpr long maxOutlets = std::numeric_limits<std::int16_t>::max();
constexpr long maxId = std::numeric_limits<std::int32_t>::max();

/// nlohmann's message without its "[json.exception.parse_error.101] " prefix.
std::string parseErrorText(const nlohmann::json::parse_error& error) {
    std::string text = error.what();
    const auto bracket = text.find("] ");
    if (bracket != std::string::npos) {
        text.erase(0, bracket + 2);
    }
    return oneLine(text);
}

long outletCount(const SpanDescription& span) {
    return static_cast<long>(std::floor(span.lengthM / (span.outletSpacingCm / 100)));
}

/// Fields shared by fixed spans and the overhang.
SpanDescription readSpanShape(JsonFields& fields, long defaultId, const std::string& defaultName) {
    SpanDescription span;
    span.id = fields.optionalWholeNumber("id", 1, maxId).value_or(defaultId);
    span.name = fields.optionalText("name").value_or(defaultName);
    span.lengthM = fields.number("length_m", NumberRule::Positive);
    span.diameterMm = fields.number("diameter_mm", NumberRule::Positive);
    span.outletSpacingCm = fields.number("outlet_spacing_cm", NumberRule::Positive);
    if (span.outletSpacingCm > span.lengthM * 100) {
        throw InputError(fmt::format("{} must not exceed the span length ({:g} m)",
                                     fields.pathOf("outlet_spacing_cm"), span.lengthM));
    }
    return span;
}

std::vector<SpanDescription> readSpans(JsonFields& root, double centreElevation) {
    const auto& list = root.array("spans");
    if (list.empty()) {
        throw InputError("spans must hold at least one span");
    }
    std::vector<SpanDescription> spans;
    double startElevation = centreElevation;
    for (std::size_t i = 0; i < list.size(); ++i) {
        JsonFields fields(list[i], root.pathOf("spans", i));
        auto span = readSpanShape(fields, static_cast<long>(i + 1), "Span " + std::to_string(i + 1));
        span.endElevationM = fields.number("end_elevation_m");
        if (std::fabs(span.endElevationM - startElevation) >= span.lengthM) {
            throw InputError(fields.pathOf("end_elevation_m") +
                             " must differ from the span's start elevation by less than its length");
        }
        fields.finish();
        startElevation = span.endElevationM;
        spans.push_back(span);
    }
    return spans;
}

std::optional<SpanDescription> readOverhang(JsonFields& root, long spanCount) {
    return root.optionalSection(
        "overhang", [&](JsonFields& fields) { return readSpanShape(fields, spanCount + 1, "Overhang"); });
}

void requireOutletsInRange(const std::vector<SpanDescription>& spans,
                           const std::optional<SpanDescription>& overhang) {
    long total = overhang ? outletCount(*overhang) : 0;
    for (const auto& span : spans) {
        total += outletCount(span);
    }
    if (total > maxOutlets) {
        throw InputError("spans have " + std::to_string(total) + " outlets in all, more than " +
                         std::to_string(maxOutlets));
    }
}

std::optional<EndGunDescription> readEndGun(JsonFields& root) {
    return root.optionalSection("end_gun", [](JsonFields& fields) {
        EndGunDescription gun;
        gun.ringWidthM = fields.number("ring_width_m", NumberRule::Positive);
        gun.boosterKpa = fields.optionalNumber("booster_kpa", NumberRule::NonNegative).value_or(0);
        return gun;
    });
}

std::vector<RegulatorDescription> readRegulators(JsonFields& root, long spanCount) {
    std::vector<RegulatorDescription> regulators;
    const auto* list = root.optionalArray("regulators");
    if (list == nullptr) {
        return regulators;
    }
    for (std::size_t i = 0; i < list->size(); ++i) {
        JsonFields fields((*list)[i], root.pathOf("regulators", i));
        RegulatorDescription regulator;
        regulator.span = static_cast<int>(fields.wholeNumber("span", 1, spanCount));
        regulator.pressureKpa = fields.number("pressure_kpa", NumberRule::Positive);
        regulator.flowMinLps = fields.optionalNumber("flow_min_lps", NumberRule::NonNegative).value_or(0);
        regulator.flowMaxLps = fields.optionalNumber("flow_max_lps", NumberRule::NonNegative).value_or(0);
        if (regulator.flowMaxLps < regulator.flowMinLps) {
            throw InputError(fields.pathOf("flow_max_lps") + " must be >= flow_min_lps");
        }
        regulator.installed = fields.flag("installed", true);
        fields.finish();
        regulators.push_back(regulator);
    }
    return regulators;
}

PipeMaterialDescription readPipeMaterial(JsonFields& fields) {
    PipeMaterialDescription material;
    material.id = fields.optionalWholeNumber("id", 1, maxId).value_or(1);
    material.name = fields.text("name");
    material.c = fields.wholeNumber("c", 1, 1000);
    return material;
}

std::optional<DropDescription> readDrop(JsonFields& root) {
    return root.optionalSection("drop", [](JsonFields& fields) {
        DropDescription drop;
        drop.diameterMm = fields.number("diameter_mm", NumberRule::Positive);
        drop.lengthM = fields.number("length_m", NumberRule::Positive);
        drop.material = fields.section("material", readPipeMaterial);
        drop.installed = fields.flag("installed", true);
        return drop;
    });
}

IndicatorsDescription readIndicators(JsonFields& root, double revolutionTime) {
    const auto indicators = root.optionalSection("indicators", [&](JsonFields& fields) {
        IndicatorsDescription read;
        read.revolutionHours =
            fields.optionalNumber("revolution_hours", NumberRule::Positive).value_or(revolutionTime);
        read.blockedOutlets =
            static_cast<int>(fields.optionalWholeNumber("blocked_outlets", 0, maxOutlets).value_or(0));
        return read;
    });
    return indicators.value_or(IndicatorsDescription{revolutionTime, 0});
}

/// A check point; `defaultCode` names it when the file does not.
auto pluviometryPoint(const std::string& defaultCode) {
    return [defaultCode](JsonFields& fields) {
        PluviometryPointDescription point;
        point.distanceM = fields.number("distance_m", NumberRule::Positive);
        point.wetDiameterM = fields.number("wet_diameter_m", NumberRule::Positive);
        point.code = fields.optionalText("code").value_or(defaultCode);
        return point;
    };
}

KostiakovDescription readKostiakov(JsonFields& fields) {
    return KostiakovDescription{fields.number("k", NumberRule::NonNegative),
                                fields.number("a", NumberRule::NonNegative)};
}

std::optional<PluviometryCheckDescription> readPluviometryCheck(JsonFields& root) {
    return root.optionalSection("pluviometry_check", [](JsonFields& fields) {
        PluviometryCheckDescription check;
        check.first = fields.section("first", pluviometryPoint("P1"));
        check.second = fields.optionalSection("second", pluviometryPoint("P2"));
        check.kostiakov = fields.optionalSection("kostiakov", readKostiakov).value_or(KostiakovDescription{});
        return check;
    });
}

NozzleSelection readNozzleSelection(JsonFields& root) {
    return root.section("nozzle_selection", [](JsonFields& fields) {
        NozzleSelection selection;
        selection.tolerance = fields.number("tolerance", NumberRule::Positive);
        if (selection.tolerance > 1) {
            throw InputError(fields.pathOf("tolerance") + " must be at most 1 (a fraction: 0.1 means 10 %)");
        }
        selection.brand = fields.optionalText("brand");
        selection.model = fields.optionalText("model");
        return selection;
    });
}

}  // namespace

DesignDescription DesignFile::fromJson(const nlohmann::json& document) {
    JsonFields root(document, "");
    root.optionalText("$schema");
    DesignDescription design;
    design.name = root.text("name");
    design.systemId = root.optionalWholeNumber("system_id", 1, maxId);
    design.inletPressureKpa = root.number("inlet_pressure_kpa", NumberRule::Positive);
    design.designFlowLps = root.number("design_flow_lps", NumberRule::Positive);
    design.roughnessC = root.number("roughness_c", NumberRule::Positive);
    design.centreElevationM = root.optionalNumber("centre_elevation_m").value_or(0);
    design.revolutionTimeH = root.number("revolution_time_h", NumberRule::Positive);
    design.spans = readSpans(root, design.centreElevationM);
    design.overhang = readOverhang(root, static_cast<long>(design.spans.size()));
    requireOutletsInRange(design.spans, design.overhang);
    design.endGun = readEndGun(root);
    const long spanCount = static_cast<long>(design.spans.size()) + (design.overhang ? 1 : 0);
    design.regulators = readRegulators(root, spanCount);
    design.drop = readDrop(root);
    design.indicators = readIndicators(root, design.revolutionTimeH);
    design.pluviometryCheck = readPluviometryCheck(root);
    design.nozzleSelection = readNozzleSelection(root);
    root.finish();
    return design;
}

DesignDescription DesignFile::parse(const std::string& text, const std::string& sourceName) {
    nlohmann::json document;
    try {
        document = nlohmann::json::parse(text);
    } catch (const nlohmann::json::parse_error& error) {
        throw InputError(sourceName + ": malformed JSON: " + parseErrorText(error));
    }
    return fromJson(document);
}

DesignDescription DesignFile::load(const std::string& path) {
    return parse(readTextFile(path, "design file"), path);
}

}  // namespace caudalis::cli
