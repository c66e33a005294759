#pragma once

#include <sqlite3.h>

#include <string>
#include <string_view>
#include <vector>

namespace caudalis::bench {

/// The statement texts SQLite runs, as it runs them, while a capture is on. The capture
/// hooks every connection opened meanwhile, the library's included.
class SqliteStatementCapture {
public:
    SqliteStatementCapture() {
        active_ = this;
        sqlite3_auto_extension(reinterpret_cast<void (*)()>(&SqliteStatementCapture::hook));
    }
    ~SqliteStatementCapture() {
        sqlite3_cancel_auto_extension(reinterpret_cast<void (*)()>(&SqliteStatementCapture::hook));
        active_ = nullptr;
    }
    SqliteStatementCapture(const SqliteStatementCapture&) = delete;
    SqliteStatementCapture& operator=(const SqliteStatementCapture&) = delete;

    const std::vector<std::string>& statements() const noexcept { return statements_; }

private:
    static int hook(sqlite3* db, const char** /*error*/, const void* /*api*/) {
        sqlite3_trace_v2(db, SQLITE_TRACE_STMT, &SqliteStatementCapture::trace, nullptr);
        return SQLITE_OK;
    }
    static int trace(unsigned type, void* /*context*/, void* statement, void* text) {
        const auto* sql = static_cast<const char*>(text);
        if (type != SQLITE_TRACE_STMT || active_ == nullptr || std::string_view(sql).starts_with("--")) {
            return 0;
        }
        char* expanded = sqlite3_expanded_sql(static_cast<sqlite3_stmt*>(statement));
        active_->statements_.emplace_back(expanded != nullptr ? expanded : sql);
        sqlite3_free(expanded);
        return 0;
    }

    static inline SqliteStatementCapture* active_ = nullptr;
    std::vector<std::string> statements_;
};

}  // namespace caudalis::bench
