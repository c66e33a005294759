#include <gtest/gtest.h>

#include <algorithm>

#include <functional>
#include <regex>
#include <string>

#include <nlohmann/json.hpp>

#include "caudalis/design/DesignError.hpp"
#include "caudalis/design/DesignFile.hpp"

#include "ErrorMatchers.hpp"
#include "SampleNozzles.hpp"

using namespace caudalis::design;
using nlohmann::json;

namespace {

DesignDescription fromJson(const json& document) {
    return DesignFile::parse(document.dump(), "design.json");
}

json validDesign() {
    return json::parse(R"({
        "name": "Test pivot",
        "system_id": 17,
        "inlet_pressure_kpa": 250,
        "design_flow_lps": 20,
        "roughness_c": 140,
        "centre_elevation_m": 10,
        "revolution_time_h": 18,
        "spans": [
            {"length_m": 50, "diameter_mm": 168.3, "outlet_spacing_cm": 250, "end_elevation_m": 11},
            {"id": 7, "name": "Outer", "length_m": 40, "diameter_mm": 141.3, "outlet_spacing_cm": 200, "end_elevation_m": 9}
        ],
        "overhang": {"length_m": 12, "diameter_mm": 114.3, "outlet_spacing_cm": 300},
        "end_gun": {"ring_width_m": 20, "booster_kpa": 100},
        "regulators": [{"span": 3, "pressure_kpa": 140, "flow_min_lps": 0.1, "flow_max_lps": 1.2, "installed": false}],
        "drop": {"diameter_mm": 19, "length_m": 3, "material": {"name": "PE", "c": 140}},
        "indicators": {"blocked_outlets": 2},
        "pluviometry_check": {
            "first": {"distance_m": 60, "wet_diameter_m": 12},
            "second": {"distance_m": 90, "wet_diameter_m": 14, "code": "far"},
            "kostiakov": {"k": 10, "a": 0.5}
        },
        "nozzle_selection": {"tolerance": 0.1, "brand": "Aquarion", "model": "AQ Spray"}
    })");
}

std::string messageOf(const std::function<void()>& action) {
    const auto message = caudalis::testing::raisedMessage<DesignError>(action);
    return message.empty() ? "no error" : message;
}

/// The message for the valid design changed by `edit`.
std::string messageFor(const std::function<void(json&)>& edit) {
    auto document = validDesign();
    edit(document);
    return messageOf([&] { fromJson(document); });
}

}  // namespace

TEST(DesignFile, ReadsEveryFieldOfAValidDesign) {
    const auto design = fromJson(validDesign());
    EXPECT_EQ(design.name, "Test pivot");
    EXPECT_EQ(design.systemId, 17);
    EXPECT_DOUBLE_EQ(design.inletPressureKpa, 250);
    EXPECT_DOUBLE_EQ(design.designFlowLps, 20);
    EXPECT_DOUBLE_EQ(design.roughnessC, 140);
    EXPECT_DOUBLE_EQ(design.centreElevationM, 10);
    EXPECT_DOUBLE_EQ(design.revolutionTimeH, 18);
    ASSERT_EQ(design.spans.size(), 2u);
    EXPECT_EQ(design.spans[0].id, 1);
    EXPECT_EQ(design.spans[0].name, "Span 1");
    EXPECT_DOUBLE_EQ(design.spans[0].outletSpacingCm, 250);
    EXPECT_EQ(design.spans[1].id, 7);
    EXPECT_EQ(design.spans[1].name, "Outer");
    EXPECT_DOUBLE_EQ(design.spans[1].endElevationM, 9);
    ASSERT_TRUE(design.overhang.has_value());
    EXPECT_EQ(design.overhang->id, 3);
    EXPECT_EQ(design.overhang->name, "Overhang");
    ASSERT_TRUE(design.endGun.has_value());
    EXPECT_DOUBLE_EQ(design.endGun->boosterKpa, 100);
    ASSERT_EQ(design.regulators.size(), 1u);
    EXPECT_EQ(design.regulators[0].span, 3);
    EXPECT_FALSE(design.regulators[0].installed);
    EXPECT_DOUBLE_EQ(design.regulators[0].flowMaxLps, 1.2);
    ASSERT_TRUE(design.drop.has_value());
    EXPECT_EQ(design.drop->material.id, 1);
    EXPECT_EQ(design.drop->material.c, 140);
    EXPECT_TRUE(design.drop->installed);
    EXPECT_DOUBLE_EQ(design.indicators.revolutionHours, 18);
    EXPECT_EQ(design.indicators.blockedOutlets, 2);
    ASSERT_TRUE(design.pluviometryCheck.has_value());
    EXPECT_EQ(design.pluviometryCheck->first.code, "P1");
    EXPECT_EQ(design.pluviometryCheck->second->code, "far");
    EXPECT_DOUBLE_EQ(design.pluviometryCheck->kostiakov.a, 0.5);
    EXPECT_DOUBLE_EQ(design.nozzleSelection.tolerance, 0.1);
    EXPECT_EQ(design.nozzleSelection.brand, "Aquarion");
    EXPECT_EQ(design.nozzleSelection.model, "AQ Spray");
}

