#include "WebServer.hpp"

#include <httplib.h>
#include <signal.h>
#include <sys/prctl.h>
#include <unistd.h>

#include "AccessPolicy.hpp"
#include "ApiRoutes.hpp"
#include "CliErrors.hpp"
#include "JsonAnswer.hpp"
#include "WebAssets.hpp"

namespace caudalis::web {

namespace {

/// Answers with JSON what the server itself refused (an unknown address, a body too large)
/// when no route wrote an answer.
void explainStatus(const httplib::Request& request, httplib::Response& response) {
    if (!response.body.empty()) {
        return;
    }
    AccessPolicy::secureHeaders(response);
    if (response.status == 404) {
        JsonAnswer::error(response, 404, "nothing is served at " + request.path);
    } else if (response.status == 413) {
        JsonAnswer::error(
            response, 413,
            "the request body is larger than " + std::to_string(WebServer::maxBodyBytes) + " bytes");
    } else {
        JsonAnswer::error(response, response.status,
                          "the request was refused (HTTP status " + std::to_string(response.status) + ")");
    }
}

/// Forks the other workers, which accept on the socket already bound and end with this process;
/// true in this process, false in a worker.
bool startWorkers(int workers) {
    for (int i = 1; i < workers; ++i) {
        const pid_t parent = ::getpid();
        const pid_t child = ::fork();
        if (child < 0) {
            throw cli::InputError("cannot start the web server's worker processes");
        }
        if (child == 0) {
            ::prctl(PR_SET_PDEATHSIG, SIGTERM);
            if (::getppid() != parent) {
                ::_exit(0);
            }
            return false;
        }
    }
    return true;
}

}  // namespace

void WebServer::run(const cli::ServeSettings& settings, std::ostream& err) {
    httplib::Server server;
    server.set_payload_max_length(maxBodyBytes);
    server.set_read_timeout(settings.timeoutSeconds, 0);
    server.set_write_timeout(settings.timeoutSeconds, 0);
    server.set_keep_alive_timeout(settings.timeoutSeconds);
    const int port = settings.port == 0
                         ? server.bind_to_any_port(settings.host)
                         : (server.bind_to_port(settings.host, settings.port) ? settings.port : -1);
    if (port < 0) {
        throw cli::InputError("cannot listen on " + settings.host + " port " + std::to_string(settings.port));
    }
    const AccessPolicy policy(settings.host, port, settings.token);
    server.set_pre_routing_handler([&policy](const httplib::Request& request, httplib::Response& response) {
        return policy.admit(request, response) ? httplib::Server::HandlerResponse::Unhandled
                                               : httplib::Server::HandlerResponse::Handled;
    });
    server.set_error_handler(explainStatus);
    server.Get("/api/session", [&policy](const httplib::Request&, httplib::Response& response) {
        JsonAnswer::json(response, {{"token", policy.sessionToken()}});
    });
    WebAssets::addTo(server);
    const ApiRoutes routes(settings);
    routes.addTo(server);
    if (startWorkers(settings.workers)) {
        const bool bracketed = settings.host.find(':') != std::string::npos;
        err << "caudalis: serving http://" << (bracketed ? "[" : "") << settings.host
            << (bracketed ? "]" : "") << ':' << port << "/ (stop with Ctrl+C)" << std::endl;
    }
    if (!server.listen_after_bind()) {
        throw cli::InputError("the web server stopped: cannot accept connections");
    }
}

}  // namespace caudalis::web
