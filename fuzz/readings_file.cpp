// The readings-file reader: any text is either groups of readings or a readings error naming the
// text and line.
#include "FuzzInput.hpp"
#include "caudalis/fieldtests/FieldReadingsText.hpp"
#include "caudalis/fieldtests/ReadingsError.hpp"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    try {
        (void)caudalis::design::FieldReadingsText::groups({"fuzz.txt", caudalis::fuzz::textOf(data, size)});
    } catch (const caudalis::design::ReadingsError&) {
        // A bad line is reported as bad input.
    }
    return 0;
}
