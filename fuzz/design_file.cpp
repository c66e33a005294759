// The design-file reader: any text is either a validated design or an input error that names
// the file or field; nothing else escapes (no JSON library error, no crash).
#include "CliErrors.hpp"
#include "DesignFile.hpp"
#include "FuzzInput.hpp"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    try {
        (void)caudalis::cli::DesignFile::parse(caudalis::fuzz::textOf(data, size), "fuzz.json");
    } catch (const caudalis::cli::InputError&) {
        // A bad design file is reported as bad input.
    }
    return 0;
}