TEST(DesignFile, OptionalPartsMayBeLeftOut) {
    auto document = validDesign();
    for (const char* key : {"system_id", "centre_elevation_m", "overhang", "end_gun", "regulators", "drop",
                            "indicators", "pluviometry_check"}) {
        document.erase(key);
    }
    document["nozzle_selection"] = {{"tolerance", 0.2}};
    document["design_flow_lps"] = 10;  // what 90 m of spans can water
    const auto design = fromJson(document);
    EXPECT_FALSE(design.systemId);
    EXPECT_DOUBLE_EQ(design.centreElevationM, 0);
    EXPECT_FALSE(design.overhang || design.endGun || design.drop || design.pluviometryCheck);
    EXPECT_TRUE(design.regulators.empty());
    EXPECT_DOUBLE_EQ(design.indicators.revolutionHours, 18);
    EXPECT_FALSE(design.nozzleSelection.brand || design.nozzleSelection.model);
}

TEST(DesignFile, ShippedExamplesAreValid) {
    for (const char* name : {"small", "realistic", "hilly"}) {
        SCOPED_TRACE(name);
        const auto design = DesignFile::load(
            caudalis::testing::sourcePath(std::string("examples/designs/") + name + ".json"));
        EXPECT_FALSE(design.spans.empty());
    }
    const auto realistic = DesignFile::load(caudalis::testing::sourcePath("examples/designs/realistic.json"));
    EXPECT_TRUE(realistic.overhang && realistic.endGun && realistic.endGun->boosterKpa > 0);
    const auto hilly = DesignFile::load(caudalis::testing::sourcePath("examples/designs/hilly.json"));
    EXPECT_TRUE(hilly.drop && !hilly.regulators.empty());
}

TEST(DesignFile, TellsEveryFieldItLooksForPresentOrNot) {
    const auto fields = DesignFile::fieldsLookedFor(
        R"({"name": "x", "units": "us", "inlet_pressure_psi": 40, "design_flow_gpm": 200, "roughness_c": 140,
            "revolution_time_h": 20, "nozzle_selection": {"tolerance": 0.1},
            "spans": [{"length_ft": 150, "diameter_in": 6, "outlet_spacing_in": 100, "end_elevation_ft": 1},
                      {"length_ft": 150, "diameter_in": 6, "outlet_spacing_in": 100, "end_elevation_ft": 2}]})",
        "us.json");
    for (const char* expected :
         {"name", "units", "spans", "spans[].length_ft", "spans[].outside_diameter_in", "overhang", "end_gun",
          "nozzle_selection.tolerance", "nozzle_selection.inner"}) {
        EXPECT_EQ(fields.count(expected), 1U) << expected;
    }
    EXPECT_EQ(fields.count("spans[].length_m"), 0U);
    EXPECT_EQ(fields.count("drop.length_ft"), 0U);
    EXPECT_THROW(DesignFile::fieldsLookedFor(R"({"name": "x"})", "bad.json"), DesignError);
}

