#include "SqlLiteral.hpp"

namespace caudalis::design {

std::string textLiteral(const std::string& text) {
    std::string literal = "'";
    for (const char c : text) {
        literal += c;
        if (c == '\'') {
            literal += '\'';
        }
    }
    return literal + "'";
}

}  // namespace caudalis::design
