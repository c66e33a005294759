#include "PostgresTestServer.hpp"

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <pwd.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <vector>

extern char** environ;

namespace caudalis::testing {
namespace {

namespace fs = std::filesystem;

constexpr const char* serverUser = "postgres";
constexpr const char* databaseUser = "caudalis";
constexpr int startAttempts = 3;

std::string fileText(const fs::path& file) {
    std::ifstream input(file);
    std::ostringstream text;
    text << input.rdbuf();
    return text.str();
}

[[noreturn]] void fail(const std::string& what, const fs::path& log = {}) {
    std::string message = "the PostgreSQL test server: " + what;
    if (!log.empty()) {
        message += "\n--- " + log.string() + " ---\n" + fileText(log);
    }
    throw std::runtime_error(message);
}

/// Like `fail`, after removing the folder of a server that did not start.
[[noreturn]] void failAndRemove(const fs::path& folder, const std::string& what, const fs::path& log) {
    const std::string message = [&] {
        try {
            fail(what, log);
        } catch (const std::runtime_error& error) {
            return std::string(error.what());
        }
    }();
    std::error_code ignored;
    fs::remove_all(folder, ignored);
    throw std::runtime_error(message);
}

/// The folder of initdb and pg_ctl: $CAUDALIS_POSTGRESQL_BIN, or the newest of Debian's
/// /usr/lib/postgresql/<version>/bin.
fs::path serverPrograms() {
    if (const char* given = std::getenv("CAUDALIS_POSTGRESQL_BIN")) {
        return given;
    }
    fs::path newest;
    int newestVersion = 0;
    std::error_code error;
    for (const auto& entry : fs::directory_iterator("/usr/lib/postgresql", error)) {
        const int version = std::atoi(entry.path().filename().c_str());
        if (version > newestVersion && fs::exists(entry.path() / "bin" / "initdb")) {
            newestVersion = version;
            newest = entry.path() / "bin";
        }
    }
    if (newest.empty()) {
        fail(
            "no initdb under /usr/lib/postgresql (install Debian's postgresql package, "
            "scripts/deps/test-postgresql.txt)");
    }
    return newest;
}

bool runningAsRoot() {
    return ::geteuid() == 0;
}

/// Runs a server program (as the server's user when we are root), its output into `log`;
/// the exit status.
int runProgram(const std::string& program, std::vector<std::string> arguments, const fs::path& log) {
    std::vector<std::string> command;
    if (runningAsRoot()) {
        command = {"/usr/sbin/runuser", "-u", serverUser, "--"};
    }
    command.push_back((serverPrograms() / program).string());
    command.insert(command.end(), arguments.begin(), arguments.end());
    std::vector<char*> argv;
    for (auto& part : command) {
        argv.push_back(part.data());
    }
    argv.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, log.c_str(), O_WRONLY | O_CREAT | O_APPEND,
                                     0644);
    posix_spawn_file_actions_adddup2(&actions, STDOUT_FILENO, STDERR_FILENO);
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    pid_t child = 0;
    const int spawned = posix_spawn(&child, argv[0], &actions, nullptr, argv.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    if (spawned != 0) {
        std::ofstream(log, std::ios::app)
            << "cannot run " << command.front() << ": " << std::strerror(spawned) << '\n';
        return -1;
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

/// A port on the loopback address that nothing listens on just now.
int freeLoopbackPort() {
    const int probe = ::socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    ::bind(probe, reinterpret_cast<sockaddr*>(&address), sizeof address);
    ::getsockname(probe, reinterpret_cast<sockaddr*>(&address), &size);
    ::close(probe);
    return ntohs(address.sin_port);
}

/// A fresh folder that the server's user owns.
fs::path serverFolder() {
    std::string pattern = (fs::temp_directory_path() / "caudalis-postgresql-XXXXXX").string();
    if (::mkdtemp(pattern.data()) == nullptr) {
        fail("cannot create a temporary folder: " + std::string(std::strerror(errno)));
    }
    if (runningAsRoot()) {
        const passwd* user = ::getpwnam(serverUser);
        if (user == nullptr || ::chown(pattern.c_str(), user->pw_uid, user->pw_gid) != 0) {
            fail("cannot hand the folder " + pattern + " to the user " + serverUser +
                 " (the server refuses to run as root)");
        }
    }
    return pattern;
}

struct ServerState {
    fs::path folder;
    int port = 0;
};

ServerState readState(const fs::path& stateFile) {
    std::ifstream input(stateFile);
    ServerState state;
    std::string folder;
    if (!std::getline(input, folder) || !(input >> state.port)) {
        fail("no server is running: " + stateFile.string() +
             " is missing or incomplete (its start failed, or it was not started)");
    }
    state.folder = folder;
    return state;
}

bool startOnPort(const fs::path& folder, int port) {
    const std::string options = "-p " + std::to_string(port) + " -k " + folder.string() +
                                " -c listen_addresses=127.0.0.1 -c fsync=off -c synchronous_commit=off"
                                " -c full_page_writes=off -c max_connections=50";
    return runProgram("pg_ctl",
                      {"-D", (folder / "data").string(), "-l", (folder / "server.log").string(), "-w", "-t",
                       "60", "-o", options, "start"},
                      folder / "pg_ctl.log") == 0;
}

std::string connectionTo(int port) {
    return std::string("host=127.0.0.1 port=") + std::to_string(port) + " user=" + databaseUser;
}

/// The server this process started for itself, stopped when the process ends.
class OwnServer {
public:
    OwnServer()
        : stateFile_(fs::temp_directory_path() / ("caudalis-postgresql-" + std::to_string(::getpid()))) {
        PostgresTestServer::start(stateFile_);
    }
    ~OwnServer() {
        try {
            PostgresTestServer::stop(stateFile_);
        } catch (...) {
            // The process is ending; nothing more can be done about a server that will not stop.
        }
    }
    OwnServer(const OwnServer&) = delete;
    OwnServer& operator=(const OwnServer&) = delete;

    const fs::path& stateFile() const noexcept { return stateFile_; }

private:
    fs::path stateFile_;
};

}  // namespace

void PostgresTestServer::start(const fs::path& stateFile) {
    const fs::path folder = serverFolder();
    if (runProgram("initdb",
                   {"-D", (folder / "data").string(), "-A", "trust", "-U", databaseUser, "-E", "UTF8",
                    "--locale=C", "--no-sync"},
                   folder / "initdb.log") != 0) {
        failAndRemove(folder, "initdb failed", folder / "initdb.log");
    }
    for (int attempt = 1; attempt <= startAttempts; ++attempt) {
        const int port = freeLoopbackPort();
        if (startOnPort(folder, port)) {
            std::ofstream(stateFile) << folder.string() << '\n' << port << '\n';
            return;
        }
    }
    failAndRemove(folder, "pg_ctl could not start the server in " + folder.string(), folder / "server.log");
}

void PostgresTestServer::stop(const fs::path& stateFile) {
    const ServerState state = readState(stateFile);
    const int status =
        runProgram("pg_ctl", {"-D", (state.folder / "data").string(), "-m", "immediate", "stop"},
                   state.folder / "pg_ctl.log");
    std::error_code ignored;
    fs::remove_all(state.folder, ignored);
    fs::remove(stateFile, ignored);
    if (status != 0) {
        fail("pg_ctl stop failed with status " + std::to_string(status));
    }
}

void PostgresTestServer::halt(const fs::path& stateFile) {
    const ServerState state = readState(stateFile);
    if (runProgram("pg_ctl", {"-D", (state.folder / "data").string(), "-m", "immediate", "stop"},
                   state.folder / "pg_ctl.log") != 0) {
        fail("pg_ctl stop failed", state.folder / "pg_ctl.log");
    }
}

void PostgresTestServer::resume(const fs::path& stateFile) {
    const ServerState state = readState(stateFile);
    if (!startOnPort(state.folder, state.port)) {
        fail("pg_ctl could not start the server again in " + state.folder.string(),
             state.folder / "server.log");
    }
}

std::string PostgresTestServer::connection(const fs::path& stateFile) {
    return connectionTo(readState(stateFile).port);
}

std::string PostgresTestServer::sharedConnection() {
    if (const char* stateFile = std::getenv("CAUDALIS_TEST_POSTGRESQL")) {
        return connection(stateFile);
    }
    static const OwnServer server;
    return connection(server.stateFile());
}

}  // namespace caudalis::testing
