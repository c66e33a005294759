#include "caudalis/core/TextLiteral.hpp"

namespace caudalis {

std::string quotedLiteral(std::string_view text, char quote) {
    std::string literal(1, quote);
    for (const char c : text) {
        literal += c;
        if (c == quote) {
            literal += quote;
        }
    }
    literal += quote;
    return literal;
}

}  // namespace caudalis
