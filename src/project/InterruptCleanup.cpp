#include "caudalis/project/InterruptCleanup.hpp"

#include <signal.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cstddef>

namespace caudalis::project {
namespace {

constexpr std::array<int, 3> interrupts = {SIGINT, SIGTERM, SIGHUP};
constexpr std::size_t maxPaths = 4;

/// What the handler removes: pointers into the paths of the living `InterruptCleanup`, read
/// only by the handler (unlink is safe to call there).
std::array<std::atomic<const char*>, maxPaths> pathsToRemove{};
std::array<struct sigaction, interrupts.size()> previousActions{};

extern "C" void removeAndEnd(int signal) {
    for (auto& path : pathsToRemove) {
        if (const char* file = path.load()) {
            ::unlink(file);
        }
    }
    ::signal(signal, SIG_DFL);
    ::raise(signal);
}

}  // namespace

InterruptCleanup::InterruptCleanup(std::vector<std::string> paths) : paths_(std::move(paths)) {
    for (std::size_t i = 0; i < paths_.size() && i < maxPaths; ++i) {
        pathsToRemove[i].store(paths_[i].c_str());
    }
    struct sigaction action {};
    action.sa_handler = removeAndEnd;
    sigemptyset(&action.sa_mask);
    for (std::size_t i = 0; i < interrupts.size(); ++i) {
        sigaction(interrupts[i], &action, &previousActions[i]);
    }
}

InterruptCleanup::~InterruptCleanup() {
    for (std::size_t i = 0; i < interrupts.size(); ++i) {
        sigaction(interrupts[i], &previousActions[i], nullptr);
    }
    for (auto& path : pathsToRemove) {
        path.store(nullptr);
    }
}

}  // namespace caudalis::project
