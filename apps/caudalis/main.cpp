#include <iostream>

#include "CommandLine.hpp"

int main(int argc, char** argv) {
    caudalis::cli::CommandLine commandLine(caudalis::cli::Services::databases(), std::cout, std::cerr);
    return commandLine.run(argc, argv);
}
