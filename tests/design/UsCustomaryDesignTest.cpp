#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include <nlohmann/json.hpp>

#include "SampleNozzles.hpp"
#include "caudalis/design/DesignFile.hpp"
#include "caudalis/design/DesignRunner.hpp"
#include "caudalis/design/InMemoryNozzleSource.hpp"
#include "caudalis/design/TextFile.hpp"
#include "caudalis/report/JsonReport.hpp"

using namespace caudalis;
using namespace caudalis::design;
using nlohmann::json;

namespace {

bool endsWith(const std::string& text, const std::string& end) {
    return text.size() > end.size() && text.compare(text.size() - end.size(), end.size(), end) == 0;
}

struct Rename {
    const char* si;
    const char* us;
    double factor;  // SI units per US unit
};

/// The same design written in US customary units, field by field.
json toUsCustomary(const json& si) {
    const Rename renames[] = {{"_kpa", "_psi", 6.894757},
                              {"_lps", "_gpm", 0.0630902},
                              {"_cm", "_in", 2.54},
                              {"_mm", "_in", 25.4},
                              {"_m", "_ft", 0.3048}};
    if (si.is_array()) {
        json list = json::array();
        for (const auto& item : si) {
            list.push_back(toUsCustomary(item));
        }
        return list;
    }
    if (!si.is_object()) {
        return si;
    }
    json us = json::object();
    for (const auto& [key, value] : si.items()) {
        bool renamed = false;
        for (const auto& rename : renames) {
            if (!renamed && endsWith(key, rename.si) && value.is_number()) {
                us[key.substr(0, key.size() - std::string(rename.si).size()) + rename.us] =
                    value.get<double>() / rename.factor;
                renamed = true;
            }
        }
        if (!renamed) {
            us[key] = toUsCustomary(value);
        }
    }
    return us;
}

std::string exampleText(const std::string& name) {
    return readTextFile(caudalis::testing::sourcePath("examples/designs/" + name + ".json"), "example");
}

void expectClose(double us, double si, const std::string& what) {
    EXPECT_LE(std::fabs(us - si), 1e-9 * std::max(1.0, std::fabs(si))) << what;
}

}  // namespace

TEST(UsCustomaryDesign, AUsFileGivesTheSameDesignAsItsSiTwin) {
    for (const char* name : {"small", "realistic", "hilly"}) {
        SCOPED_TRACE(name);
        auto si = json::parse(exampleText(name));
        auto us = toUsCustomary(si);
        us["units"] = "us";
        const auto siDesign = DesignFile::parse(si.dump(), "si.json");
        const auto usDesign = DesignFile::parse(us.dump(), "us.json");
        EXPECT_EQ(usDesign.units, UnitSystem::US);
        InMemoryNozzleSource source(caudalis::testing::sampleCatalogue());
        const auto a = DesignRunner().run(siDesign, source);
        const auto b = DesignRunner().run(usDesign, source);
        ASSERT_EQ(a.outlets.size(), b.outlets.size());
        for (std::size_t i = 0; i < a.outlets.size(); ++i) {
            expectClose(b.outlets[i].outlet.pressao_actuante, a.outlets[i].outlet.pressao_actuante,
                        "pressure");
            expectClose(b.outlets[i].outlet.caudal_do_aspersor, a.outlets[i].outlet.caudal_do_aspersor,
                        "flow");
            EXPECT_EQ(b.outlets[i].outlet.obj_aspersor, a.outlets[i].outlet.obj_aspersor);
        }
        expectClose(b.summary.computedFlowLps, a.summary.computedFlowLps, "discharge");
    }
}

TEST(UsCustomaryDesign, JsonInUsUnitsRoundTripsToSi) {
    const auto design = DesignFile::parse(exampleText("realistic"), "realistic.json");
    InMemoryNozzleSource source(caudalis::testing::sampleCatalogue());
    const auto result = DesignRunner().run(design, source);
    const auto si = json::parse(JsonReport::text(result));
    const auto us = json::parse(JsonReport::text(result, Units(UnitSystem::US)));
    EXPECT_EQ(si["units"]["system"], "si");
    EXPECT_EQ(us["units"]["system"], "us");
    EXPECT_EQ(us["units"]["pressure"], "psi");
    expectClose(us["summary"]["computed_flow_gpm"].get<double>() * 0.0630902,
                si["summary"]["computed_flow_lps"].get<double>(), "discharge");
    for (std::size_t i = 0; i < si["outlets"].size(); ++i) {
        const auto& a = si["outlets"][i];
        const auto& b = us["outlets"][i];
        expectClose(b["pressao_actuante"].get<double>() * 6.894757, a["pressao_actuante"].get<double>(),
                    "pressure");
        expectClose(b["caudal_do_aspersor"].get<double>() * 0.0630902, a["caudal_do_aspersor"].get<double>(),
                    "flow");
        expectClose(b["distanciaAoPivot"].get<double>() * 0.3048, a["distanciaAoPivot"].get<double>(),
                    "distance");
        expectClose(b["depth_in"].get<double>() * 25.4, a["depth_mm"].get<double>(), "depth");
    }
}
