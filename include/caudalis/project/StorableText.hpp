#pragma once

#include <string>

namespace caudalis::project {

/// Raises `InputError` unless `text` can be written into the library's statements as it is:
/// names of charts, evaluations, brands, models and nozzles, and the catalogue path, may not
/// hold "?" (the statements' value mark), an apostrophe (their text quote) or a control
/// character. `what` names the value ("chart name", "catalogue.csv line 3: brand").
void requireStorableText(const std::string& text, const std::string& what);

}  // namespace caudalis::project
