// The Variant's text-to-number conversions: any text either converts or raises a numbered
// error (13 type mismatch, 6 overflow); a number read from text prints and reads back the same.
#include <cmath>

#include "FuzzInput.hpp"
#include "caudalis/core/Error.hpp"
#include "caudalis/core/NumberText.hpp"
#include "caudalis/core/Variant.hpp"

using namespace caudalis;

namespace {

template <class Conversion>
void convert(Conversion conversion) {
    try {
        conversion();
    } catch (const Error& error) {
        fuzz::require(error.number() == 13 || error.number() == 6);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text = fuzz::textOf(data, size);
    const Variant value(text);
    convert([&] { (void)value.toInteger(); });
    convert([&] { (void)value.toLong(); });
    convert([&] { (void)value.toBoolean(); });
    convert([&] {
        const double number = value.toDouble();
        if (std::isfinite(number)) {
            const auto again = parseLocaleNumber(formatNumber(number));
            fuzz::require(again.has_value());
        }
    });
    (void)readLeadingNumber(text);
    return 0;
}
