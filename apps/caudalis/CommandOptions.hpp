#pragma once

#include <optional>
#include <string>
#include <vector>

#include "CommandLine.hpp"

namespace caudalis::cli {

/// The values of every option and argument of the program, filled by the argument parser.
struct CommandLine::Options {
    // Databases (defaults: in the current folder).
    std::string projectPath = "project.db";
    std::string cataloguePath = "catalogue.db";
    // init
    std::string folder = ".";
    std::optional<std::string> dataFolder;
    std::optional<std::string> initProject;
    std::optional<std::string> initCatalogue;
    // design
    std::string designPath;
    std::string csvPath;
    std::string reportPath;
    std::optional<std::string> chartName;
    std::optional<long> system;
    long maxPasses = 1000;
    bool json = false;
    bool strict = false;
    /// --units: the printout's units; the design file's own when empty.
    std::optional<std::string> units;
    // evaluate
    std::vector<std::string> readingsPaths;
    std::optional<double> gaugeDiameterM;
    /// --test: the test to read from a CSV file that holds several (its `test` column).
    std::optional<std::string> readingsTest;
    std::optional<std::string> evaluationName;
    bool saveEvaluation = false;
    double innerRadiusM = 0;
    std::optional<double> lastSpanEndM;
    double outlierPercent = 20;
    double timerPercent = 100;
    std::optional<double> wettedDiameterM;
    std::optional<long> evaluationChartId;
    long evaluationId = 0;
    // catalogue
    std::optional<std::string> brand;
    std::optional<std::string> model;
    std::string csvImportPath;
    // chart
    long chartId = 0;
    // serve
    std::string host = "127.0.0.1";
    int port = 8080;
    std::optional<std::string> database;
    std::optional<std::string> tokenFile;
    int requestTimeout = 10;
    int workers = 1;
};

}  // namespace caudalis::cli
