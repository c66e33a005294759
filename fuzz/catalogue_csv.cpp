// The catalogue CSV reader: any text is either a list of checked nozzle rows or an input error
// naming the file, line and column; every row read has a name and positive coefficients.
#include "FuzzInput.hpp"
#include "caudalis/project/CatalogueCsv.hpp"
#include "caudalis/project/ServiceError.hpp"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    try {
        for (const auto& row :
             caudalis::project::CatalogueCsv::parse(caudalis::fuzz::textOf(data, size), "fuzz.csv")) {
            caudalis::fuzz::require(!row.nozzle.empty() && row.a > 0 && row.b > 0 && row.pmin > 0 &&
                                    row.pmax > 0 && row.qmin > 0 && row.qmax > 0);
        }
    } catch (const caudalis::project::InputError&) {
        // A bad row is reported as bad input.
    }
    return 0;
}
