#include <iostream>

#include "CommandLine.hpp"
#include "WebServer.hpp"

int main(int argc, char** argv) {
    caudalis::cli::CommandLine commandLine(caudalis::cli::Services::databases(), std::cout, std::cerr);
    commandLine.serveWith(caudalis::web::WebServer::run);
    return commandLine.run(argc, argv);
}
