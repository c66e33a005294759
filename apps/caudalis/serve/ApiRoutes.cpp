#include "ApiRoutes.hpp"

#include <httplib.h>

#include <fstream>
#include <functional>
#include <regex>
#include <sstream>

#include "AccessPolicy.hpp"
#include "CatalogueCache.hpp"
#include "CliErrors.hpp"
#include "CommandRunner.hpp"
#include "JsonAnswer.hpp"
#include "ScratchFolder.hpp"
#include "caudalis/fieldtests/EvaluationStore.hpp"
#include "caudalis/project/CatalogueDatabase.hpp"
#include "caudalis/report/JsonReport.hpp"

namespace caudalis::web {

namespace {

using Handler = void (ApiRoutes::*)(const httplib::Request&, httplib::Response&) const;

/// The HTTP status of a failed command: a wrong request, a missing record, or input the
/// command could not use.
int statusOf(int exitCode, const std::string& message) {
    if (exitCode == cli::ExitCode::Usage) {
        return 400;
    }
    return message.rfind("no ", 0) == 0 ? 404 : 422;
}

CommandOutcome runIn(const ScratchFolder& folder, const std::vector<std::string>& args) {
    auto outcome = CommandRunner::run(args);
    outcome.out = folder.withoutFolder(outcome.out);
    for (auto& note : outcome.notes) {
        note = folder.withoutFolder(note);
    }
    return outcome;
}

/// Raises the command's failure as the API's; a design whose findings hold an error (exit 4)
/// printed its whole result and is answered when `findingsAnswered`.
void requireSuccess(const CommandOutcome& outcome, bool findingsAnswered = false) {
    if (outcome.exitCode == cli::ExitCode::Ok ||
        (findingsAnswered && outcome.exitCode == cli::ExitCode::DesignFindings && !outcome.out.empty())) {
        return;
    }
    const auto message = outcome.message();
    throw ApiError(statusOf(outcome.exitCode, message), message);
}

/// Runs a read of the stores under the engine lock, turning its failures into the API's.
template <class Read>
auto reading(Read read) {
    try {
        const std::lock_guard guard(CommandRunner::engineLock());
        return read(CommandRunner::services());
    } catch (const cli::CliError& error) {
        throw ApiError(statusOf(error.code(), error.what()), error.what());
    }
}

std::string unitsOption(const httplib::Request& request) {
    if (!request.has_param("units")) {
        return {};
    }
    const auto units = request.get_param_value("units");
    if (units != "si" && units != "us") {
        throw ApiError(400, "units must be si or us, not " + units);
    }
    return "--units=" + units;
}

std::string stringField(const nlohmann::json& body, const char* name) {
    const auto field = body.find(name);
    if (field == body.end() || !field->is_string()) {
        throw ApiError(400, std::string(name) + ": a text is needed");
    }
    return field->get<std::string>();
}

/// The design file a request carries in `name`, as text.
std::string designField(const nlohmann::json& body, const char* name) {
    const auto field = body.find(name);
    if (field == body.end() || !field->is_object()) {
        throw ApiError(400, std::string(name) + ": a design file (a JSON object) is needed");
    }
    return field->dump(2);
}

/// A whole number the request gives for `name` (in the path, the query or the body).
std::string wholeNumber(const std::string& text, const char* name) {
    if (text.empty() || text.size() > 9 || text.find_first_not_of("0123456789") != std::string::npos) {
        throw ApiError(400, std::string(name) + " must be a whole number of at most 9 digits, not " + text);
    }
    return text;
}

std::string numberField(const nlohmann::json& body, const char* name) {
    const auto& field = body.at(name);
    if (!field.is_number()) {
        throw ApiError(400, std::string(name) + ": a number is needed");
    }
    return field.dump();
}

nlohmann::json parsedOutput(const CommandOutcome& outcome) {
    return nlohmann::json::parse(outcome.out);
}

void answerReport(httplib::Response& response, const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    std::ostringstream html;
    html << file.rdbuf();
    AccessPolicy::reportHeaders(response);
    response.set_content(html.str(), "text/html; charset=utf-8");
}

/// Answers every failure of a route as JSON: its own refusals, the commands' messages, and a
/// plain sentence for anything else (never a trace).
httplib::Server::Handler guarded(const ApiRoutes* routes, Handler handler) {
    return [routes, handler](const httplib::Request& request, httplib::Response& response) {
        try {
            (routes->*handler)(request, response);
        } catch (const ApiError& error) {
            JsonAnswer::error(response, error.status(), error.what());
        } catch (const nlohmann::json::exception& error) {
            JsonAnswer::error(response, 400, std::string("the request does not fit: ") + error.what());
        } catch (const std::exception& error) {
            JsonAnswer::error(response, 500, std::string("the server failed: ") + error.what());
        }
    };
}

}  // namespace

ApiRoutes::ApiRoutes(cli::ServeSettings settings) : settings_(std::move(settings)) {}

std::string ApiRoutes::projectOption() const {
    return "--project=" + settings_.projectPath;
}

std::string ApiRoutes::catalogueOption() const {
    return "--catalogue=" + settings_.cataloguePath;
}

void ApiRoutes::addTo(httplib::Server& server) const {
    server.Post("/api/design", guarded(this, &ApiRoutes::design));
    server.Post("/api/design/report", guarded(this, &ApiRoutes::designReport));
    server.Get("/api/charts", guarded(this, &ApiRoutes::listCharts));
    server.Post("/api/charts", guarded(this, &ApiRoutes::saveChart));
    server.Get(R"(/api/charts/([^/]+))", guarded(this, &ApiRoutes::showChart));
    server.Get(R"(/api/charts/([^/]+)/report)", guarded(this, &ApiRoutes::chartReport));
    server.Get(R"(/api/charts/([^/]+)/rebuilt)", guarded(this, &ApiRoutes::rebuildChart));
    server.Delete(R"(/api/charts/([^/]+))", guarded(this, &ApiRoutes::deleteChart));
    server.Post("/api/evaluate", guarded(this, &ApiRoutes::evaluate));
    server.Get("/api/evaluations", guarded(this, &ApiRoutes::listEvaluations));
    server.Get(R"(/api/evaluations/([^/]+))", guarded(this, &ApiRoutes::showEvaluation));
    server.Get("/api/catalogue/brands", guarded(this, &ApiRoutes::brands));
    server.Get("/api/catalogue/models", guarded(this, &ApiRoutes::models));
    server.Get("/api/catalogue/nozzles", guarded(this, &ApiRoutes::nozzles));
    server.Post("/api/catalogue/import", guarded(this, &ApiRoutes::importCatalogue));
}

std::vector<std::string> ApiRoutes::designArgs(const httplib::Request& request,
                                               const ScratchFolder& folder) const {
    std::vector<std::string> args{"design", folder.path("design.json"), catalogueOption()};
    const auto units = unitsOption(request);
    if (!units.empty()) {
        args.push_back(units);
    }
    return args;
}

void ApiRoutes::design(const httplib::Request& request, httplib::Response& response) const {
    const ScratchFolder folder;
    folder.write("design.json", request.body);
    auto args = designArgs(request, folder);
    args.emplace_back("--json");
    const auto outcome = runIn(folder, args);
    requireSuccess(outcome, true);
    JsonAnswer::text(response, outcome.out);
}

void ApiRoutes::designReport(const httplib::Request& request, httplib::Response& response) const {
    const ScratchFolder folder;
    folder.write("design.json", request.body);
    auto args = designArgs(request, folder);
    args.push_back("--report=" + folder.path("report.html"));
    requireSuccess(runIn(folder, args), true);
    answerReport(response, folder.path("report.html"));
}

void ApiRoutes::listCharts(const httplib::Request& request, httplib::Response& response) const {
    std::optional<Long> system;
    if (request.has_param("system")) {
        system = std::stol(wholeNumber(request.get_param_value("system"), "system"));
    }
    const auto charts = reading([&](const cli::Services& services) {
        return services.chartStore(settings_.projectPath, settings_.cataloguePath)->list(system);
    });
    auto list = nlohmann::json::array();
    for (const auto& chart : charts) {
        list.push_back({{"id", chart.info.id}, {"name", chart.info.nome}, {"system", chart.system}});
    }
    JsonAnswer::json(response, list);
}

void ApiRoutes::saveChart(const httplib::Request& request, httplib::Response& response) const {
    const auto body = JsonAnswer::body(request.body);
    const auto name = stringField(body, "name");
    const ScratchFolder folder;
    folder.write("design.json", designField(body, "design"));
    auto args = designArgs(request, folder);
    args.insert(args.end(), {"--json", "--save=" + name, projectOption()});
    if (body.contains("system")) {
        args.push_back("--system=" + numberField(body, "system"));
    }
    const auto outcome = runIn(folder, args);
    requireSuccess(outcome);
    static const std::regex stored(R"(stored in system (\d+) with id (\d+))");
    std::smatch match;
    const auto notes = outcome.message();
    if (!std::regex_search(notes, match, stored)) {
        throw ApiError(500, "the chart was stored but its key was not given: " + notes);
    }
    JsonAnswer::json(response,
                     {{"id", std::stol(match[2])},
                      {"name", name},
                      {"system", std::stol(match[1])},
                      {"result", parsedOutput(outcome)}},
                     201);
}

void ApiRoutes::showChart(const httplib::Request& request, httplib::Response& response) const {
    const auto id = std::stol(wholeNumber(request.matches[1], "chart id"));
    const auto loaded = reading([&](const cli::Services& services) {
        return services.chartStore(settings_.projectPath, settings_.cataloguePath)->find(id);
    });
    nlohmann::json chart{{"id", id}, {"system", loaded.system}, {"missing_nozzles", loaded.missingNozzles}};
    chart["design_file"] = loaded.figures && !loaded.figures->design.empty()
                               ? nlohmann::json::parse(loaded.figures->design)
                               : nlohmann::json();
    JsonAnswer::json(response, chart);
}

void ApiRoutes::chartReport(const httplib::Request& request, httplib::Response& response) const {
    const auto id = wholeNumber(request.matches[1], "chart id");
    const ScratchFolder folder;
    requireSuccess(runIn(folder, {"chart", projectOption(), catalogueOption(), "show", id,
                                  "--report=" + folder.path("report.html")}));
    answerReport(response, folder.path("report.html"));
}

void ApiRoutes::rebuildChart(const httplib::Request& request, httplib::Response& response) const {
    const auto id = std::stol(wholeNumber(request.matches[1], "chart id"));
    const auto units = unitsOption(request);
    const auto text = reading([&](const cli::Services& services) {
        const auto wetted = services.nozzleSource(settings_.cataloguePath)->wettedDiameters();
        const auto rebuilt =
            services.chartStore(settings_.projectPath, settings_.cataloguePath)->rebuild(id, wetted);
        const auto system = units.empty() ? rebuilt.result.design.units
                                          : *design::Units::parse(units.substr(units.find('=') + 1));
        std::ostringstream out;
        design::JsonReport::write(out, rebuilt.result, design::Units(system));
        return out.str();
    });
    JsonAnswer::text(response, text);
}

void ApiRoutes::deleteChart(const httplib::Request& request, httplib::Response& response) const {
    const auto id = wholeNumber(request.matches[1], "chart id");
    const ScratchFolder folder;
    const auto outcome = runIn(folder, {"chart", projectOption(), catalogueOption(), "delete", id});
    requireSuccess(outcome);
    JsonAnswer::json(response, {{"deleted", std::stol(id)}, {"message", outcome.message()}});
}

void ApiRoutes::evaluate(const httplib::Request& request, httplib::Response& response) const {
    const auto body = JsonAnswer::body(request.body);
    const ScratchFolder folder;
    std::vector<std::string> args{"evaluate", folder.write("readings.csv", stringField(body, "readings_csv")),
                                  "--json", projectOption(), catalogueOption()};
    if (body.contains("design")) {
        args.push_back("--design=" + folder.write("design.json", designField(body, "design")));
    }
    if (body.contains("chart")) {
        args.push_back("--chart=" + numberField(body, "chart"));
    }
    for (const auto& [field, option] :
         {std::pair{"timer_percent", "--timer="}, std::pair{"gauge_diameter_m", "--gauge-diameter="},
          std::pair{"wetted_diameter_m", "--wetted-diameter="}}) {
        if (body.contains(field)) {
            args.push_back(option + numberField(body, field));
        }
    }
    if (body.contains("name")) {
        args.push_back("--name=" + stringField(body, "name"));
    }
    if (body.value("save", false)) {
        args.emplace_back("--save");
    }
    const auto outcome = runIn(folder, args);
    requireSuccess(outcome);
    JsonAnswer::text(response, outcome.out);
}

void ApiRoutes::listEvaluations(const httplib::Request&, httplib::Response& response) const {
    const auto evaluations = reading(
        [&](const cli::Services&) { return fieldtests::EvaluationStore(settings_.projectPath).list(); });
    auto list = nlohmann::json::array();
    for (const auto& evaluation : evaluations) {
        list.push_back({{"id", evaluation.id},
                        {"name", evaluation.name},
                        {"cu_heermann_hein_percent", evaluation.cuHeermannHein.value_or(0)},
                        {"du_low_quarter_percent", evaluation.duLowQuarter.value_or(0)}});
        if (!evaluation.cuHeermannHein) {
            list.back()["cu_heermann_hein_percent"] = nullptr;
        }
        if (!evaluation.duLowQuarter) {
            list.back()["du_low_quarter_percent"] = nullptr;
        }
    }
    JsonAnswer::json(response, list);
}

void ApiRoutes::showEvaluation(const httplib::Request& request, httplib::Response& response) const {
    const ScratchFolder folder;
    const auto outcome = runIn(folder, {"evaluate", projectOption(), "show",
                                        wholeNumber(request.matches[1], "evaluation id"), "--json"});
    requireSuccess(outcome);
    JsonAnswer::text(response, outcome.out);
}

void ApiRoutes::brands(const httplib::Request&, httplib::Response& response) const {
    const auto brands = reading(
        [&](const cli::Services&) { return project::CatalogueDatabase(settings_.cataloguePath).brands(); });
    auto list = nlohmann::json::array();
    for (const auto& brand : brands) {
        list.push_back({{"id", brand.id}, {"name", brand.nome}});
    }
    JsonAnswer::json(response, list);
}

void ApiRoutes::models(const httplib::Request& request, httplib::Response& response) const {
    const auto brand = request.get_param_value("brand");
    const auto models = reading([&](const cli::Services&) {
        const project::CatalogueDatabase catalogue(settings_.cataloguePath);
        if (!brand.empty()) {
            catalogue.requireBrand(catalogue.brands(), brand);
        }
        return catalogue.models();
    });
    auto list = nlohmann::json::array();
    for (const auto& model : models) {
        if (brand.empty() || model.marca.nome == brand) {
            list.push_back({{"id", model.id}, {"name", model.nome}, {"brand", model.marca.nome}});
        }
    }
    JsonAnswer::json(response, list);
}

void ApiRoutes::nozzles(const httplib::Request& request, httplib::Response& response) const {
    std::vector<std::string> args{"catalogue", catalogueOption(), "list", "--json"};
    for (const char* name : {"brand", "model"}) {
        if (request.has_param(name)) {
            args.push_back(std::string("--") + name + "=" + request.get_param_value(name));
        }
    }
    const auto units = unitsOption(request);
    if (!units.empty()) {
        args.push_back(units);
    }
    const ScratchFolder folder;
    const auto outcome = runIn(folder, args);
    requireSuccess(outcome);
    JsonAnswer::text(response, outcome.out);
}

void ApiRoutes::importCatalogue(const httplib::Request& request, httplib::Response& response) const {
    const auto body = JsonAnswer::body(request.body);
    const ScratchFolder folder;
    std::vector<std::string> args{"catalogue", catalogueOption(), "import",
                                  folder.write("nozzles.csv", stringField(body, "csv"))};
    if (body.contains("units")) {
        const auto units = stringField(body, "units");
        if (units != "si" && units != "us") {
            throw ApiError(400, "units must be si or us, not " + units);
        }
        args.push_back("--units=" + units);
    }
    const auto outcome = runIn(folder, args);
    CatalogueCache::forget();
    requireSuccess(outcome);
    JsonAnswer::json(response,
                     {{"message", folder.withoutFolder(outcome.out.substr(0, outcome.out.find('\n')))}});
}

}  // namespace caudalis::web
