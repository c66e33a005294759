#pragma once

#include <memory>
#include <string>

#include "caudalis/db/DatabaseBackend.hpp"

namespace caudalis {

/// The PostgreSQL backend for a connection string that PostgreSQL's client library reads, or
/// null for any other string. A build without that client library (the Windows server) links a
/// definition of its own that reads none, so such strings name no engine there.
std::unique_ptr<DatabaseBackend> openPostgresServer(const std::string& connectionString);

}  // namespace caudalis
