#include "caudalis/db/ConnectionSettings.hpp"

#include "TextHelpers.hpp"
#include "caudalis/core/NumberText.hpp"

namespace caudalis {
namespace {

using texthelpers::lowerCase;

constexpr std::string_view providerKey = "provider";
constexpr std::string_view dataSourceKey = "data source";

bool isQuote(char c) {
    return c == '"' || c == '\'';
}

/// The end of the pair that starts at `pos`: the next ";" outside a quoted value.
std::size_t pairEnd(std::string_view text, std::size_t pos) {
    char quote = 0;
    for (std::size_t i = pos; i < text.size(); ++i) {
        const char c = text[i];
        if (quote != 0) {
            quote = c == quote ? 0 : quote;
        } else if (isQuote(c)) {
            quote = c;
        } else if (c == ';') {
            return i;
        }
    }
    return text.size();
}

std::string unquote(std::string value) {
    if (value.size() >= 2 && isQuote(value.front()) && value.back() == value.front()) {
        return value.substr(1, value.size() - 2);
    }
    return value;
}

}  // namespace

ConnectionSettings ConnectionSettings::parse(std::string_view text) {
    ConnectionSettings settings;
    settings.text_ = std::string(text);
    const std::string whole = trimBlanks(text);
    if (whole.find('=') == std::string::npos) {
        settings.add(dataSourceKey, whole);
        return settings;
    }
    for (std::size_t pos = 0; pos <= whole.size();) {
        const std::size_t end = pairEnd(whole, pos);
        const std::string_view pair = std::string_view(whole).substr(pos, end - pos);
        const std::size_t equals = pair.find('=');
        if (equals != std::string_view::npos) {
            settings.add(trimBlanks(pair.substr(0, equals)), unquote(trimBlanks(pair.substr(equals + 1))));
        }
        pos = end + 1;
    }
    return settings;
}

std::string ConnectionSettings::provider() const {
    const auto named = value(providerKey);
    return named && !named->empty() ? lowerCase(*named) : std::string(defaultProvider);
}

std::optional<std::string> ConnectionSettings::dataSource() const {
    return value(dataSourceKey);
}

std::optional<std::string> ConnectionSettings::value(std::string_view key) const {
    const auto found = values_.find(lowerCase(key));
    if (found == values_.end()) {
        return std::nullopt;
    }
    return found->second;
}

void ConnectionSettings::add(std::string_view key, std::string value) {
    values_[lowerCase(key)] = std::move(value);
}

}  // namespace caudalis
