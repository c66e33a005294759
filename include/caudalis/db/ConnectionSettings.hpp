#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace caudalis {

/// The parts of a connection string: `key=value` pairs separated by ";" (keys without regard
/// to case, blanks around keys and values ignored, a value may be put between double or single
/// quotes to hold a ";"). A text without any "=" is a database file path on its own, and
/// ":memory:" is a private in-memory database; both go to the embedded engine.
class ConnectionSettings {
public:
    /// The engine used when the text names none.
    static constexpr std::string_view defaultProvider = "sqlite";

    static ConnectionSettings parse(std::string_view text);

    /// The engine named by `Provider`, in lower case; the default engine when there is none.
    std::string provider() const;
    /// The database file (`Data Source`), if the text names one.
    std::optional<std::string> dataSource() const;
    /// The value of `key` (any case), if present.
    std::optional<std::string> value(std::string_view key) const;
    /// The connection string as given.
    const std::string& text() const noexcept { return text_; }

private:
    void add(std::string_view key, std::string value);

    std::map<std::string, std::string> values_;
    std::string text_;
};

}  // namespace caudalis
