#include "CommandRunner.hpp"

#include <sstream>
#include <string_view>

#include "CatalogueCache.hpp"

namespace caudalis::web {

namespace {

std::vector<std::string> notesOf(const std::string& text) {
    constexpr std::string_view prefix = "caudalis: ";
    std::vector<std::string> notes;
    std::istringstream lines(text);
    std::string line;
    while (std::getline(lines, line)) {
        if (line.rfind(prefix, 0) == 0) {
            line.erase(0, prefix.size());
        }
        if (!line.empty()) {
            notes.push_back(line);
        }
    }
    return notes;
}

}  // namespace

std::string CommandOutcome::message() const {
    std::string text;
    for (const auto& note : notes) {
        if (!text.empty()) {
            text += "; ";
        }
        text += note;
    }
    return text;
}

cli::Services CommandRunner::services() {
    auto services = cli::Services::databases();
    services.progressOnErrorStream = false;
    services.nozzleSource = CatalogueCache::source;
    return services;
}

std::mutex& CommandRunner::engineLock() {
    static std::mutex lock;
    return lock;
}

CommandOutcome CommandRunner::run(const std::vector<std::string>& args) {
    std::vector<const char*> argv{"caudalis"};
    for (const auto& arg : args) {
        argv.push_back(arg.c_str());
    }
    std::ostringstream out;
    std::ostringstream err;
    CommandOutcome outcome;
    {
        const std::lock_guard guard(engineLock());
        cli::CommandLine commandLine(services(), out, err);
        outcome.exitCode = commandLine.run(static_cast<int>(argv.size()), argv.data());
    }
    outcome.out = out.str();
    outcome.notes = notesOf(err.str());
    return outcome;
}

}  // namespace caudalis::web
