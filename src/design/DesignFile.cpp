#include "caudalis/design/DesignFile.hpp"

#include <algorithm>
#include <cmath>
#include <limits>

#include <fmt/format.h>

#include "FieldLog.hpp"
#include "JsonFields.hpp"
#include "JsonPosition.hpp"
#include "caudalis/design/DesignError.hpp"
#include "caudalis/design/DesignValidation.hpp"
#include "caudalis/design/Limits.hpp"
#include "caudalis/design/TextFile.hpp"

namespace caudalis::design {

namespace {

constexpr long maxId = std::numeric_limits<std::int32_t>::max();

/// nlohmann's message without its "[json.exception.parse_error.101] " prefix.
std::string parseErrorText(const nlohmann::json::parse_error& error) {
    std::string text = error.what();
    const auto bracket = text.find("] ");
    if (bracket != std::string::npos) {
        text.erase(0, bracket + 2);
    }
    std::replace(text.begin(), text.end(), '\n', ' ');
    return text;
}

/// The JSON library's document builder that also keeps where the reader stopped when it refused
/// the text, and the token it refused, which its error for a number too large for a double does
/// not tell.
class DocumentBuilder : public nlohmann::detail::json_sax_dom_parser<nlohmann::json> {
public:
    using json_sax_dom_parser::json_sax_dom_parser;

    template <class Exception>
    bool parse_error(std::size_t position, const std::string& token, const Exception& error) {
        refusedAt_ = position;
        refusedToken_ = token;
        return json_sax_dom_parser::parse_error(position, token, error);
    }

