#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace caudalis {

/// A connection string of the PostgreSQL client library (libpq): a `postgresql://` (or
/// `postgres://`) URI, or `key=value` pairs of libpq's keywords separated by blanks (a value
/// with blanks between single quotes). One key is the library's own and is taken out before
/// libpq sees the text: `schema`, the schema of the database that holds the tables (in a URI,
/// `?schema=name`, percent-encoded). Without it the server's search path applies (`public`).
class PostgresConnectionString {
public:
    /// The parts of `text`, or nothing when libpq would not read it as a connection string.
    static std::optional<PostgresConnectionString> parse(std::string_view text);

    /// The text for libpq: the connection string without `schema`.
    const std::string& conninfo() const noexcept { return conninfo_; }
    /// The schema named by `schema`, if any.
    const std::optional<std::string>& schema() const noexcept { return schema_; }
    /// The database the text names (`dbname`, or the path of a URI), if it names one.
    const std::optional<std::string>& database() const noexcept { return database_; }

private:
    static std::optional<PostgresConnectionString> parseUri(std::string_view text);
    static std::optional<PostgresConnectionString> parsePairs(std::string_view text);
    /// Completes the parts with what libpq reads from `conninfo_`; false when libpq refuses it.
    bool readByLibpq();

    std::string conninfo_;
    std::optional<std::string> schema_;
    std::optional<std::string> database_;
};

}  // namespace caudalis
