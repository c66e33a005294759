#include "caudalis/report/StoredFigureText.hpp"

#include <map>

#include <fmt/format.h>

#include "caudalis/report/EvaluationPrintout.hpp"

namespace caudalis::fieldtests {

namespace {

const std::map<std::string, std::pair<std::string, int>>& settingLabels() {
    static const std::map<std::string, std::pair<std::string, int>> labels{
        {"amounts", {"Amounts read as", 0}},
        {"inner_radius_m", {"Inner radius left out (m)", 1}},
        {"last_span_end_m", {"Last span ends at (m)", 1}},
        {"expected_depth_mm", {"Expected depth (mm)", 2}},
        {"applied_percent_of_expected", {"Mean depth / expected (%)", 1}},
        {"outlier_percent", {"Outlier limit, off the mean (%)", 0}},
    };
    return labels;
}

}  // namespace

std::string StoredFigureText::scopeLabel(const std::string& scope) {
    if (scope == "together") {
        return "Both lines together";
    }
    if (scope == "lines") {
        return "Lines' mean";
    }
    if (scope == "end gun") {
        return "End-gun zone";
    }
    if (scope == "settings") {
        return "Settings";
    }
    if (scope == "crew") {
        return "Struck out by the crew";
    }
    if (scope.rfind("line ", 0) == 0) {
        return "Line " + scope.substr(5);
    }
    return scope;
}

std::optional<std::pair<std::string, int>> StoredFigureText::knownLabel(const std::string& figure) {
    for (const auto& label : design::EvaluationPrintout::figureLabels()) {
        if (figure == label.name) {
            return std::make_pair(label.heading(design::UnitText(design::Units())), label.decimals);
        }
    }
    const auto& settings = settingLabels();
    const auto found = settings.find(figure);
    if (found != settings.end()) {
        return found->second;
    }
    return std::nullopt;
}

std::pair<std::string, std::string> StoredFigureText::labelled(const design::StoredFigure& figure) {
    if (figure.scope == "crew") {
        const auto colon = figure.figure.rfind(':');
        const auto label = colon == std::string::npos ? figure.figure
                                                      : "Line " + figure.figure.substr(0, colon) +
                                                            ", reading " + figure.figure.substr(colon + 1);
        return {label, figure.note};
    }
    if (figure.figure.rfind("line ", 0) == 0 && figure.figure.size() > 5) {
        return {"Line " + figure.figure.substr(5), figure.note};
    }
    const auto known = knownLabel(figure.figure);
    const auto label = known ? known->first : figure.figure;
    if (!figure.value) {
        return {label, figure.note.empty() ? "n/a" : figure.note};
    }
    return {label, design::EvaluationPrintout::figureText(figure.value, known ? known->second : 4)};
}

std::vector<std::string> StoredFigureText::lineNames(const std::vector<design::StoredFigure>& figures) {
    std::vector<std::string> names;
    for (const auto& figure : figures) {
        if (figure.scope == "settings" && figure.figure.rfind("line ", 0) == 0) {
            names.push_back(figure.note);
        }
    }
    return names;
}

}  // namespace caudalis::fieldtests
