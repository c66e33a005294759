#include "caudalis/project/PlainText.hpp"

#include "caudalis/fieldtests/ReadingsText.hpp"

namespace caudalis::project {

std::string withoutBlanksAround(const std::string& text) {
    return design::ReadingsTextTools::trimmed(text);
}

std::string oneLine(std::string text) {
    for (auto& c : text) {
        if (c == '\n' || c == '\r') {
            c = ' ';
        }
    }
    return text;
}

std::optional<double> numberIn(const std::string& text) {
    return design::ReadingsTextTools::number(text);
}

}  // namespace caudalis::project
