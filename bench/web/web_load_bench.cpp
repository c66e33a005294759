// Load on `caudalis serve`: 8 clients design the realistic example against one server (SQLite),
// and against two servers sharing one PostgreSQL database while saving charts, for a bounded
// time on loopback. The yardstick, measured in the same run: what the cores would do running
// the same design command in process without HTTP (cores / CPU time of one design).
#include <benchmark/benchmark.h>
#include <httplib.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <map>
#include <mutex>
#include <regex>
#include <sstream>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include <nlohmann/json.hpp>

#include "CommandRunner.hpp"
#include "PostgresTestServer.hpp"

namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

constexpr int clients = 8;
/// A client saves a chart every this many designs.
constexpr int designsPerSave = 10;
/// The bound on each client's requests, whatever the time allows.
constexpr long maxRequestsPerClient = 100000;

/// Seconds each load runs: $CAUDALIS_LOAD_SECONDS (the published figures use 30), else 3.
double loadSeconds() {
    const char* given = std::getenv("CAUDALIS_LOAD_SECONDS");
    return given ? std::max(1.0, std::atof(given)) : 3.0;
}

std::string readFile(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

const fs::path realisticDesign = fs::path(CAUDALIS_SOURCE_DIR) / "examples/designs/realistic.json";

double processCpuSeconds() {
    timespec now{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

/// Runs the program and waits for it; raises when it fails.
void runProgram(const std::vector<std::string>& args) {
    std::vector<char*> argv;
    for (const auto& arg : args) {
        argv.push_back(const_cast<char*>(arg.c_str()));
    }
    argv.push_back(nullptr);
    pid_t pid = 0;
    if (posix_spawn(&pid, argv[0], nullptr, nullptr, argv.data(), environ) != 0) {
        throw std::runtime_error("cannot run " + args.front());
    }
    int status = 0;
    waitpid(pid, &status, 0);
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) {
        throw std::runtime_error("failed: " + args[1]);
    }
}

/// A `caudalis serve` process on a free loopback port, stopped when this ends.
class ServeProcess {
public:
    explicit ServeProcess(const std::vector<std::string>& options) {
        std::vector<std::string> args{CAUDALIS_EXECUTABLE, "serve", "--port", "0"};
        args.insert(args.end(), options.begin(), options.end());
        std::vector<char*> argv;
        for (auto& arg : args) {
            argv.push_back(arg.data());
        }
        argv.push_back(nullptr);
        int fds[2];
        if (pipe(fds) != 0) {
            throw std::runtime_error("cannot make a pipe");
        }
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_adddup2(&actions, fds[1], STDERR_FILENO);
        posix_spawn_file_actions_addclose(&actions, fds[0]);
        const int failed = posix_spawn(&pid_, argv[0], &actions, nullptr, argv.data(), environ);
        posix_spawn_file_actions_destroy(&actions);
        close(fds[1]);
        if (failed != 0) {
            close(fds[0]);
            throw std::runtime_error("cannot start caudalis serve");
        }
        std::string line;
        char c = 0;
        while (read(fds[0], &c, 1) == 1 && c != '\n') {
            line += c;
        }
        close(fds[0]);
        std::smatch match;
        if (!std::regex_search(line, match, std::regex(R"(:(\d+)/)"))) {
            throw std::runtime_error("caudalis serve did not start: " + line);
        }
        port_ = std::stoi(match[1]);
    }
    ~ServeProcess() {
        kill(pid_, SIGTERM);
        int status = 0;
        waitpid(pid_, &status, 0);
    }
    ServeProcess(const ServeProcess&) = delete;
    ServeProcess& operator=(const ServeProcess&) = delete;
    int port() const noexcept { return port_; }

private:
    pid_t pid_ = 0;
    int port_ = 0;
};

/// The sample databases `caudalis init` makes in a fresh folder.
struct SampleFolder {
    SampleFolder() : folder(fs::temp_directory_path() / ("caudalis-load-" + std::to_string(getpid()))) {
        fs::remove_all(folder);
        runProgram({CAUDALIS_EXECUTABLE, "init", folder.string()});
    }
    ~SampleFolder() { fs::remove_all(folder); }
    std::vector<std::string> options() const {
        return {"--project", (folder / "project.db").string(), "--catalogue",
                (folder / "catalogue.db").string()};
    }
    fs::path folder;
};

struct LoadFigures {
    std::vector<double> latenciesMs;
    long errors = 0;
    /// The chart names offered to every server.
    std::vector<std::string> saved;
};

/// A client that waits as long as a loaded server may take.
httplib::Client clientOf(int port) {
    httplib::Client client("127.0.0.1", port);
    client.set_read_timeout(120, 0);
    client.set_write_timeout(120, 0);
    return client;
}

httplib::Headers sessionHeaders(int port) {
    auto client = clientOf(port);
    const auto session = client.Get("/api/session");
    if (!session || session->status != 200) {
        throw std::runtime_error("no session token");
    }
    return {{"X-Caudalis-Token", nlohmann::json::parse(session->body).at("token").get<std::string>()}};
}

/// One name offered to every server: exactly one may store it.
void saveEverywhere(std::vector<httplib::Client>& servers, const std::vector<httplib::Headers>& headers,
                    const std::string& name, const std::string& design, LoadFigures& figures) {
    const auto body = std::string("{\"name\": \"")
                          .append(name)
                          .append("\", \"system\": 77, \"design\": ")
                          .append(design)
                          .append("}");
    for (std::size_t s = 0; s < servers.size(); ++s) {
        servers[s].Post("/api/charts", headers[s], body, "application/json");
    }
    figures.saved.push_back(name);
}

/// `clients` clients, each on server (client mod servers), designing for `seconds`.
LoadFigures runLoad(const std::vector<int>& ports, double seconds, bool saving) {
    const auto design = readFile(realisticDesign);
    std::vector<httplib::Headers> headers;
    for (const int port : ports) {
        headers.push_back(sessionHeaders(port));
    }
    const auto deadline = Clock::now() + std::chrono::duration<double>(seconds);
    std::mutex lock;
    LoadFigures total;
    std::vector<std::thread> threads;
    for (int c = 0; c < clients; ++c) {
        threads.emplace_back([&, c] {
            std::vector<httplib::Client> servers;
            for (const int port : ports) {
                servers.push_back(clientOf(port));
            }
            const auto own = static_cast<std::size_t>(c) % ports.size();
            LoadFigures figures;
            for (long i = 0; i < maxRequestsPerClient && Clock::now() < deadline; ++i) {
                const auto start = Clock::now();
                const auto answer =
                    servers[own].Post("/api/design", headers[own], design, "application/json");
                figures.latenciesMs.push_back(
                    std::chrono::duration<double, std::milli>(Clock::now() - start).count());
                figures.errors += answer && answer->status == 200 ? 0 : 1;
                if (saving && i % designsPerSave == 0) {
                    saveEverywhere(servers, headers, "load " + std::to_string(c) + "-" + std::to_string(i),
                                   design, figures);
                }
            }
            const std::lock_guard guard(lock);
            total.latenciesMs.insert(total.latenciesMs.end(), figures.latenciesMs.begin(),
                                     figures.latenciesMs.end());
            total.errors += figures.errors;
            total.saved.insert(total.saved.end(), figures.saved.begin(), figures.saved.end());
        });
    }
    for (auto& thread : threads) {
        thread.join();
    }
    return total;
}

double percentile(std::vector<double> values, double fraction) {
    if (values.empty()) {
        return 0;
    }
    std::sort(values.begin(), values.end());
    return values[static_cast<std::size_t>(fraction * static_cast<double>(values.size() - 1))];
}

/// Designs a second the cores would do running the design command in process: cores / CPU
/// seconds of one design (the yardstick).
double yardstickDesignsPerSecond(const std::vector<std::string>& catalogueOptions) {
    constexpr int designs = 20;
    std::vector<std::string> args{"design", realisticDesign.string(), "--json"};
    args.insert(args.end(), catalogueOptions.begin(), catalogueOptions.end());
    caudalis::web::CommandRunner::run(args);
    const double start = processCpuSeconds();
    for (int i = 0; i < designs; ++i) {
        if (caudalis::web::CommandRunner::run(args).exitCode != 0) {
            throw std::runtime_error("the yardstick design failed");
        }
    }
    const double cpuPerDesign = (processCpuSeconds() - start) / designs;
    return static_cast<double>(std::max(1U, std::thread::hardware_concurrency())) / cpuPerDesign;
}

/// How many times each name of the load's system is stored.
std::map<std::string, int> chartsOfLoad(int port) {
    auto client = clientOf(port);
    const auto answer = client.Get("/api/charts?system=77");
    if (!answer || answer->status != 200) {
        throw std::runtime_error("cannot list the stored charts");
    }
    std::map<std::string, int> names;
    for (const auto& chart : nlohmann::json::parse(answer->body)) {
        ++names[chart.at("name").get<std::string>()];
    }
    return names;
}

void report(benchmark::State& state, const LoadFigures& figures, double seconds, double yardstick, int port) {
    const auto stored = chartsOfLoad(port);
    long lost = 0;
    long duplicated = 0;
    for (const auto& name : figures.saved) {
        const auto found = stored.find(name);
        lost += found == stored.end() ? 1 : 0;
        duplicated += found != stored.end() && found->second > 1 ? 1 : 0;
    }
    const double designs = static_cast<double>(figures.latenciesMs.size());
    state.counters["designs_per_s"] = designs / seconds;
    state.counters["yardstick_designs_per_s"] = yardstick;
    state.counters["ratio"] = designs / seconds / yardstick;
    state.counters["p50_ms"] = percentile(figures.latenciesMs, 0.50);
    state.counters["p99_ms"] = percentile(figures.latenciesMs, 0.99);
    state.counters["errors"] = static_cast<double>(figures.errors);
    state.counters["saves"] = static_cast<double>(figures.saved.size());
    state.counters["saves_lost"] = static_cast<double>(lost);
    state.counters["saves_duplicated"] = static_cast<double>(duplicated);
}

void BM_ServeOneServerSqlite(benchmark::State& state) {
    const SampleFolder sample;
    const double yardstick = yardstickDesignsPerSecond({"--catalogue", sample.options()[3]});
    auto options = sample.options();
    options.insert(options.end(),
                   {"--workers", std::to_string(std::max(1U, std::thread::hardware_concurrency()))});
    const ServeProcess server(options);
    const double seconds = loadSeconds();
    for (auto _ : state) {
        const auto figures = runLoad({server.port()}, seconds, true);
        report(state, figures, seconds, yardstick, server.port());
    }
}

void BM_ServeTwoServersOnePostgresql(benchmark::State& state) {
    const auto connection = caudalis::testing::PostgresTestServer::sharedConnection();
    const auto portAt = connection.find("port=") + 5;
    const auto uri = std::string("postgresql://caudalis@127.0.0.1:")
                         .append(connection.substr(portAt, connection.find(' ', portAt) - portAt))
                         .append("/postgres?schema=");
    const auto suffix = std::to_string(getpid());
    const std::vector<std::string> options{"--project", uri + "load_project_" + suffix, "--catalogue",
                                           uri + "load_catalogue_" + suffix};
    runProgram({CAUDALIS_EXECUTABLE, "init", options[0], options[1], options[2], options[3]});
    const double yardstick = yardstickDesignsPerSecond({options[2], options[3]});
    const ServeProcess first(options);
    const ServeProcess second(options);
    const double seconds = loadSeconds();
    for (auto _ : state) {
        const auto figures = runLoad({first.port(), second.port()}, seconds, true);
        report(state, figures, seconds, yardstick, second.port());
    }
}

}  // namespace

BENCHMARK(BM_ServeOneServerSqlite)->Iterations(1)->UseRealTime()->Unit(benchmark::kSecond);
BENCHMARK(BM_ServeTwoServersOnePostgresql)->Iterations(1)->UseRealTime()->Unit(benchmark::kSecond);
