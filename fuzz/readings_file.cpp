// The readings-file reader: any text is either groups of readings or an input error naming the
// file and line.
#include "CliErrors.hpp"
#include "FuzzInput.hpp"
#include "ReadingsFile.hpp"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    try {
        (void)caudalis::cli::ReadingsFile::parse(caudalis::fuzz::textOf(data, size), "fuzz.txt");
    } catch (const caudalis::cli::InputError&) {
        // A bad line is reported as bad input.
    }
    return 0;
}
