#include "caudalis/fieldtests/FieldReadingsCsv.hpp"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <functional>
#include <map>
#include <utility>

#include "caudalis/core/Constants.hpp"
#include "caudalis/design/Units.hpp"
#include "caudalis/evaluation/FieldSamples.hpp"
#include "caudalis/evaluation/Pluviometros.hpp"
#include "caudalis/evaluation/WaterDepths.hpp"
#include "caudalis/fieldtests/ReadingsError.hpp"

namespace caudalis::design {

namespace {

constexpr double metresPerInch = Units::millimetresPerInch / 1000;

/// A gauge record whose opening area is `areaM2`, so that the library's conversion of a volume
/// into a depth (`FieldSamples::ToWaterDepth`) uses that very area; the diameter only makes it
/// valid.
Pluviometro gaugeOfArea(double areaM2) {
    return Pluviometro{2 * std::sqrt(areaM2 / pi), areaM2};
}

/// A column the readings may have, with the factor that turns its values into the library's
/// unit.
struct ColumnKind {
    const char* name;
    const char* group;
    double factor;
};

const std::vector<ColumnKind>& columnKinds() {
    static const std::vector<ColumnKind> kinds{
        {"distance_m", "distance", 1},
        {"distance_ft", "distance", Units::metresPerFoot},
        {"volume_ml", "amount", 1},
        {"depth_mm", "amount", 1},
        {"depth_in", "amount", Units::millimetresPerInch},
        {"collector_area_cm2", "area", 1e-4},
        {"collector_area_in2", "area", metresPerInch * metresPerInch},
        {"line", "line", 1},
        {"test", "test", 1},
        {"collector", "collector", 1},
        {"flag", "flag", 1},
        {"note", "ignored", 1},
        {"notes", "ignored", 1},
        {"comment", "ignored", 1},
    };
    return kinds;
}

std::string lowerCase(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return text;
}

/// Where each group of columns is, from the header row.
class Header {
public:
    Header(const std::vector<std::string>& names, const std::string& source, long line)
        : source_(source), line_(line) {
        for (std::size_t i = 0; i < names.size(); ++i) {
            add(lowerCase(ReadingsTextTools::trimmed(names[i])), static_cast<long>(i));
        }
        require("distance", "distance_m or distance_ft");
        require("amount", "volume_ml, depth_mm or depth_in");
        if (has("area") && name("amount") != "volume_ml") {
            throw ReadingsError(source_, line_, "a collector area column goes with volume_ml only");
        }
    }

    bool has(const std::string& group) const { return columns_.count(group) > 0; }
    /// Reads the depth column written beside the volumes instead of the volumes.
    void useDepthsBesideVolumes() {
        columns_["amount"] = columns_.at("depth");
        columns_.erase("depth");
    }
    long column(const std::string& group) const { return columns_.at(group).column; }
    const std::string& name(const std::string& group) const { return columns_.at(group).name; }
    double factor(const std::string& group) const { return columns_.at(group).factor; }

private:
    struct Placed {
        long column;
        std::string name;
        double factor;
    };

    void add(const std::string& name, long column) {
        const auto& kinds = columnKinds();
        const auto kind =
            std::find_if(kinds.begin(), kinds.end(), [&](const auto& k) { return name == k.name; });
        if (kind == kinds.end()) {
            throw ReadingsError(
                source_, line_, column + 1, name,
                "unknown column; known columns are distance_m, distance_ft, volume_ml, depth_mm, "
                "depth_in, collector_area_cm2, collector_area_in2, line, test, collector, flag, note");
        }
        std::string group = kind->group;
        if (group == "ignored") {
            return;
        }
        if (group == "amount" && has("amount") &&
            (name == "volume_ml") != (this->name("amount") == "volume_ml")) {
            // A volume beside a depth: the volume is what was read, the depth the crew's own
            // conversion, used only when the collectors' opening is not given.
            if (name == "volume_ml") {
                columns_["depth"] = columns_.at("amount");
                columns_.erase("amount");
            } else {
                group = "depth";
            }
        }
        if (has(group)) {
            throw ReadingsError(
                source_, line_, column + 1, name,
                "a second " + group + " column (the first is " + columns_.at(group).name + ")");
        }
        columns_[group] = Placed{column, name, kind->factor};
    }