TEST(DesignFile, EachBadValueNamesItsField) {
    EXPECT_EQ(messageFor([](json& d) { d["spans"][1]["length_m"] = -3; }), "spans[1].length_m must be > 0");
    EXPECT_EQ(messageFor([](json& d) { d["spans"][0]["length_m"] = 0; }), "spans[0].length_m must be > 0");
    EXPECT_EQ(messageFor([](json& d) { d["spans"][0]["diameter_mm"] = "168"; }),
              "spans[0].diameter_mm must be a number");
    EXPECT_EQ(messageFor([](json& d) { d["spans"][0].erase("outlet_spacing_cm"); }),
              "spans[0].outlet_spacing_cm is missing");
    EXPECT_EQ(messageFor([](json& d) { d["inlet_pressure_kpa"] = 0; }), "inlet_pressure_kpa must be > 0");
    EXPECT_EQ(messageFor([](json& d) { d["design_flow_lps"] = true; }), "design_flow_lps must be a number");
    EXPECT_EQ(messageFor([](json& d) { d["roughness_c"] = -140; }), "roughness_c must be > 0");
    EXPECT_EQ(messageFor([](json& d) { d.erase("revolution_time_h"); }), "revolution_time_h is missing");
    EXPECT_EQ(messageFor([](json& d) { d["name"] = "  "; }), "name must not be empty");
    EXPECT_EQ(messageFor([](json& d) { d["name"] = 12; }), "name must be a text");
    EXPECT_EQ(messageFor([](json& d) { d["spans"] = json::array(); }), "spans must hold at least one span");
    EXPECT_EQ(messageFor([](json& d) { d["spans"] = 3; }), "spans must be an array");
    EXPECT_EQ(messageFor([](json& d) { d["spans"][1] = 3; }), "spans[1] must be an object");
    EXPECT_EQ(messageFor([](json& d) { d["spans"][0]["id"] = 1.5; }), "spans[0].id must be a whole number");
    EXPECT_EQ(messageFor([](json& d) { d["system_id"] = "T-1"; }), "system_id must be a number");
    EXPECT_EQ(messageFor([](json& d) { d["system_id"] = 0; }), "system_id must be between 1 and 2147483647");
    EXPECT_EQ(messageFor([](json& d) { d["overhang"]["outlet_spacing_cm"] = -1; }),
              "overhang.outlet_spacing_cm must be > 0");
    EXPECT_EQ(messageFor([](json& d) { d["end_gun"]["ring_width_m"] = 0; }),
              "end_gun.ring_width_m must be > 0");
    EXPECT_EQ(messageFor([](json& d) { d["end_gun"]["booster_kpa"] = -5; }),
              "end_gun.booster_kpa must be >= 0");
    EXPECT_EQ(messageFor([](json& d) { d["drop"]["material"]["c"] = 0; }),
              "drop.material.c must be between 1 and 1000");
    EXPECT_EQ(messageFor([](json& d) { d["drop"]["material"].erase("name"); }),
              "drop.material.name is missing");
    EXPECT_EQ(messageFor([](json& d) { d["drop"]["installed"] = "yes"; }),
              "drop.installed must be true or false");
    EXPECT_EQ(messageFor([](json& d) { d["indicators"]["blocked_outlets"] = -1; }),
              "indicators.blocked_outlets must be between 0 and 32767");
    EXPECT_EQ(messageFor([](json& d) { d["pluviometry_check"]["second"]["wet_diameter_m"] = 0; }),
              "pluviometry_check.second.wet_diameter_m must be > 0");
    EXPECT_EQ(messageFor([](json& d) { d["pluviometry_check"].erase("first"); }),
              "pluviometry_check.first is missing");
    EXPECT_EQ(messageFor([](json& d) { d["nozzle_selection"]["tolerance"] = 0; }),
              "nozzle_selection.tolerance must be > 0");
    EXPECT_EQ(messageFor([](json& d) { d["nozzle_selection"]["brand"] = ""; }),
              "nozzle_selection.brand must not be empty");
    EXPECT_EQ(messageFor([](json& d) { d.erase("nozzle_selection"); }), "nozzle_selection is missing");
}

TEST(DesignFile, ChecksValuesAgainstTheMachine) {
    // Regulators address spans 1 to the last span, the overhang counting as one.
    EXPECT_EQ(messageFor([](json& d) { d["regulators"][0]["span"] = 4; }),
              "regulators[0].span must be between 1 and 3");
    EXPECT_EQ(messageFor([](json& d) {
                  d.erase("overhang");
                  d["regulators"][0]["span"] = 3;
              }),
              "regulators[0].span must be between 1 and 2");
    EXPECT_EQ(messageFor([](json& d) { d["regulators"][0]["flow_max_lps"] = 0.05; }),
              "regulators[0].flow_max_lps must be >= flow_min_lps");
    EXPECT_EQ(messageFor([](json& d) { d["spans"][0]["outlet_spacing_cm"] = 5001; }),
              "spans[0].outlet_spacing_cm must not exceed the span length");
    // The second span starts at the first one's end (11 m) and may not rise by its length.
    EXPECT_EQ(messageFor([](json& d) { d["spans"][1]["end_elevation_m"] = 51; }),
              "spans[1].end_elevation_m must differ from the span's start elevation by less than its length");
    EXPECT_EQ(messageFor([](json& d) { d["spans"][1]["end_elevation_m"] = 50.9; }), "no error");
    EXPECT_EQ(messageFor([](json& d) { d["nozzle_selection"]["tolerance"] = 1.5; }),
              "nozzle_selection.tolerance must be at most 1 (a fraction: 0.1 means 10 %)");
    const auto tooMany = messageFor([](json& d) { d["spans"][0]["outlet_spacing_cm"] = 0.1; });
    EXPECT_TRUE(
        std::regex_match(tooMany, std::regex("spans, overhang and end_gun have 5[0-9]+ outlets in all "
                                             "\\(the end gun counts as one\\), more than 32767")))
        << tooMany;
}

