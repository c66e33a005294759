#pragma once

#include <functional>
#include <memory>
#include <string>
#include <unordered_map>

#include "SqliteCursor.hpp"

namespace caudalis {

/// Prepared statements of one connection kept by their text, lent out one use at a time: a
/// lent statement comes back, reset and with its bindings cleared, when its handle is released.
/// A text whose statement is still lent, or one past the cache's size, is prepared afresh and
/// finalized after its use, as an uncached statement is.
class SqliteStatementCache {
public:
    static constexpr std::size_t capacity = 64;

    using Prepare = std::function<SqliteStatementHandle(const std::string& sql)>;

    /// The statement of `sql`, prepared by `prepare` when it is not at hand.
    SqliteStatementHandle lend(const std::string& sql, const Prepare& prepare);

private:
    std::unordered_map<std::string, std::shared_ptr<SqliteCachedStatement>> statements_;
};

}  // namespace caudalis
