#pragma once

#include <ostream>

#include "ServeSettings.hpp"

namespace caudalis::web {

/// `caudalis serve`: the app and its JSON API on one HTTP server, with bounded requests (body
/// size; read and write times, --request-timeout) answered concurrently by a pool of threads.
class WebServer {
public:
    /// The largest request body accepted (a design file, a crew's readings, a catalogue), bytes.
    static constexpr std::size_t maxBodyBytes = 4 * 1024 * 1024;

    /// Listens until the process is stopped; says where on `err`. Raises when it cannot listen.
    static void run(const cli::ServeSettings& settings, std::ostream& err);
};

}  // namespace caudalis::web
