#pragma once

#include <string>

namespace caudalis::design {

/// A text literal for a statement, with its apostrophes doubled.
std::string textLiteral(const std::string& text);

}  // namespace caudalis::design
