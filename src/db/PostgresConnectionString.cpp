#include "caudalis/db/PostgresConnectionString.hpp"

#include <cctype>
#include <memory>
#include <vector>

#include "PostgresLibrary.hpp"
#include "TextHelpers.hpp"
#include "caudalis/core/NumberText.hpp"

namespace caudalis {
namespace {

constexpr std::string_view schemaKey = "schema";

bool isBlank(char c) {
    return std::isspace(static_cast<unsigned char>(c)) != 0;
}

int hexValue(char c) {
    const auto byte = static_cast<unsigned char>(c);
    if (std::isdigit(byte) != 0) {
        return c - '0';
    }
    const int lower = std::tolower(byte);
    return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

/// Decodes the %XX escapes of a URI component ("+" stays as it is, as libpq reads it).
std::string percentDecoded(std::string_view text) {
    std::string result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '%' && i + 2 < text.size() && hexValue(text[i + 1]) >= 0 &&
            hexValue(text[i + 2]) >= 0) {
            result += static_cast<char>(hexValue(text[i + 1]) * 16 + hexValue(text[i + 2]));
            i += 2;
        } else {
            result += text[i];
        }
    }
    return result;
}

std::vector<std::string_view> split(std::string_view text, char separator) {
    std::vector<std::string_view> parts;
    std::size_t start = 0;
    for (std::size_t end = text.find(separator); end != std::string_view::npos;
         end = text.find(separator, start)) {
        parts.push_back(text.substr(start, end - start));
        start = end + 1;
    }
    parts.push_back(text.substr(start));
    return parts;
}

/// A value of a key=value pair as libpq writes it: between single quotes, with "\" and "'"
/// escaped by a backslash.
std::string quotedPairValue(std::string_view value) {
    std::string result = "'";
    for (const char c : value) {
        if (c == '\\' || c == '\'') {
            result += '\\';
        }
        result += c;
    }
    return result + "'";
}

/// Reads key=value pairs the way libpq does; false on text that is not made of such pairs.
class PairReader {
public:
    explicit PairReader(std::string_view text) : text_(text) {}

    bool next(std::string& key, std::string& value) {
        skipBlanks();
        if (pos_ >= text_.size()) {
            return false;
        }
        const std::size_t keyStart = pos_;
        while (pos_ < text_.size() && text_[pos_] != '=' && !isBlank(text_[pos_])) {
            ++pos_;
        }
        key = std::string(text_.substr(keyStart, pos_ - keyStart));
        skipBlanks();
        if (key.empty() || pos_ >= text_.size() || text_[pos_] != '=') {
            failed_ = true;
            return false;
        }
        ++pos_;
        skipBlanks();
        value = readValue();
        return !failed_;
    }

    bool failed() const noexcept { return failed_; }

private:
    void skipBlanks() {
        while (pos_ < text_.size() && isBlank(text_[pos_])) {
            ++pos_;
        }
    }

    std::string readValue() {
        const bool quoted = pos_ < text_.size() && text_[pos_] == '\'';
        pos_ += quoted ? 1 : 0;
        std::string value;
        while (pos_ < text_.size()) {
            const char c = text_[pos_];
            if (quoted ? c == '\'' : isBlank(c)) {
                pos_ += quoted ? 1 : 0;
                return value;
            }
            if (c == '\\' && pos_ + 1 < text_.size()) {
                ++pos_;
            }
            value += text_[pos_++];
        }
        failed_ = quoted;
        return value;
    }

    std::string_view text_;
    std::size_t pos_ = 0;
    bool failed_ = false;
};

/// True when `key` could be one of libpq's keywords, which are all lower-case words: libpq
/// compares keys exactly, so a text with any other key (such as "Provider" or "Data Source"
/// of an embedded-engine string) is refused without loading libpq to ask.
bool mayBeKeyword(std::string_view key) {
    for (const char c : key) {
        if (!((c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '_')) {
            return false;
        }
    }
    return true;
}

struct ConninfoOptionsFree {
    void operator()(PQconninfoOption* options) const noexcept { libpq().PQconninfoFree(options); }
};

}  // namespace

std::optional<PostgresConnectionString> PostgresConnectionString::parse(std::string_view text) {
    const std::string whole = trimBlanks(text);
    const bool uri = whole.starts_with("postgresql://") || whole.starts_with("postgres://");
    auto parsed = uri ? parseUri(whole) : parsePairs(whole);
    if (!parsed || !parsed->readByLibpq()) {
        return std::nullopt;
    }
    return parsed;
}

std::optional<PostgresConnectionString> PostgresConnectionString::parseUri(std::string_view text) {
    PostgresConnectionString result;
    const std::size_t question = text.find('?');
    result.conninfo_ = std::string(text.substr(0, question));
    if (question == std::string_view::npos) {
        return result;
    }
    std::string query;
    for (const std::string_view parameter : split(text.substr(question + 1), '&')) {
        const std::size_t equals = parameter.find('=');
        if (equals != std::string_view::npos && parameter.substr(0, equals) == schemaKey) {
            result.schema_ = percentDecoded(parameter.substr(equals + 1));
        } else if (!parameter.empty()) {
            query += (query.empty() ? "?" : "&") + std::string(parameter);
        }
    }
    result.conninfo_ += query;
    return result;
}

std::optional<PostgresConnectionString> PostgresConnectionString::parsePairs(std::string_view text) {
    PostgresConnectionString result;
    PairReader reader(text);
    std::string key;
    std::string value;
    bool any = false;
    while (reader.next(key, value)) {
        if (!mayBeKeyword(key)) {
            return std::nullopt;
        }
        any = true;
        if (key == schemaKey) {
            result.schema_ = value;
        } else {
            result.conninfo_ += (result.conninfo_.empty() ? "" : " ") + key + "=" + quotedPairValue(value);
        }
    }
    if (reader.failed() || !any) {
        return std::nullopt;
    }
    return result;
}

bool PostgresConnectionString::readByLibpq() {
    char* message = nullptr;
    const std::unique_ptr<PQconninfoOption, ConninfoOptionsFree> options(
        libpq().PQconninfoParse(conninfo_.c_str(), &message));
    libpq().PQfreemem(message);
    if (!options) {
        return false;
    }
    for (const PQconninfoOption* option = options.get(); option->keyword != nullptr; ++option) {
        if (std::string_view(option->keyword) == "dbname" && option->val != nullptr && *option->val != '\0') {
            database_ = option->val;
        }
    }
    return true;
}

}  // namespace caudalis
