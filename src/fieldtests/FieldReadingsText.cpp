#include "caudalis/fieldtests/FieldReadingsText.hpp"

#include "caudalis/evaluation/FieldSamples.hpp"
#include "caudalis/evaluation/Pluviometros.hpp"
#include "caudalis/fieldtests/ReadingsError.hpp"

namespace caudalis::design {

namespace {

void requireGroupCount(std::size_t groups, std::size_t texts, const std::string& source) {
    if (groups == 0) {
        throw ReadingsError(source, "holds no readings");
    }
    if (groups > (texts == 1 ? 2u : 1u)) {
        throw ReadingsError(source, "holds " + std::to_string(groups) +
                                        " groups of readings separated by blank lines; " +
                                        (texts == 1 ? "a file holds at most two radial lines"
                                                    : "each of two files holds one radial line"));
    }
}

}  // namespace

FieldReading FieldReadingsText::parseLine(const std::string& line, const std::string& source, long number) {
    const auto text = ReadingsTextTools::trimmed(line);
    const auto space = text.find(' ');
    const bool wellFormed = space != std::string::npos && text.find(' ', space + 1) == std::string::npos &&
                            ReadingsTextTools::number(text.substr(0, space)) &&
                            ReadingsTextTools::number(text.substr(space + 1));
    if (!wellFormed) {
        throw ReadingsError(
            source, number,
            "\"" + text + "\" is not a reading (amount, one space, distance; \".\" as decimal point)");
    }
    FieldReading reading;
    reading.sample = FieldSamples::shared()->Parse(text);
    reading.source = source;
    reading.sourceLine = number;
    return reading;
}

std::vector<std::vector<FieldReading>> FieldReadingsText::groups(const ReadingsText& text) {
    std::vector<std::vector<FieldReading>> groups;
    bool startsGroup = true;
    ReadingsTextTools::eachLine(text.text, [&](const std::string& line, long number) {
        const auto content = ReadingsTextTools::trimmed(line);
        if (content.empty()) {
            startsGroup = true;
        } else if (content.front() != '#') {
            if (startsGroup) {
                groups.emplace_back();
                startsGroup = false;
            }
            groups.back().push_back(parseLine(line, text.source, number));
        }
    });
    return groups;
}

FieldReadings FieldReadingsText::read(const std::vector<ReadingsText>& texts, double gaugeDiameterM) {
    FieldReadings result;
    result.amounts = StoredAmount::VolumeMl;
    result.gaugeDiameterM = gaugeDiameterM;
    auto gauge = Pluviometros::shared()->newPluviometro(gaugeDiameterM);
    const auto samples = FieldSamples::shared();
    for (const auto& text : texts) {
        const auto found = groups(text);
        requireGroupCount(found.size(), texts.size(), text.source);
        for (const auto& group : found) {
            const int line = static_cast<int>(result.lineNames.size()) + 1;
            result.lineNames.push_back(std::to_string(line));
            for (auto reading : group) {
                reading.line = line;
                reading.depth = samples->ToWaterDepth(reading.sample, gauge);
                result.readings.push_back(reading);
            }
        }
    }
    return result;
}

}  // namespace caudalis::design
