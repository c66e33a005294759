#pragma once

#include <string>
#include <vector>

namespace caudalis::project {

/// While an object of this class lives, an interrupt (SIGINT, SIGTERM or SIGHUP: Ctrl-C, a
/// kill, a closed terminal) first removes the given files, then ends the program as the signal
/// would have. For the scratch files of a command, which must not outlive it. One at a time.
class InterruptCleanup {
public:
    explicit InterruptCleanup(std::vector<std::string> paths);
    ~InterruptCleanup();
    InterruptCleanup(const InterruptCleanup&) = delete;
    InterruptCleanup& operator=(const InterruptCleanup&) = delete;

private:
    std::vector<std::string> paths_;
};

}  // namespace caudalis::project
