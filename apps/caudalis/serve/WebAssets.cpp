#include "WebAssets.hpp"

#include <httplib.h>

#include <string_view>

#include "caudalis/report/ChartJsLibrary.hpp"

namespace caudalis::web {

namespace {

/// The address each built-in file is served at.
struct Address {
    const char* address;
    const char* file;
    const char* contentType;
};

constexpr Address addresses[] = {
    {"/", "index.html", "text/html; charset=utf-8"},
    {"/app.js", "app.js", "text/javascript; charset=utf-8"},
    {"/app.css", "app.css", "text/css; charset=utf-8"},
    {"/api/openapi.json", "openapi.json", "application/json"},
};

std::optional<std::string> fileContent(std::string_view name) {
    for (unsigned i = 0; i < embedded::assetFileCount; ++i) {
        const auto& file = embedded::assetFiles[i];
        if (name == file.name) {
            std::string content;
            for (unsigned piece = 0; piece < file.pieceCount; ++piece) {
                content += file.pieces[piece];
            }
            return content;
        }
    }
    return std::nullopt;
}

}  // namespace

std::optional<WebAsset> WebAssets::find(const std::string& address) {
    if (address == "/chart.js") {
        return WebAsset{"text/javascript; charset=utf-8", design::ChartJsLibrary::source()};
    }
    for (const auto& entry : addresses) {
        if (address == entry.address) {
            if (auto content = fileContent(entry.file)) {
                return WebAsset{entry.contentType, std::move(*content)};
            }
        }
    }
    return std::nullopt;
}

void WebAssets::addTo(httplib::Server& server) {
    std::vector<std::string> served{"/chart.js"};
    for (const auto& entry : addresses) {
        served.emplace_back(entry.address);
    }
    for (const auto& address : served) {
        std::string pattern;
        for (const char c : address) {
            if (c == '.') {
                pattern.push_back('\\');
            }
            pattern.push_back(c);
        }
        server.Get(pattern, [asset = *find(address)](const httplib::Request&, httplib::Response& response) {
            response.set_content(asset.content, asset.contentType);
        });
    }
}

}  // namespace caudalis::web
