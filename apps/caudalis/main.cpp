#include <iostream>

#include "CommandLine.hpp"
#include "WebServer.hpp"

int main(int argc, char** argv) {
    auto services = caudalis::cli::Services::databases();
    services.serve = caudalis::web::WebServer::run;
    caudalis::cli::CommandLine commandLine(std::move(services), std::cout, std::cerr);
    return commandLine.run(argc, argv);
}
