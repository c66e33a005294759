#include "caudalis/report/TextReport.hpp"

#include "caudalis/report/DesignPrintout.hpp"
#include "caudalis/report/PlainTextReport.hpp"

namespace caudalis::design {

void TextReport::write(std::ostream& out, const DesignResult& result) {
    write(out, result, Units(result.design.units));
}

void TextReport::write(std::ostream& out, const DesignResult& result, const Units& units) {
    out << PlainTextReport::render(DesignPrintout::document(result, units), 110);
}

}  // namespace caudalis::design
