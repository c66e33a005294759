#pragma once

#include <string>
#include <vector>

namespace caudalis::testing {

/// Runs the installed Chromium without a window (see scripts/deps/test-browser.txt), each call
/// bounded by `timeout`. Runs as root add `--no-sandbox`, which Chromium needs there.
class HeadlessChromium {
public:
    /// Extra switches for every call, e.g. "--host-resolver-rules=MAP * ~NOTFOUND".
    explicit HeadlessChromium(std::vector<std::string> extraSwitches = {});

    /// Screenshot of the page at `width` x `height` CSS pixels; returns Chromium's exit status.
    int screenshot(const std::string& htmlPath, const std::string& pngPath, int width, int height) const;
    /// Prints the page to PDF without Chromium's own header and footer; returns the exit status.
    int printToPdf(const std::string& htmlPath, const std::string& pdfPath) const;
    /// The page's DOM after its scripts have run.
    std::string dumpDom(const std::string& htmlPath) const;

    /// The standard output of a shell command; `status` receives its exit status.
    static std::string capture(const std::string& command, int& status);
    /// A text quoted for the shell.
    static std::string quoted(const std::string& text);

private:
    std::string command(const std::string& switches, const std::string& htmlPath) const;

    std::vector<std::string> extraSwitches_;
};

}  // namespace caudalis::testing
