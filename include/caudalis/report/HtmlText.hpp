#pragma once

#include <string>
#include <string_view>

namespace caudalis::design {

/// Text made safe for the places of an HTML page that the report writer fills.
class HtmlText {
public:
    /// `&`, `<`, `>`, `"` and `'` as character references, for element content and attribute
    /// values.
    static std::string escape(std::string_view text);
    /// A JSON string literal (quotes included) that is also safe inside a `<script>` element:
    /// `<`, `>` and `&` are written as `\u` escapes, as are control characters and the line
    /// separators U+2028 and U+2029.
    static std::string jsonString(std::string_view text);
    /// A JSON number, "." as decimal point, the shortest text that reads back to the same
    /// double; `null` for infinities and NaN.
    static std::string jsonNumber(double value);
};

}  // namespace caudalis::design