namespace {

/// The valid design with one span of `outlets` outlets every 30 cm, with or without its end gun.
/// A machine of `outlets` outlets 50 cm apart, on spans of at most 100 m (200 outlets).
std::string messageForOutlets(long outlets, bool endGun) {
    return messageFor([&](json& d) {
        d["spans"] = json::array();
        for (long left = outlets; left > 0; left -= 200) {
            d["spans"].push_back({{"length_m", static_cast<double>(std::min(left, 200L)) * 0.5},
                                  {"diameter_mm", 168.3},
                                  {"outlet_spacing_cm", 50},
                                  {"end_elevation_m", 10}});
        }
        d.erase("overhang");
        d.erase("regulators");
        if (!endGun) {
            d.erase("end_gun");
        }
    });
}

}  // namespace

TEST(DesignFile, TheMostOutletsCountTheEndGunAsOne) {
    EXPECT_EQ(messageForOutlets(32767, false), "no error");
    EXPECT_EQ(messageForOutlets(32768, false), "spans have 32768 outlets in all, more than 32767");
    EXPECT_EQ(messageForOutlets(32766, true), "no error");
    EXPECT_EQ(messageForOutlets(32767, true),
              "spans and end_gun have 32768 outlets in all (the end gun counts as one), more than 32767");
}

TEST(DesignFile, CountsOutletsBeyondEveryIntegerWithoutOverflow) {
    const auto message = messageFor([](json& d) {
        d["spans"][0]["length_m"] = 1e300;
        d["spans"][0]["outlet_spacing_cm"] = 1e-300;
    });
    EXPECT_EQ(
        message,
        "spans, overhang and end_gun have countless outlets in all (the end gun counts as one), more than "
        "32767");
}

TEST(DesignFile, RejectsUnknownFields) {
    EXPECT_EQ(messageFor([](json& d) { d["spans"][0]["lenght_m"] = 3; }), "unknown field spans[0].lenght_m");
    EXPECT_EQ(messageFor([](json& d) { d["colour"] = "red"; }), "unknown field colour");
    EXPECT_EQ(messageFor([](json& d) { d["$schema"] = "x.json"; }), "no error");
}

TEST(DesignFile, MalformedJsonNamesTheFile) {
    const auto message = messageOf([] { DesignFile::parse("{\"name\": ", "broken.json"); });
    EXPECT_EQ(message.rfind("broken.json: malformed JSON: parse error at line 1, column 10", 0), 0u)
        << message;
    EXPECT_EQ(message.find('\n'), std::string::npos);
    EXPECT_EQ(messageOf([] { DesignFile::parse("[1, 2]", "list.json"); }), "the design must be an object");
}

TEST(DesignFile, MissingFileNamesTheFile) {
    EXPECT_EQ(messageOf([] { DesignFile::load("/nonexistent/design.json"); }),
              "cannot open design file /nonexistent/design.json: No such file or directory");
    EXPECT_EQ(messageOf([] { DesignFile::load(CAUDALIS_SOURCE_DIR); }),
              std::string("cannot open design file ") + CAUDALIS_SOURCE_DIR + ": it is a directory");
}

TEST(DesignFile, ANumberTooLargeForADoubleNamesFileAndField) {
    const auto message = messageOf([] {
        DesignFile::parse(R"({"name": "x", "spans": [{"length_m": 50}, {"length_m": 1e999}]})", "big.json");
    });
    EXPECT_EQ(
        message,
        "big.json: spans[1].length_m (1e999) is too large (beyond the range of a double-precision number)");
    EXPECT_EQ(
        messageOf([] { DesignFile::parse(R"({"design_flow_lps": -1e999})", "neg.json"); }),
        "neg.json: design_flow_lps (-1e999) is too large (beyond the range of a double-precision number)");
}

