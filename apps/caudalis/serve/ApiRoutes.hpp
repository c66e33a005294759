#pragma once

#include <string>
#include <vector>

#include "ServeSettings.hpp"

namespace httplib {
class Server;
struct Request;
struct Response;
}  // namespace httplib

namespace caudalis::web {

class ScratchFolder;
struct CommandOutcome;

/// The JSON API under /api: each route hands its request to the command the command line runs
/// for it (design, chart, evaluate, catalogue), on the databases the server was started with,
/// and answers with what the command printed; lists the command line prints only as text are
/// read from the same stores. See the OpenAPI document at /api/openapi.json.
class ApiRoutes {
public:
    explicit ApiRoutes(cli::ServeSettings settings);
    void addTo(httplib::Server& server) const;

private:
    void design(const httplib::Request& request, httplib::Response& response) const;
    void designReport(const httplib::Request& request, httplib::Response& response) const;
    void listCharts(const httplib::Request& request, httplib::Response& response) const;
    void saveChart(const httplib::Request& request, httplib::Response& response) const;
    void showChart(const httplib::Request& request, httplib::Response& response) const;
    void chartReport(const httplib::Request& request, httplib::Response& response) const;
    void rebuildChart(const httplib::Request& request, httplib::Response& response) const;
    void deleteChart(const httplib::Request& request, httplib::Response& response) const;
    void evaluate(const httplib::Request& request, httplib::Response& response) const;
    void listEvaluations(const httplib::Request& request, httplib::Response& response) const;
    void showEvaluation(const httplib::Request& request, httplib::Response& response) const;
    void brands(const httplib::Request& request, httplib::Response& response) const;
    void models(const httplib::Request& request, httplib::Response& response) const;
    void nozzles(const httplib::Request& request, httplib::Response& response) const;
    void importCatalogue(const httplib::Request& request, httplib::Response& response) const;

    /// The command's arguments for the design in `folder`'s design.json, in the request's units.
    std::vector<std::string> designArgs(const httplib::Request& request, const ScratchFolder& folder) const;
    std::string projectOption() const;
    std::string catalogueOption() const;

    cli::ServeSettings settings_;
};

}  // namespace caudalis::web
