#include "caudalis/fieldtests/ReadingsFile.hpp"

#include <algorithm>
#include <cctype>

#include "caudalis/fieldtests/FieldReadingsCsv.hpp"
#include "caudalis/fieldtests/FieldReadingsText.hpp"
#include "caudalis/fieldtests/ReadingsError.hpp"
#include "caudalis/project/ServiceError.hpp"
#include "caudalis/project/TextFile.hpp"

namespace caudalis::fieldtests {

namespace {

design::FieldReadings readCsv(const std::vector<std::string>& paths, std::optional<double> gaugeDiameterM,
                              const std::optional<std::string>& test) {
    if (paths.size() != 1) {
        throw project::UsageError(
            "a CSV readings file holds both radial lines (a line column): give it alone");
    }
    return design::FieldReadingsCsv::readTest(
        {paths.front(), project::readTextFile(paths.front(), "readings file")}, gaugeDiameterM, test);
}

design::FieldReadings readText(const std::vector<std::string>& paths, std::optional<double> gaugeDiameterM) {
    if (!gaugeDiameterM) {
        throw project::UsageError("readings in the text form are volumes in ml: give --gauge-diameter");
    }
    std::vector<design::ReadingsText> texts;
    for (const auto& path : paths) {
        texts.push_back({path, project::readTextFile(path, "readings file")});
    }
    return design::FieldReadingsText::read(texts, *gaugeDiameterM);
}

}  // namespace

bool ReadingsFile::isCsv(const std::string& path) {
    if (path.size() < 4) {
        return false;
    }
    auto extension = path.substr(path.size() - 4);
    std::transform(extension.begin(), extension.end(), extension.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return extension == ".csv";
}

design::FieldReadings ReadingsFile::load(const std::vector<std::string>& paths,
                                         std::optional<double> gaugeDiameterM,
                                         const std::optional<std::string>& test) {
    const bool csv = std::any_of(paths.begin(), paths.end(), isCsv);
    if (test && !csv) {
        throw project::UsageError("--test selects one test of a CSV readings file with a test column");
    }
    try {
        return csv ? readCsv(paths, gaugeDiameterM, test) : readText(paths, gaugeDiameterM);
    } catch (const design::ReadingsError& error) {
        throw project::InputError(std::string("readings file ") + error.what());
    }
}

}  // namespace caudalis::fieldtests
