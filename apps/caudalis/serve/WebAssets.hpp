#pragma once

#include <optional>
#include <string>

namespace httplib {
class Server;
}

namespace caudalis::web {

namespace embedded {
/// One file of the app, built into the program (cmake/EmbedWebAssets.cmake).
struct AssetFile {
    const char* name;
    const char* const* pieces;
    unsigned pieceCount;
};
extern const AssetFile assetFiles[];
extern const unsigned assetFileCount;
}  // namespace embedded

/// A file of the app as served.
struct WebAsset {
    std::string contentType;
    std::string content;
};

/// The app's pages, script, style sheet and OpenAPI document, and Chart.js, all built into the
/// program: a request picks one by its fixed address, never a file of the server.
class WebAssets {
public:
    /// The asset served at `address` ("/", "/app.js", "/chart.js", "/api/openapi.json", ...).
    static std::optional<WebAsset> find(const std::string& address);
    /// Registers every asset's address with the server.
    static void addTo(httplib::Server& server);
};

}  // namespace caudalis::web