    /// Offset just past the text the reader refused.
    std::size_t refusedAt() const noexcept { return refusedAt_; }
    const std::string& refusedToken() const noexcept { return refusedToken_; }

private:
    std::size_t refusedAt_ = 0;
    std::string refusedToken_;
};

/// A number too large for a double, named by its field.
std::string tooLargeNumber(const std::string& text, const DocumentBuilder& builder) {
    const auto at = builder.refusedAt();
    const auto path = jsonPathAt(text, at == 0 ? 0 : at - 1);
    const auto& number = builder.refusedToken();
    return (path.empty() ? std::string("a number") : path) + (number.empty() ? "" : " (" + number + ")") +
           " is too large (beyond the range of a double-precision number)";
}

/// The span's outlets as a whole double: lengths and spacings far beyond the limits give counts no
/// integer type holds.
double outletCount(const SpanDescription& span) {
    return std::floor(span.lengthM / (span.outletSpacingCm / 100));
}

/// Fields shared by fixed spans and the overhang.
SpanDescription readSpanShape(JsonFields& fields, long defaultId, const std::string& defaultName) {
    SpanDescription span;
    span.id = fields.optionalWholeNumber("id", 1, maxId).value_or(defaultId);
    span.name = fields.optionalText("name").value_or(defaultName);
    span.lengthM = fields.quantity("length", Quantity::Length, NumberRule::Positive);
    span.diameterMm = fields.quantity("diameter", Quantity::Diameter, NumberRule::Positive);
    span.outletSpacingCm = fields.quantity("outlet_spacing", Quantity::Spacing, NumberRule::Positive);
    span.outsideDiameterMm =
        fields.optionalQuantity("outside_diameter", Quantity::Diameter, NumberRule::Positive);
    if (span.outsideDiameterMm && *span.outsideDiameterMm <= span.diameterMm) {
        throw DesignError::invalid(fields.pathOf(fields.keyOf("outside_diameter", Quantity::Diameter)) +
                                   " must be greater than " + fields.keyOf("diameter", Quantity::Diameter));
    }
    if (span.outletSpacingCm > span.lengthM * 100) {
        throw DesignError::invalid(fields.pathOf(fields.keyOf("outlet_spacing", Quantity::Spacing)) +
                                   " must not exceed the span length");
    }
    return span;
}

std::vector<SpanDescription> readSpans(JsonFields& root, double centreElevation) {
    const auto& list = root.array("spans");
    if (list.empty()) {
        throw DesignError::invalid("spans must hold at least one span");
    }
    std::vector<SpanDescription> spans;
    double startElevation = centreElevation;
    for (std::size_t i = 0; i < list.size(); ++i) {
        JsonFields fields(list[i], root.pathOf("spans", i), root.units());
        auto span = readSpanShape(fields, static_cast<long>(i + 1), "Span " + std::to_string(i + 1));
        span.endElevationM = fields.quantity("end_elevation", Quantity::Length);
        if (std::fabs(span.endElevationM - startElevation) >= span.lengthM) {
            throw DesignError::invalid(
                fields.pathOf(fields.keyOf("end_elevation", Quantity::Length)) +
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

/// The parts of the machine that carry outlets, as the file names them ("spans, overhang and end_gun").
std::string outletCarriers(bool hasOverhang, bool hasEndGun) {
    if (hasOverhang && hasEndGun) {
        return "spans, overhang and end_gun";
    }
    return hasOverhang ? "spans and overhang" : hasEndGun ? "spans and end_gun" : "spans";
}

/// The machine's outlets, the end gun counting as one, must fit the 16-bit outlet count of the
/// computation.
void requireOutletsInRange(const DesignDescription& design) {
    double total = (design.overhang ? outletCount(*design.overhang) : 0) + (design.endGun ? 1 : 0);
    for (const auto& span : design.spans) {
        total += outletCount(span);
    }
    if (total > limits::maximumOutlets) {
        throw DesignError::invalid(outletCarriers(design.overhang.has_value(), design.endGun.has_value()) +
                                   " have " +
                                   (std::isfinite(total) ? fmt::format("{:.15g}", total) : "countless") +
                                   " outlets in all" + (design.endGun ? " (the end gun counts as one)" : "") +
                                   ", more than " + std::to_string(limits::maximumOutlets));
    }
}

std::optional<EndGunDescription> readEndGun(JsonFields& root) {
    return root.optionalSection("end_gun", [](JsonFields& fields) {
        EndGunDescription gun;
        gun.ringWidthM = fields.quantity("ring_width", Quantity::Length, NumberRule::Positive);
        gun.boosterKpa =
            fields.optionalQuantity("booster", Quantity::Pressure, NumberRule::NonNegative).value_or(0);
        return gun;
    });
}

std::vector<RegulatorDescription> readRegulators(JsonFields& root, long spanCount, bool& automatic) {
    std::vector<RegulatorDescription> regulators;
    automatic = root.optionalWord("regulators", "auto");
    const auto* list = automatic ? nullptr : root.optionalArray("regulators");
    if (list == nullptr) {
        return regulators;
    }
    for (std::size_t i = 0; i < list->size(); ++i) {
        JsonFields fields((*list)[i], root.pathOf("regulators", i), root.units());
        RegulatorDescription regulator;
        regulator.span = static_cast<int>(fields.wholeNumber("span", 1, spanCount));
        regulator.pressureKpa = fields.quantity("pressure", Quantity::Pressure, NumberRule::Positive);
        regulator.flowMinLps =
            fields.optionalQuantity("flow_min", Quantity::Flow, NumberRule::NonNegative).value_or(0);
        regulator.flowMaxLps =
            fields.optionalQuantity("flow_max", Quantity::Flow, NumberRule::NonNegative).value_or(0);
        if (regulator.flowMaxLps < regulator.flowMinLps) {
            throw DesignError::invalid(fields.pathOf(fields.keyOf("flow_max", Quantity::Flow)) +
                                       " must be >= " + fields.keyOf("flow_min", Quantity::Flow));
        }
        regulator.installed = fields.flag("installed", true);
        regulator.model = fields.optionalText("model");
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
        drop.diameterMm = fields.quantity("diameter", Quantity::Diameter, NumberRule::Positive);
        drop.lengthM = fields.quantity("length", Quantity::Length, NumberRule::Positive);
        drop.material = fields.section("material", readPipeMaterial);
        drop.installed = fields.flag("installed", true);
        drop.heightAboveGroundM =
            fields.optionalQuantity("height_above_ground", Quantity::Length, NumberRule::NonNegative);
        return drop;
    });
}

IndicatorsDescription readIndicators(JsonFields& root, double revolutionTime) {
    const auto indicators = root.optionalSection("indicators", [&](JsonFields& fields) {
        IndicatorsDescription read;
        read.revolutionHours =
            fields.optionalNumber("revolution_hours", NumberRule::Positive).value_or(revolutionTime);
        read.blockedOutlets = static_cast<int>(
            fields.optionalWholeNumber("blocked_outlets", 0, limits::maximumOutlets).value_or(0));
        return read;
    });
    return indicators.value_or(IndicatorsDescription{revolutionTime, 0});
}

/// A check point; `defaultCode` names it when the file does not.
auto pluviometryPoint(const std::string& defaultCode) {
    return [defaultCode](JsonFields& fields) {
        PluviometryPointDescription point;
        point.distanceM = fields.quantity("distance", Quantity::Length, NumberRule::Positive);
        point.wetDiameterM = fields.quantity("wet_diameter", Quantity::Length, NumberRule::Positive);
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

ModelName readModelName(JsonFields& fields) {
    ModelName name;
    name.brand = fields.optionalText("brand");
    name.model = fields.text("model");
    return name;
}

InnerPackage readInnerPackage(JsonFields& fields) {
    InnerPackage inner;
    inner.name = readModelName(fields);
    inner.toDistanceM = fields.quantity("to_distance", Quantity::Length, NumberRule::Positive);
    return inner;
}

NoFitPolicy readNoFitPolicy(JsonFields& fields) {
    const auto policy = fields.optionalText("when_none_fits").value_or("leave_empty");
    if (policy == "nearest_size") {
        return NoFitPolicy::NearestSize;
    }
    if (policy != "leave_empty") {
        throw DesignError::invalid(fields.pathOf("when_none_fits") +
                                   " must be \"leave_empty\" or \"nearest_size\", not \"" + policy + "\"");
    }
    return NoFitPolicy::LeaveEmpty;
}

NozzleSelection readNozzleSelection(JsonFields& root) {
    return root.section("nozzle_selection", [](JsonFields& fields) {
        NozzleSelection selection;
        selection.tolerance = fields.number("tolerance", NumberRule::Positive);
        if (selection.tolerance > 1) {
            throw DesignError::invalid(fields.pathOf("tolerance") +
                                       " must be at most 1 (a fraction: 0.1 means 10 %)");
        }
        selection.brand = fields.optionalText("brand");
        selection.model = fields.optionalText("model");
        selection.inner = fields.optionalSection("inner", readInnerPackage);
        selection.endGun = fields.optionalSection("end_gun", readModelName);
        selection.whenNoneFits = readNoFitPolicy(fields);
        return selection;
    });
}

RegulationDescription readRegulation(JsonFields& root, bool automatic) {
    auto regulation =
        root.optionalSection(
                "regulation",
                [](JsonFields& fields) {
                    RegulationDescription read;
                    read.ratingKpa =
                        fields.optionalQuantity("rating", Quantity::Pressure, NumberRule::Positive);
                    read.marginKpa =
                        fields.optionalQuantity("margin", Quantity::Pressure, NumberRule::NonNegative)
                            .value_or(fields.units().system() == UnitSystem::US ? 5 * Units::kilopascalsPerPsi
                                                                                : 35);
                    read.spreadLimit =
                        fields.optionalNumber("spread_limit_percent", NumberRule::Positive).value_or(10) /
                        100;
                    return read;
                })
            .value_or(RegulationDescription{});
    if (root.units().system() == UnitSystem::US && !root.has("regulation")) {
        regulation.marginKpa = 5 * Units::kilopascalsPerPsi;
    }
    regulation.automatic = automatic;
    if (automatic && !regulation.ratingKpa) {
        throw DesignError::invalid("regulators \"auto\" needs regulation." +
                                   root.keyOf("rating", Quantity::Pressure));
    }
    return regulation;
}

ChecksDescription readChecks(JsonFields& root) {
    return root
        .optionalSection(
            "checks",
            [](JsonFields& fields) {
                ChecksDescription checks;
                checks.minimumUniformityPercent =
                    fields.optionalNumber("minimum_cu_percent").value_or(checks.minimumUniformityPercent);
                checks.dischargeTolerance =
                    fields.optionalNumber("discharge_tolerance_percent", NumberRule::Positive)
                        .value_or(checks.dischargeTolerance * 100) /
                    100;
                return checks;
            })
        .value_or(ChecksDescription{});
}

UnitSystem readUnits(JsonFields& root) {
    const auto name = root.optionalText("units").value_or("si");
    const auto units = Units::parse(name);
    if (!units) {
        throw DesignError::invalid("units must be \"si\" or \"us\", not \"" + name + "\"");
    }
    return *units;
}

DesignDescription fromJson(const nlohmann::json& document) {
    JsonFields root(document, "");
    root.optionalText("$schema");
    root.comment("$comment");
    DesignDescription design;
    design.units = readUnits(root);
    root.setUnits(Units(design.units));
    design.name = root.text("name");
    design.systemId = root.optionalWholeNumber("system_id", 1, maxId);
    design.inletPressureKpa = root.quantity("inlet_pressure", Quantity::Pressure, NumberRule::Positive);
    design.designFlowLps = root.quantity("design_flow", Quantity::Flow, NumberRule::Positive);
    design.roughnessC = root.number("roughness_c", NumberRule::Positive);
    design.centreElevationM = root.optionalQuantity("centre_elevation", Quantity::Length).value_or(0);
    design.revolutionTimeH = root.number("revolution_time_h", NumberRule::Positive);
    design.spans = readSpans(root, design.centreElevationM);
    design.overhang = readOverhang(root, static_cast<long>(design.spans.size()));
    design.endGun = readEndGun(root);
    requireOutletsInRange(design);
    const long spanCount = static_cast<long>(design.spans.size()) + (design.overhang ? 1 : 0);
    bool automaticRegulators = false;
    design.regulators = readRegulators(root, spanCount, automaticRegulators);
    design.regulation = readRegulation(root, automaticRegulators);
    design.drop = readDrop(root);
    design.indicators = readIndicators(root, design.revolutionTimeH);
    design.pluviometryCheck = readPluviometryCheck(root);
    design.nozzleSelection = readNozzleSelection(root);
    design.checks = readChecks(root);
    root.finish();
    DesignValidation::validate(design);
    return design;
}

}  // namespace

DesignDescription DesignFile::parse(const std::string& text, const std::string& sourceName) {
    nlohmann::json document;
    DocumentBuilder builder(document);
    try {
        nlohmann::json::sax_parse(text, &builder);
    } catch (const nlohmann::json::parse_error& error) {
        throw DesignError::invalid(sourceName + ": malformed JSON: " + parseErrorText(error));
    } catch (const nlohmann::json::out_of_range&) {
        throw DesignError::invalid(sourceName + ": " + tooLargeNumber(text, builder));
    }
    return fromJson(document);
}

std::set<std::string> DesignFile::fieldsLookedFor(const std::string& text, const std::string& sourceName) {
    const FieldLog log;
    parse(text, sourceName);
    return log.paths();
}

DesignDescription DesignFile::load(const std::string& path) {
    return parse(readTextFile(path, "design file"), path);
}

}  // namespace caudalis::design
