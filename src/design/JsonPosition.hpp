#pragma once

#include <cstddef>
#include <string>

namespace caudalis::design {

/// The path ("spans[1].length_m") of the value that starts at or before byte `offset` of a
/// JSON text, found by walking the text's structure up to there; "" at the document level.
/// Used to name the field of a value the JSON reader refused (a number too large for a double).
std::string jsonPathAt(const std::string& text, std::size_t offset);

}  // namespace caudalis::design
