#pragma once

#include <string>
#include <string_view>

namespace caudalis {

/// `text` between two `quote` marks, each mark inside doubled: the one form of a quoted text
/// that SQL literals ('it''s'), SQL names ("a ""b""") and CSV fields share.
std::string quotedLiteral(std::string_view text, char quote);

}  // namespace caudalis