TEST(DesignFile, AbsurdValuesAreRefusedNamingTheField) {
    // 700 l/s on the test machine (122 m): gpm typed as l/s.
    const auto flow = messageFor([](json& d) { d["design_flow_lps"] = 700; });
    EXPECT_EQ(flow.rfind("design_flow_lps must be above 0 and at most", 0), 0u) << flow;
    EXPECT_NE(flow.find("not 700"), std::string::npos) << flow;
    EXPECT_EQ(messageFor([](json& d) { d["spans"][1]["outlet_spacing_cm"] = 2.9; }),
              "spans[1].outlet_spacing_cm must be between 30 and 1000 cm, not 2.9");
    EXPECT_EQ(messageFor([](json& d) { d["inlet_pressure_kpa"] = 35000; }),
              "inlet_pressure_kpa must be between 1 and 1500 kPa, not 35000");
    EXPECT_EQ(messageFor([](json& d) { d["roughness_c"] = 14000; }),
              "roughness_c must be between 50 and 200, not 14000");
}

TEST(DesignFile, UsCustomaryFieldsCarryTheirUnits) {
    auto document = validDesign();
    document["units"] = "us";
    const auto message = messageOf([&] { fromJson(document); });
    EXPECT_EQ(message, "inlet_pressure_psi is missing");
    document = validDesign();
    document["units"] = "us";
    document.erase("inlet_pressure_kpa");
    document["inlet_pressure_psi"] = 36.26;
    EXPECT_EQ(messageOf([&] { fromJson(document); }).rfind("design_flow_gpm is missing", 0), 0u);
    EXPECT_EQ(messageFor([](json& d) { d["units"] = "metric"; }),
              "units must be \"si\" or \"us\", not \"metric\"");
}

TEST(DesignFile, UnknownFieldInTheOtherUnitsSaysWhichToUse) {
    EXPECT_EQ(messageFor([](json& d) { d["end_gun"]["booster_psi"] = 20; }),
              "unknown field end_gun.booster_psi (the file's units are \"si\": give it as booster_kpa)");
}

TEST(DesignFile, ReadsThePackageRegulationAndChecks) {
    auto document = validDesign();
    document["nozzle_selection"] = json::parse(R"({"tolerance": 0.1, "model": "LDN-360 Spray",
        "inner": {"model": "iWob Wobbler", "to_distance_m": 60},
        "end_gun": {"brand": "Nimbra", "model": "SR-100 End Gun"}, "when_none_fits": "nearest_size"})");
    document["regulators"] = "auto";
    document["regulation"] =
        json::parse(R"({"rating_kpa": 103, "margin_kpa": 30, "spread_limit_percent": 15})");
    document["checks"] = json::parse(R"({"minimum_cu_percent": 90, "discharge_tolerance_percent": 3})");
    const auto design = fromJson(document);
    const auto& selection = design.nozzleSelection;
    ASSERT_TRUE(selection.inner && selection.endGun);
    EXPECT_EQ(selection.inner->name.model, "iWob Wobbler");
    EXPECT_DOUBLE_EQ(selection.inner->toDistanceM, 60);
    EXPECT_EQ(selection.endGun->brand, "Nimbra");
    EXPECT_EQ(selection.whenNoneFits, NoFitPolicy::NearestSize);
    EXPECT_TRUE(design.regulation.automatic);
    EXPECT_TRUE(design.regulators.empty());
    EXPECT_DOUBLE_EQ(*design.regulation.ratingKpa, 103);
    EXPECT_DOUBLE_EQ(design.regulation.marginKpa, 30);
    EXPECT_DOUBLE_EQ(design.regulation.spreadLimit, 0.15);
    EXPECT_DOUBLE_EQ(design.checks.minimumUniformityPercent, 90);
    EXPECT_DOUBLE_EQ(design.checks.dischargeTolerance, 0.03);
    EXPECT_EQ(messageFor([](json& d) { d["regulators"] = "auto"; }),
              "regulators \"auto\" needs regulation.rating_kpa");
    EXPECT_EQ(messageFor([](json& d) { d["nozzle_selection"]["when_none_fits"] = "guess"; }),
              "nozzle_selection.when_none_fits must be \"leave_empty\" or \"nearest_size\", not \"guess\"");
}

TEST(DesignFile, DefaultMarginIs35KpaOr5Psi) {
    EXPECT_DOUBLE_EQ(fromJson(validDesign()).regulation.marginKpa, 35);
}
