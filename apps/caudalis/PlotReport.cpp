#include "PlotReport.hpp"

#include <algorithm>
#include <cctype>
#include <cstring>
#include <functional>
#include <vector>

#include <plstream.h>

#include "CliErrors.hpp"
#include "OutputFile.hpp"

namespace caudalis::cli {

using design::DesignResult;
using design::OutletPlace;
using design::OutletResult;

namespace {

/// Colour map 0 entries used by the plot (entry 0 is the background).
enum Colour { Background = 0, Ink = 1, Actual = 2, Ideal = 3 };

struct Series {
    std::string label;
    Colour colour;
    bool dashed;
    std::function<double(const OutletResult&)> value;
};

struct Panel {
    std::string title;
    std::string axis;
    std::vector<Series> series;
};

std::string lowerExtension(const std::string& path) {
    const auto dot = path.find_last_of('.');
    if (dot == std::string::npos || path.find('/', dot) != std::string::npos) {
        return "";
    }
    std::string extension = path.substr(dot + 1);
    std::transform(extension.begin(), extension.end(), extension.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return extension;
}

bool hasDevice(plstream& stream, const std::string& device) {
    const char** menu = nullptr;
    const char** names = nullptr;
    int count = 64;
    std::vector<const char*> menuStorage(static_cast<std::size_t>(count));
    std::vector<const char*> nameStorage(static_cast<std::size_t>(count));
    menu = menuStorage.data();
    names = nameStorage.data();
    stream.gFileDevs(&menu, &names, &count);
    for (int i = 0; i < count; ++i) {
        if (device == names[i]) {
            return true;
        }
    }
    return false;
}

std::vector<Panel> panels() {
    return {{"Pressure along the radius",
             "pressure (kPa)",
             {{"acting", Actual, false, [](const OutletResult& o) { return o.outlet.pressao_actuante; }},
              {"ideal", Ideal, true, [](const OutletResult& o) { return o.outlet.pressao_ideal; }}}},
            {"Flow per outlet",
             "flow (l/s)",
             {{"delivered", Actual, false, [](const OutletResult& o) { return o.outlet.caudal_do_aspersor; }},
              {"required", Ideal, true, [](const OutletResult& o) { return o.outlet.caudal; }}}},
            {"Water depth per revolution",
             "depth (mm)",
             {{"actual", Actual, false, [](const OutletResult& o) { return o.depthMm; }},
              {"ideal", Ideal, true, [](const OutletResult& o) { return o.idealDepthMm; }}}}};
}

void drawPanel(plstream& stream, const Panel& panel, const DesignResult& result, bool lastPanel) {
    std::vector<PLFLT> radius;
    double xmax = 1;
    double ymin = 0;
    double ymax = 0;
    for (const auto& outlet : result.outlets) {
        xmax = std::max(xmax, outlet.outlet.distanciaAoPivot);
        if (outlet.place != OutletPlace::EndGun) {
            radius.push_back(outlet.outlet.distanciaAoPivot);
        }
        for (const auto& series : panel.series) {
            ymin = std::min(ymin, series.value(outlet));
            ymax = std::max(ymax, series.value(outlet));
        }
    }
    if (ymax <= ymin) {
        ymax = ymin + 1;
    }
    stream.adv(0);
    stream.vpor(0.1, 0.95, 0.18, 0.88);
    stream.wind(0, xmax * 1.02, ymin, ymax + (ymax - ymin) * 0.08);
    stream.col0(Ink);
    stream.lsty(1);
    stream.box("bcnst", 0, 0, "bcnstv", 0, 0);
    stream.lab(lastPanel ? "distance from the centre (m)" : "", panel.axis.c_str(), panel.title.c_str());
    double legendRow = 1.5;
    for (const auto& series : panel.series) {
        std::vector<PLFLT> values;
        for (const auto& outlet : result.outlets) {
            if (outlet.place == OutletPlace::EndGun) {
                PLFLT x = outlet.outlet.distanciaAoPivot;
                PLFLT y = series.value(outlet);
                stream.col0(series.colour);
                stream.poin(1, &x, &y, series.dashed ? 4 : 17);
            } else {
                values.push_back(series.value(outlet));
            }
        }
        stream.col0(series.colour);
        stream.lsty(series.dashed ? 2 : 1);
        if (!values.empty()) {
            stream.line(static_cast<PLINT>(values.size()), radius.data(), values.data());
        }
        stream.lsty(1);
        stream.mtex("t", -legendRow, 0.02, 0.0,
                    (series.dashed ? "- - " + series.label : "--- " + series.label).c_str());
        legendRow += 1.3;
    }
}

}  // namespace

std::string PlotReport::deviceFor(const std::string& path) {
    const auto extension = lowerExtension(path);
    if (extension == "png") {
        return "pngcairo";
    }
    if (extension == "svg") {
        return "svgcairo";
    }
    return "";
}

void PlotReport::requireSupportedFormat(const std::string& path) {
    if (deviceFor(path).empty()) {
        throw UsageError("--plot: " + path + " must end in .png or .svg");
    }
}

void PlotReport::writeFile(const std::string& path, const DesignResult& result) {
    requireSupportedFormat(path);
    OutputFile::requireWritable(path, "plot");
    const auto device = deviceFor(path);
    plstream stream;
    if (!hasDevice(stream, device)) {
        throw InputError("PLplot has no " + device + " driver (Debian package plplot-driver-cairo)");
    }
    stream.sdev(device.c_str());
    stream.sfnam(path.c_str());
    stream.spage(0, 0, 1000, 1200, 0, 0);
    stream.scol0(Background, 255, 255, 255);
    stream.scol0(Ink, 0, 0, 0);
    stream.scol0(Actual, 0, 90, 200);
    stream.scol0(Ideal, 200, 60, 0);
    stream.ssub(1, 3);
    stream.init();
    stream.schr(0, 0.9);
    const auto all = panels();
    for (std::size_t i = 0; i < all.size(); ++i) {
        drawPanel(stream, all[i], result, i + 1 == all.size());
    }
}

}  // namespace caudalis::cli
