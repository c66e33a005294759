#include "caudalis/evaluation/FieldSamples.hpp"

#include <string_view>

#include "caudalis/core/Arrays.hpp"
#include "caudalis/core/Checked.hpp"
#include "caudalis/core/LazyInstance.hpp"
#include "caudalis/core/NumberText.hpp"
#include "caudalis/db/SqlText.hpp"
#include "caudalis/evaluation/Pluviometros.hpp"
#include "caudalis/evaluation/WaterDepths.hpp"

namespace caudalis {
namespace {

constexpr char separator = ' ';
/// Between the amount caught and area x depth.
constexpr Double unitConversion = 1000.0;

/// The text without its leading and trailing spaces (other blanks stay).
std::string_view trimSpaces(std::string_view text) {
    const auto first = text.find_first_not_of(separator);
    if (first == std::string_view::npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of(separator) - first + 1);
}

}  // namespace

std::shared_ptr<FieldSamples> FieldSamples::shared() {
    static LazyInstance<FieldSamples> instance;
    return instance.get();
}

FieldSample FieldSamples::newFieldSample(Double depth, Double distance) const {
    return FieldSample{depth, distance};
}

bool FieldSamples::Valid(const FieldSample& self) const {
    return self.collectedAmount >= 0 && self.distanceFromCenter > 0;
}

// The text splits at single spaces into at most three pieces; only the first two are read,
// so two spaces in a row leave an empty second piece (distance 0).
FieldSample FieldSamples::Parse(const String& stringRepresentation) const {
    const std::string_view text = trimSpaces(stringRepresentation);
    const auto firstSeparator = text.find(separator);
    if (firstSeparator == std::string_view::npos) {
        return newFieldSample(0, 0);
    }
    const std::string_view rest = text.substr(firstSeparator + 1);
    const std::string_view amount = text.substr(0, firstSeparator);
    const std::string_view distance = rest.substr(0, rest.find(separator));
    return newFieldSample(readLeadingNumber(amount), readLeadingNumber(distance));
}

String FieldSamples::serialize(const FieldSample& self) const {
    return sqlDouble(self.collectedAmount) + separator + sqlDouble(self.distanceFromCenter);
}

BoundedArray<FieldSample> FieldSamples::FilterValid(const BoundedArray<FieldSample>& collection) const {
    const auto& arrays = *Arrays::shared();
    BoundedArray<FieldSample> valid;
    const Integer length = arrays.Length(collection);
    for (Long i = 1; i <= length; ++i) {
        if (Valid(collection(i))) {
            arrays.Push(valid, collection(i));
        }
    }
    return valid;
}

BoundedArray<WaterDepthSample> FieldSamples::CollectionToWaterDepth(
    const BoundedArray<FieldSample>& collection, Pluviometro& usedPluviometro) const {
    const auto& arrays = *Arrays::shared();
    BoundedArray<WaterDepthSample> depths;
    const Integer length = arrays.Length(collection);
    for (Long i = 1; i <= length; ++i) {
        arrays.Push(depths, ToWaterDepth(collection(i), usedPluviometro));
    }
    return depths;
}

WaterDepthSample FieldSamples::ToWaterDepth(const FieldSample& self, Pluviometro& usedPluviometro) const {
    const auto& waterDepths = *WaterDepths::shared();
    if (!Valid(self)) {
        return waterDepths.NullWaterDepth();
    }
    const Double area = Pluviometros::shared()->Area(usedPluviometro);
    const Double depth = checked::div(self.collectedAmount, checked::mul(area, unitConversion));
    return waterDepths.newWaterDepthSample(depth, self.distanceFromCenter);
}

}  // namespace caudalis
