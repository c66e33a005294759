#include "HeadlessChromium.hpp"

#include <unistd.h>

#include <array>
#include <cstdio>
#include <filesystem>
#include <stdexcept>

namespace caudalis::testing {

HeadlessChromium::HeadlessChromium(std::vector<std::string> extraSwitches)
    : extraSwitches_(std::move(extraSwitches)) {}

std::string HeadlessChromium::quoted(const std::string& text) {
    std::string result = "'";
    for (const char c : text) {
        result += c == '\'' ? std::string("'\\''") : std::string(1, c);
    }
    return result + "'";
}

std::string HeadlessChromium::command(const std::string& switches, const std::string& htmlPath) const {
    std::string line = "timeout 90 chromium --headless=new --disable-gpu --no-first-run --hide-scrollbars";
    if (geteuid() == 0) {
        line += " --no-sandbox";
    }
    for (const auto& extra : extraSwitches_) {
        line += " " + quoted(extra);
    }
    const auto url = "file://" + std::filesystem::absolute(htmlPath).string();
    return line + " " + switches + " " + quoted(url) + " 2>/dev/null";
}

std::string HeadlessChromium::capture(const std::string& command, int& status) {
    FILE* pipe = popen(command.c_str(), "r");
    if (pipe == nullptr) {
        throw std::runtime_error("cannot run: " + command);
    }
    std::string output;
    std::array<char, 4096> buffer{};
    std::size_t read = 0;
    while ((read = fread(buffer.data(), 1, buffer.size(), pipe)) > 0) {
        output.append(buffer.data(), read);
    }
    const int raw = pclose(pipe);
    status = WIFEXITED(raw) ? WEXITSTATUS(raw) : -1;
    return output;
}

int HeadlessChromium::screenshot(const std::string& htmlPath, const std::string& pngPath, int width,
                                 int height) const {
    int status = 0;
    capture(command("--screenshot=" + quoted(pngPath) + " --window-size=" + std::to_string(width) + "," +
                        std::to_string(height),
                    htmlPath) +
                " >/dev/null",
            status);
    return status;
}

int HeadlessChromium::printToPdf(const std::string& htmlPath, const std::string& pdfPath) const {
    int status = 0;
    capture(command("--no-pdf-header-footer --print-to-pdf=" + quoted(pdfPath), htmlPath) + " >/dev/null",
            status);
    return status;
}

std::string HeadlessChromium::dumpDom(const std::string& htmlPath) const {
    int status = 0;
    return capture(command("--dump-dom", htmlPath), status);
}

}  // namespace caudalis::testing
