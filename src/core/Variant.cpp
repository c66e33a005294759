#include "caudalis/core/Variant.hpp"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <limits>

#include "caudalis/core/NumberText.hpp"

namespace caudalis {
namespace {

std::string lowerCase(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return text;
}

double textToDouble(const std::string& text) {
    const auto number = parseLocaleNumber(text);
    if (!number) {
        raiseError(RuntimeError::TypeMismatch);
    }
    return *number;
}

template <class Whole>
Whole roundToWhole(double value) {
    const double rounded = roundHalfEven(value);
    if (std::isnan(rounded) || rounded < static_cast<double>(std::numeric_limits<Whole>::min()) ||
        rounded > static_cast<double>(std::numeric_limits<Whole>::max())) {
        raiseError(RuntimeError::Overflow);
    }
    return static_cast<Whole>(rounded);
}

}  // namespace

Variant Variant::null() {
    Variant result;
    result.value_ = NullValue{};
    return result;
}

bool Variant::isNumeric() const noexcept {
    switch (type()) {
        case Type::Boolean:
        case Type::Integer:
        case Type::Long:
        case Type::Double:
            return true;
        default:
            return false;
    }
}

double Variant::toDouble() const {
    switch (type()) {
        case Type::Empty:
            return 0.0;
        case Type::Null:
            raiseError(RuntimeError::InvalidUseOfNull);
        case Type::Boolean:
            return std::get<bool>(value_) ? -1.0 : 0.0;
        case Type::Integer:
            return std::get<Integer>(value_);
        case Type::Long:
            return std::get<Long>(value_);
        case Type::Double:
            return std::get<double>(value_);
        case Type::String:
            return textToDouble(std::get<std::string>(value_));
        default:
            raiseError(RuntimeError::TypeMismatch);
    }
}

Integer Variant::toInteger() const {
    if (type() == Type::Integer) {
        return std::get<Integer>(value_);
    }
    return roundToWhole<Integer>(toDouble());
}

Long Variant::toLong() const {
    if (type() == Type::Long) {
        return std::get<Long>(value_);
    }
    return roundToWhole<Long>(toDouble());
}

bool Variant::toBoolean() const {
    switch (type()) {
        case Type::Boolean:
            return std::get<bool>(value_);
        case Type::String: {
            const std::string text = lowerCase(trimBlanks(std::get<std::string>(value_)));
            if (text == "true") {
                return true;
            }
            if (text == "false") {
                return false;
            }
            return textToDouble(text) != 0.0;
        }
        default:
            return toDouble() != 0.0;
    }
}

std::string Variant::toString() const {
    switch (type()) {
        case Type::Empty:
            return {};
        case Type::Null:
            raiseError(RuntimeError::InvalidUseOfNull);
        case Type::Boolean:
            return std::get<bool>(value_) ? "True" : "False";
        case Type::Integer:
            return std::to_string(std::get<Integer>(value_));
        case Type::Long:
            return std::to_string(std::get<Long>(value_));
        case Type::Double:
            return formatNumber(std::get<double>(value_));
        case Type::String:
            return std::get<std::string>(value_);
        default:
            raiseError(RuntimeError::TypeMismatch);
    }
}

std::optional<std::partial_ordering> compareVariants(const Variant& first, const Variant& second) {
    if (first.isNull() || second.isNull()) {
        return std::nullopt;
    }
    if (first.isObject() || first.isRecord() || second.isObject() || second.isRecord()) {
        raiseError(RuntimeError::TypeMismatch);
    }
    const bool firstText = first.isString();
    const bool secondText = second.isString();
    if (firstText && secondText) {
        return first.toString() <=> second.toString();
    }
    if (firstText && second.isEmpty()) {
        return first.toString() <=> std::string();
    }
    if (secondText && first.isEmpty()) {
        return std::string() <=> second.toString();
    }
    if (firstText) {
        return std::partial_ordering::greater;
    }
    if (secondText) {
        return std::partial_ordering::less;
    }
    return first.toDouble() <=> second.toDouble();
}

double roundHalfEven(double value) {
    const double floor = std::floor(value);
    const double difference = value - floor;
    if (difference > 0.5) {
        return floor + 1.0;
    }
    if (difference < 0.5) {
        return floor;
    }
    return std::fmod(floor, 2.0) == 0.0 ? floor : floor + 1.0;
}

}  // namespace caudalis
