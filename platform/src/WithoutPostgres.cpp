// The server is built without PostgreSQL's client library: no connection string names a
// PostgreSQL server, so such a string is read as any other (and names no engine).

#include "db/PostgresOpening.hpp"

namespace caudalis {

std::unique_ptr<DatabaseBackend> openPostgresServer(const std::string&) {
    return nullptr;
}

}  // namespace caudalis
