// The catalogue CSV reader: any text is either a list of checked nozzle rows or an input error
// naming the file, line and column; every row read has a name and positive coefficients.
#include "CatalogueCsv.hpp"
#include "CliErrors.hpp"
#include "FuzzInput.hpp"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    try {
        for (const auto& row :
             caudalis::cli::CatalogueCsv::parse(caudalis::fuzz::textOf(data, size), "fuzz.csv")) {
            caudalis::fuzz::require(!row.nozzle.empty() && row.a > 0 && row.b > 0 && row.pmin > 0 &&
                                    row.pmax > 0 && row.qmin > 0 && row.qmax > 0);
        }
    } catch (const caudalis::cli::InputError&) {
        // A bad row is reported as bad input.
    }
    return 0;
}
