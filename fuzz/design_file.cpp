// The design-file reader: any text is either a validated design or a design error whose message
// names the file or field; nothing else escapes (no JSON library error, no crash).
#include "FuzzInput.hpp"
#include "caudalis/design/DesignError.hpp"
#include "caudalis/design/DesignFile.hpp"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    try {
        (void)caudalis::design::DesignFile::parse(caudalis::fuzz::textOf(data, size), "fuzz.json");
    } catch (const caudalis::design::DesignError& error) {
        caudalis::fuzz::require(error.kind() == caudalis::design::DesignError::Kind::InvalidInput);
    }
    return 0;
}