    void require(const std::string& group, const std::string& names) const {
        if (!has(group)) {
            throw ReadingsError(source_, line_, "the header names no " + group + " column (" + names + ")");
        }
    }

    std::map<std::string, Placed> columns_;
    std::string source_;
    long line_;
};

/// Whether the crew wrote the distances in feet or the depths in inches.
bool writtenInUS(const Header& header) {
    const auto named = [&header](const char* group, const char* name) {
        return header.has(group) && header.name(group) == name;
    };
    return named("distance", "distance_ft") || named("amount", "depth_in") || named("depth", "depth_in");
}

/// Reads the rows after the header into readings.
class RowReader {
public:
    RowReader(Header& header, const std::string& source, std::optional<double> gaugeDiameterM,
              std::optional<std::string> test, FieldReadings& readings)
        : header_(header), source_(source), readings_(readings), test_(std::move(test)) {
        readings_.amounts = StoredAmount::DepthMm;
        readings_.units = writtenInUS(header) ? UnitSystem::US : UnitSystem::SI;
        if (header.has("depth") && !header.has("area") && !gaugeDiameterM) {
            header.useDepthsBesideVolumes();
        }
        if (test_ && !header_.has("test")) {
            throw ReadingsError(
                source_, "a test \"" + *test_ + "\" is asked for, but the header names no test column");
        }
        if (header_.name("amount") == "volume_ml" && !header_.has("area")) {
            if (!gaugeDiameterM) {
                throw ReadingsError(source_,
                                    "volume_ml needs the collectors' opening: a collector_area_cm2 "
                                    "(or _in2) column, or the gauge diameter");
            }
            readings_.amounts = StoredAmount::VolumeMl;
            readings_.gaugeDiameterM = *gaugeDiameterM;
            gauge_ = Pluviometros::shared()->newPluviometro(*gaugeDiameterM);
        }
    }

    void read(const std::vector<std::string>& fields, long line) {
        fields_ = &fields;
        line_ = line;
        if (!ofTheTest()) {
            return;
        }
        FieldReading reading;
        reading.source = source_;
        reading.sourceLine = line;
        reading.line = lineNumber();
        reading.collector = text("collector");
        reading.crewExclusion = text("flag");
        const double distance = number("distance");
        const double amount = number("amount");
        convert(reading, amount, distance);
        readings_.readings.push_back(reading);
    }

    /// Raises when the text holds several tests and none was chosen, or not the chosen one.
    void checkTests() const {
        std::string names;
        for (const auto& name : tests_) {
            names += (names.empty() ? "" : ", ") + name;
        }
        if (test_ && std::find(tests_.begin(), tests_.end(), *test_) == tests_.end()) {
            throw ReadingsError(source_, "holds no test \"" + *test_ + "\" (its tests: " + names + ")");
        }
        if (!test_ && tests_.size() > 1) {
            throw ReadingsError(
                source_, "holds " + std::to_string(tests_.size()) + " tests (" + names + "): choose one");
        }
    }

private:
    /// Whether the row belongs to the test read; notes every test's name.
    bool ofTheTest() {
        if (!header_.has("test")) {
            return true;
        }
        const auto name = cell("test");
        if (std::find(tests_.begin(), tests_.end(), name) == tests_.end()) {
            tests_.push_back(name);
        }
        return !test_ || name == *test_;
    }

