// Starts or stops the tests' throwaway PostgreSQL server; ctest runs it as the fixture that
// the persistence tests require.
#include <exception>
#include <iostream>
#include <string_view>

#include "PostgresTestServer.hpp"

int main(int argc, char** argv) {
    if (argc != 3 || (std::string_view(argv[1]) != "start" && std::string_view(argv[1]) != "stop")) {
        std::cerr << "usage: postgresql_test_server start|stop STATE-FILE\n";
        return 2;
    }
    try {
        if (std::string_view(argv[1]) == "start") {
            caudalis::testing::PostgresTestServer::start(argv[2]);
            std::cout << "started: " << caudalis::testing::PostgresTestServer::connection(argv[2]) << '\n';
        } else {
            caudalis::testing::PostgresTestServer::stop(argv[2]);
        }
        return 0;
    } catch (const std::exception& error) {
        std::cerr << error.what() << '\n';
        return 1;
    }
}
