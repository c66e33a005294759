// The command line as a dealer runs it: one process a design, its start-up included.
#include <benchmark/benchmark.h>

#ifdef CAUDALIS_CLI_EXECUTABLE

#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>

#include <string>
#include <vector>

#include "PairedTiming.hpp"
#include "TemporaryFolder.hpp"

extern char** environ;

namespace {

/// CPU time (user and system) used so far by the finished children of this process, in
/// nanoseconds.
double childrenCpuNanoseconds() {
    rusage usage{};
    getrusage(RUSAGE_CHILDREN, &usage);
    const auto nanoseconds = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) * 1e9 + static_cast<double>(time.tv_usec) * 1e3;
    };
    return nanoseconds(usage.ru_utime) + nanoseconds(usage.ru_stime);
}

/// A folder of the temporary directory with a project made by `caudalis init`, removed
/// afterwards; runs the program in it.
class ProgramFolder {
public:
    ProgramFolder() : ok_(run({"init", "."})) {}

    bool ready() const noexcept { return ok_; }

    /// Runs `caudalis arguments` in the folder, its output thrown away; true when it succeeded.
    bool run(const std::vector<std::string>& arguments) const {
        std::vector<std::string> words{CAUDALIS_CLI_EXECUTABLE};
        words.insert(words.end(), arguments.begin(), arguments.end());
        std::vector<char*> argv;
        for (std::string& word : words) {
            argv.push_back(word.data());
        }
        argv.push_back(nullptr);
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_addchdir_np(&actions, folder_.path().c_str());
        posix_spawn_file_actions_addopen(&actions, 1, "/dev/null", O_WRONLY, 0);
        pid_t child = 0;
        const int spawned = posix_spawn(&child, argv[0], &actions, nullptr, argv.data(), environ);
        posix_spawn_file_actions_destroy(&actions);
        int status = 0;
        return spawned == 0 && waitpid(child, &status, 0) == child && WIFEXITED(status) &&
               WEXITSTATUS(status) == 0;
    }

private:
    caudalis::testing::TemporaryFolder folder_;
    bool ok_;
};

/// `caudalis design examples/designs/realistic.json` beside `caudalis --version`, the program's
/// start and end alone: the CPU time (user and system) of each process. `library_ns` is the
/// whole design run, `yardstick_ns` the start-up it cannot do without.
void BM_RealisticDesignCommandAgainstProgramStart(benchmark::State& state) {
    const ProgramFolder folder;
    const std::string example = std::string(CAUDALIS_SOURCE_DIR) + "/examples/designs/realistic.json";
    if (!folder.ready()) {
        state.SkipWithError("caudalis init failed");
        return;
    }
    caudalis::bench::PairedTiming timing;
    bool failed = false;
    for (auto _ : state) {
        timing.library([&] { failed = !folder.run({"design", example}) || failed; }, &childrenCpuNanoseconds);
        timing.yardstick([&] { failed = !folder.run({"--version"}) || failed; }, &childrenCpuNanoseconds);
        timing.addUnits(1);
    }
    if (failed) {
        state.SkipWithError("a run of the program failed");
    }
    timing.report(state);
}
BENCHMARK(BM_RealisticDesignCommandAgainstProgramStart)->Unit(benchmark::kMillisecond)->Iterations(20);

}  // namespace

#endif
