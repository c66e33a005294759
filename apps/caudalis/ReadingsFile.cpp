#include "ReadingsFile.hpp"

#include <sstream>

#include "CliErrors.hpp"
#include "PlainText.hpp"
#include "TextFile.hpp"
#include "caudalis/evaluation/FieldSamples.hpp"

namespace caudalis::cli {

Reading ReadingsFile::parseLine(const std::string& line, const std::string& source, long number) {
    const auto text = withoutBlanksAround(line);
    const auto space = text.find(' ');
    const bool wellFormed = space != std::string::npos && text.find(' ', space + 1) == std::string::npos &&
                            numberIn(text.substr(0, space)) && numberIn(text.substr(space + 1));
    if (!wellFormed) {
        throw InputError(source + " line " + std::to_string(number) + ": \"" + text +
                         "\" is not a reading (amount, one space, distance; \".\" as decimal point)");
    }
    return Reading{FieldSamples::shared()->Parse(text), source, number};
}

std::vector<std::vector<Reading>> ReadingsFile::parse(const std::string& text, const std::string& source) {
    std::vector<std::vector<Reading>> groups;
    bool startsGroup = true;
    std::istringstream lines(text);
    std::string line;
    for (long number = 1; std::getline(lines, line); ++number) {
        const auto content = withoutBlanksAround(line);
        if (content.empty()) {
            startsGroup = true;
        } else if (content.front() != '#') {
            if (startsGroup) {
                groups.emplace_back();
                startsGroup = false;
            }
            groups.back().push_back(parseLine(line, source, number));
        }
    }
    return groups;
}

ReadingPasses ReadingsFile::load(const std::vector<std::string>& paths) {
    std::vector<std::vector<Reading>> passes;
    for (const auto& path : paths) {
        auto groups = parse(readTextFile(path, "readings file"), path);
        if (groups.empty()) {
            throw InputError("readings file " + path + " holds no readings");
        }
        if (groups.size() > (paths.size() == 1 ? 2u : 1u)) {
            throw InputError(
                "readings file " + path + " holds " + std::to_string(groups.size()) +
                " groups of readings separated by blank lines; " +
                (paths.size() == 1 ? "a file holds at most two passes" : "each of two files holds one pass"));
        }
        passes.insert(passes.end(), groups.begin(), groups.end());
    }
    ReadingPasses result;
    result.first = passes.front();
    if (passes.size() > 1) {
        result.second = passes[1];
    }
    return result;
}

}  // namespace caudalis::cli
