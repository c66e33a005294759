// Catch-can reading text ("amount distance"): parsing never fails, and the text form is stable:
// a reading printed and read back prints and reads back as itself.
#include <cmath>

#include "FuzzInput.hpp"
#include "caudalis/core/Error.hpp"
#include "caudalis/evaluation/FieldSamples.hpp"

using namespace caudalis;

namespace {

bool same(double a, double b) {
    return a == b || (std::isnan(a) && std::isnan(b));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto samples = FieldSamples::shared();
    const FieldSample reading = samples->Parse(fuzz::textOf(data, size));
    try {
        const FieldSample once = samples->Parse(samples->serialize(reading));
        const FieldSample twice = samples->Parse(samples->serialize(once));
        fuzz::require(same(once.collectedAmount, twice.collectedAmount) &&
                      same(once.distanceFromCenter, twice.distanceFromCenter));
    } catch (const Error&) {
        // Printing a number beyond the text form's range raises a numbered error.
    }
    (void)samples->Valid(reading);
    return 0;
}
