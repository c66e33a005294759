#include "SqliteStatementCache.hpp"

namespace caudalis {

SqliteStatementHandle SqliteStatementCache::lend(const std::string& sql, const Prepare& prepare) {
    const auto known = statements_.find(sql);
    if (known == statements_.end()) {
        auto fresh = prepare(sql);
        if (statements_.size() >= capacity) {
            return fresh;
        }
        auto cached = std::make_shared<SqliteCachedStatement>();
        cached->statement = fresh.release();
        statements_.emplace(sql, cached);
        cached->lent = true;
        return SqliteStatementHandle(cached->statement, SqliteStatementFinalizer{cached});
    }
    const auto& cached = known->second;
    if (cached->lent) {
        return prepare(sql);
    }
    cached->lent = true;
    return SqliteStatementHandle(cached->statement, SqliteStatementFinalizer{cached});
}

}  // namespace caudalis
