#pragma once

#include <optional>
#include <string>

namespace caudalis::cli {

/// What `caudalis serve` was asked for: where to listen, which databases the app works on and
/// the access token every request must carry (none on a loopback address without --token-file).
struct ServeSettings {
    std::string host = "127.0.0.1";
    /// 0 takes any free port; the server says which on the error stream.
    int port = 8080;
    std::string projectPath;
    std::string cataloguePath;
    std::optional<std::string> token;
    /// How long a client may take to send a request or read an answer, seconds.
    int timeoutSeconds = 10;
    /// Processes answering on the one listening socket; each has its own copy of the library.
    int workers = 1;
};

}  // namespace caudalis::cli
