#pragma once

#include <filesystem>
#include <string>

namespace caudalis::testing {

/// A PostgreSQL server of the tests' own: `initdb` and `pg_ctl` of Debian's postgresql
/// package in a fresh temporary folder, listening only on a free loopback port, started as the
/// unprivileged `postgres` user when the tests run as root (the server refuses root).
///
/// The server's whereabouts are kept in a small state file, so that one program can start it
/// and others use and stop it (ctest's fixtures do so). Failures raise `std::runtime_error`
/// with the reason, including the server's log.
class PostgresTestServer {
public:
    /// Starts a server and writes its state file; raises when it cannot start.
    static void start(const std::filesystem::path& stateFile);
    /// Stops the server named by the state file and removes its folder and the state file.
    static void stop(const std::filesystem::path& stateFile);
    /// Stops the server at once, as a power cut would leave it to the clients (`pg_ctl stop -m
    /// immediate`), keeping its folder; `resume` starts it again on the same port.
    static void halt(const std::filesystem::path& stateFile);
    static void resume(const std::filesystem::path& stateFile);
    /// The libpq key=value connection string of the server in the state file (no database
    /// named); raises with the reason when there is no running server.
    static std::string connection(const std::filesystem::path& stateFile);

    /// The server every test of this process uses: the one in the state file named by
    /// `$CAUDALIS_TEST_POSTGRESQL` (set by ctest), or else one started on first use and
    /// stopped when the process ends.
    static std::string sharedConnection();
};

}  // namespace caudalis::testing
