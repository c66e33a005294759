#pragma once

#include <optional>
#include <string>

namespace caudalis::project {

/// `text` without the blanks (spaces, tabs, carriage returns) around it.
std::string withoutBlanksAround(const std::string& text);

/// `text` on one line: line breaks become spaces.
std::string oneLine(std::string text);

/// The finite number that `text` is, written with "." as decimal point and nothing around it;
/// empty when `text` is anything else.
std::optional<double> numberIn(const std::string& text);

}  // namespace caudalis::project