    void convert(FieldReading& reading, double amount, double distance) {
        const auto samples = FieldSamples::shared();
        if (readings_.amounts == StoredAmount::VolumeMl) {
            reading.sample = samples->newFieldSample(amount, distance);
            reading.depth = samples->ToWaterDepth(reading.sample, gauge_);
        } else if (header_.has("area")) {
            const double area = number("area");
            if (!(area > 0)) {
                fail("area", "a collector's opening must be more than 0");
            }
            auto gauge = gaugeOfArea(area);
            reading.depth = samples->ToWaterDepth(samples->newFieldSample(amount, distance), gauge);
            reading.sample =
                samples->newFieldSample(reading.depth.p_null ? amount : reading.depth.depth, distance);
        } else {
            const auto depths = WaterDepths::shared();
            reading.sample = samples->newFieldSample(amount, distance);
            reading.depth = samples->Valid(reading.sample) ? depths->newWaterDepthSample(amount, distance)
                                                           : depths->NullWaterDepth();
        }
    }

    std::string cell(const std::string& group) const {
        const auto column = static_cast<std::size_t>(header_.column(group));
        return column < fields_->size() ? ReadingsTextTools::trimmed((*fields_)[column]) : std::string();
    }

    std::string text(const std::string& group) const { return header_.has(group) ? cell(group) : ""; }

    double number(const std::string& group) const {
        const auto value = cell(group);
        if (value.empty()) {
            fail(group, "empty; write the value (0 for a dry collector)");
        }
        const auto read = ReadingsTextTools::number(value);
        if (!read) {
            fail(group, "\"" + value + "\" is not a number (\".\" as decimal point)");
        }
        return *read * header_.factor(group);
    }

    int lineNumber() {
        if (!header_.has("line")) {
            if (readings_.lineNames.empty()) {
                readings_.lineNames.push_back("1");
            }
            return 1;
        }
        const auto name = cell("line");
        auto& names = readings_.lineNames;
        const auto found = std::find(names.begin(), names.end(), name);
        if (found != names.end()) {
            return static_cast<int>(found - names.begin()) + 1;
        }
        if (names.size() == 2) {
            fail("line", "a third radial line \"" + name + "\" (a test has one or two: " + names[0] + ", " +
                             names[1] + ")");
        }
        names.push_back(name);
        return static_cast<int>(names.size());
    }

    [[noreturn]] void fail(const std::string& group, const std::string& what) const {
        throw ReadingsError(source_, line_, header_.column(group) + 1, header_.name(group), what);
    }

    const Header& header_;
    std::string source_;
    FieldReadings& readings_;
    std::optional<std::string> test_;
    std::vector<std::string> tests_;
    Pluviometro gauge_;
    const std::vector<std::string>* fields_ = nullptr;
    long line_ = 0;
};

}  // namespace

std::vector<std::string> FieldReadingsCsv::fields(const std::string& row, const std::string& source,
                                                  long line) {
    bool unclosedQuote = false;
    auto fields = ReadingsTextTools::csvFields(row, unclosedQuote);
    if (unclosedQuote) {
        throw ReadingsError(source, line, "a quoted field is not closed");
    }
    return fields;
}

FieldReadings FieldReadingsCsv::read(const ReadingsText& text, std::optional<double> gaugeDiameterM) {
    return readTest(text, gaugeDiameterM, std::nullopt);
}

FieldReadings FieldReadingsCsv::readTest(const ReadingsText& text, std::optional<double> gaugeDiameterM,
                                         const std::optional<std::string>& test) {
    FieldReadings readings;
    std::optional<Header> header;
    std::optional<RowReader> rows;
    ReadingsTextTools::eachLine(text.text, [&](const std::string& line, long number) {
        const auto content = ReadingsTextTools::trimmed(line);
        if (content.empty() || content.front() == '#') {
            return;
        }
        const auto cells = fields(content, text.source, number);
        if (!header) {
            header.emplace(cells, text.source, number);
            rows.emplace(*header, text.source, gaugeDiameterM, test, readings);
        } else {
            rows->read(cells, number);
        }
    });
    if (rows) {
        rows->checkTests();
    }
    if (readings.readings.empty()) {
        throw ReadingsError(text.source, "holds no readings");
    }
    return readings;
}

}  // namespace caudalis::design
