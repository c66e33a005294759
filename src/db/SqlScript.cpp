#include "caudalis/db/SqlScript.hpp"

#include <fstream>
#include <sstream>

#include "caudalis/core/Error.hpp"
#include "caudalis/db/Connection.hpp"

namespace caudalis {
namespace {

constexpr std::int32_t FileNotFound = 53;

/// Splits a script while keeping track of literals, names and comments.
class ScriptSplitter {
public:
    explicit ScriptSplitter(std::string_view script) : script_(script) {}

    std::vector<std::string> statements() {
        while (position_ < script_.size()) {
            step();
        }
        finishStatement();
        return statements_;
    }

private:
    void step() {
        const char c = script_[position_];
        if (startsWith("--")) {
            skipUntil("\n");
        } else if (startsWith("/*")) {
            skipUntil("*/");
        } else if (c == '\'' || c == '"') {
            copyDelimited(c);
        } else if (c == '[') {
            copyDelimited(']');
        } else if (c == ';') {
            ++position_;
            finishStatement();
        } else {
            current_ += c;
            ++position_;
        }
    }

    bool startsWith(std::string_view prefix) const { return script_.substr(position_).starts_with(prefix); }

    void skipUntil(std::string_view end) {
        const std::size_t found = script_.find(end, position_ + 2);
        position_ = found == std::string_view::npos ? script_.size() : found + end.size();
        current_ += ' ';
    }

    /// Copies a literal or name up to its closing character (a doubled one stands for itself).
    void copyDelimited(char closing) {
        current_ += script_[position_++];
        while (position_ < script_.size()) {
            const char c = script_[position_++];
            current_ += c;
            if (c == closing) {
                if (position_ < script_.size() && script_[position_] == closing && closing != ']') {
                    current_ += script_[position_++];
                    continue;
                }
                return;
            }
        }
    }

    void finishStatement() {
        const auto first = current_.find_first_not_of(" \t\r\n");
        if (first != std::string::npos) {
            const auto last = current_.find_last_not_of(" \t\r\n");
            statements_.push_back(current_.substr(first, last - first + 1));
        }
        current_.clear();
    }

    std::string_view script_;
    std::size_t position_ = 0;
    std::string current_;
    std::vector<std::string> statements_;
};

}  // namespace

std::vector<std::string> splitStatements(std::string_view script) {
    return ScriptSplitter(script).statements();
}

void runScript(Connection& connection, std::string_view script) {
    for (const std::string& statement : splitStatements(script)) {
        connection.Execute(statement);
    }
}

void runScriptFile(Connection& connection, const std::filesystem::path& file) {
    std::ifstream input(file, std::ios::binary);
    if (!input) {
        raiseError(FileNotFound, "File not found: " + file.string());
    }
    std::ostringstream text;
    text << input.rdbuf();
    runScript(connection, text.str());
}

}  // namespace caudalis
