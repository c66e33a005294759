// The `serve` command: checks where the app may listen and with which token, then hands over to
// the web server the program was built with.

#include <algorithm>
#include <cctype>

#include <CLI/CLI.hpp>

#include "CliErrors.hpp"
#include "CommandLine.hpp"
#include "CommandOptions.hpp"
#include "caudalis/project/TextFile.hpp"

namespace caudalis::cli {

namespace {

/// The shortest access token accepted: guessing one must be hopeless.
constexpr std::size_t shortestToken = 16;

bool isLoopback(const std::string& host) {
    return host == "localhost" || host == "::1" || host.rfind("127.", 0) == 0;
}

std::string tokenFrom(const std::string& path) {
    auto token = project::readTextFile(path, "token file");
    const auto blank = [](unsigned char c) { return std::isspace(c) != 0; };
    token.erase(std::find_if_not(token.rbegin(), token.rend(), blank).base(), token.end());
    token.erase(token.begin(), std::find_if_not(token.begin(), token.end(), blank));
    if (token.size() < shortestToken || std::any_of(token.begin(), token.end(), blank)) {
        throw InputError("token file " + path + " must hold one token of at least " +
                         std::to_string(shortestToken) + " characters without spaces");
    }
    return token;
}

}  // namespace

void CommandLine::defineServe(CLI::App& app) {
    auto& o = *options_;
    auto* serve = app.add_subcommand("serve", "serve the design office's app and its JSON API over HTTP");
    serve->add_option("--host", o.host, "address to listen on; any but a loopback one needs --token-file")
        ->capture_default_str();
    serve->add_option("--port", o.port, "port to listen on (0: any free port, named on stderr)")
        ->check(CLI::Range(0, 65535))
        ->capture_default_str();
    auto* project = serve->add_option("--project", o.projectPath,
                                      "project database: a file, or a PostgreSQL connection string");
    auto* catalogue = serve->add_option("--catalogue", o.cataloguePath,
                                        "catalogue database: a file, or a PostgreSQL connection string");
    serve
        ->add_option("--database", o.database,
                     "one PostgreSQL connection string holding both the project and the catalogue")
        ->excludes(project)
        ->excludes(catalogue);
    serve->add_option("--token-file", o.tokenFile,
                      "file holding the access token every request must carry (X-Caudalis-Token)");
    serve->add_option("--request-timeout", o.requestTimeout, "seconds a client may take to send a request")
        ->check(CLI::Range(1, 3600))
        ->capture_default_str();
    serve
        ->add_option("--workers", o.workers,
                     "processes that answer requests side by side (one a core: each computes one design "
                     "at a time)")
        ->check(CLI::Range(1, 64))
        ->capture_default_str();
}

void CommandLine::runServe() {
    const auto& o = *options_;
    ServeSettings settings{o.host,       o.port,           o.projectPath, o.cataloguePath,
                           std::nullopt, o.requestTimeout, o.workers};
    if (o.database) {
        settings.projectPath = *o.database;
        settings.cataloguePath = *o.database;
    }
    if (o.tokenFile) {
        settings.token = tokenFrom(*o.tokenFile);
    } else if (!isLoopback(o.host)) {
        throw UsageError("--host " + o.host +
                         " is not a loopback address: give --token-file FILE, whose token every request "
                         "must then carry");
    }
    if (!server_) {
        throw UsageError("this program was built without the web server");
    }
    server_(settings, err_);
}

}  // namespace caudalis::cli
