#include "JsonFields.hpp"

#include <algorithm>
#include <cmath>

#include "FieldLog.hpp"
#include "caudalis/design/DesignError.hpp"

namespace caudalis::design {

namespace {

std::string describeRule(NumberRule rule) {
    return rule == NumberRule::Positive ? "> 0" : ">= 0";
}

bool satisfies(double value, NumberRule rule) {
    switch (rule) {
        case NumberRule::Positive:
            return value > 0;
        case NumberRule::NonNegative:
            return value >= 0;
        case NumberRule::Any:
            break;
    }
    return true;
}

}  // namespace

void requireObject(const nlohmann::json& value, const std::string& path) {
    if (!value.is_object()) {
        throw DesignError::invalid((path.empty() ? std::string("the design") : path) + " must be an object");
    }
}

JsonFields::JsonFields(const nlohmann::json& object, std::string path, Units units)
    : object_(object), path_(std::move(path)), units_(units) {
    requireObject(object_, path_);
}

std::string JsonFields::pathOf(const std::string& key) const {
    return path_.empty() ? key : path_ + "." + key;
}

std::string JsonFields::pathOf(const std::string& key, std::size_t index) const {
    return pathOf(key) + "[" + std::to_string(index) + "]";
}

void JsonFields::fail(const std::string& key, const std::string& complaint) const {
    throw DesignError::invalid(pathOf(key) + " " + complaint);
}

const nlohmann::json* JsonFields::find(const std::string& key) {
    read_.insert(key);
    FieldLog::note(pathOf(key));
    const auto found = object_.find(key);
    return found == object_.end() || found->is_null() ? nullptr : &*found;
}

const nlohmann::json& JsonFields::require(const std::string& key) {
    const auto* value = find(key);
    if (value == nullptr) {
        fail(key, "is missing");
    }
    return *value;
}

double JsonFields::checkedNumber(const std::string& key, const nlohmann::json& value, NumberRule rule) const {
    if (!value.is_number()) {
        fail(key, "must be a number");
    }
    const double number = value.get<double>();
    if (!satisfies(number, rule)) {
        fail(key, "must be " + describeRule(rule));
    }
    return number;
}

long JsonFields::checkedWholeNumber(const std::string& key, const nlohmann::json& value, long low,
                                    long high) const {
    if (!value.is_number()) {
        fail(key, "must be a number");
    }
    const double number = value.get<double>();
    if (number != std::floor(number)) {
        fail(key, "must be a whole number");
    }
    if (number < static_cast<double>(low) || number > static_cast<double>(high)) {
        fail(key, "must be between " + std::to_string(low) + " and " + std::to_string(high));
    }
    return static_cast<long>(number);
}

std::string JsonFields::checkedText(const std::string& key, const nlohmann::json& value) const {
    if (!value.is_string()) {
        fail(key, "must be a text");
    }
    auto text = value.get<std::string>();
    if (text.find_first_not_of(" \t\r\n") == std::string::npos) {
        fail(key, "must not be empty");
    }
    return text;
}

double JsonFields::number(const std::string& key, NumberRule rule) {
    return checkedNumber(key, require(key), rule);
}

std::optional<double> JsonFields::optionalNumber(const std::string& key, NumberRule rule) {
    const auto* value = find(key);
    if (value == nullptr) {
        return std::nullopt;
    }
    return checkedNumber(key, *value, rule);
}

long JsonFields::wholeNumber(const std::string& key, long low, long high) {
    return checkedWholeNumber(key, require(key), low, high);
}

std::optional<long> JsonFields::optionalWholeNumber(const std::string& key, long low, long high) {
    const auto* value = find(key);
    if (value == nullptr) {
        return std::nullopt;
    }
    return checkedWholeNumber(key, *value, low, high);
}

std::string JsonFields::text(const std::string& key) {
    return checkedText(key, require(key));
}

std::optional<std::string> JsonFields::optionalText(const std::string& key) {
    const auto* value = find(key);
    if (value == nullptr) {
        return std::nullopt;
    }
    return checkedText(key, *value);
}

std::string JsonFields::keyOf(const std::string& base, Quantity quantity) const {
    return base + "_" + units_.suffix(quantity);
}

double JsonFields::quantity(const std::string& base, Quantity quantity, NumberRule rule) {
    return units_.toSI(quantity, number(keyOf(base, quantity), rule));
}

std::optional<double> JsonFields::optionalQuantity(const std::string& base, Quantity quantity,
                                                   NumberRule rule) {
    const auto value = optionalNumber(keyOf(base, quantity), rule);
    if (!value) {
        return std::nullopt;
    }
    return units_.toSI(quantity, *value);
}

void JsonFields::comment(const std::string& key) {
    const auto* value = find(key);
    if (value == nullptr || value->is_string()) {
        return;
    }
    const bool lines =
        value->is_array() && std::all_of(value->begin(), value->end(),
                                         [](const nlohmann::json& line) { return line.is_string(); });
    if (!lines) {
        fail(key, "must be a text or an array of texts");
    }
}

bool JsonFields::optionalWord(const std::string& key, const std::string& word) {
    const auto* value = find(key);
    return value != nullptr && value->is_string() && value->get<std::string>() == word;
}

bool JsonFields::has(const std::string& key) const {
    const auto found = object_.find(key);
    return found != object_.end() && !found->is_null();
}

bool JsonFields::flag(const std::string& key, bool byDefault) {
    const auto* value = find(key);
    if (value == nullptr) {
        return byDefault;
    }
    if (!value->is_boolean()) {
        fail(key, "must be true or false");
    }
    return value->get<bool>();
}

const nlohmann::json* JsonFields::optionalObject(const std::string& key) {
    const auto* value = find(key);
    if (value != nullptr && !value->is_object()) {
        fail(key, "must be an object");
    }
    return value;
}

const nlohmann::json* JsonFields::optionalArray(const std::string& key) {
    const auto* value = find(key);
    if (value != nullptr && !value->is_array()) {
        fail(key, "must be an array");
    }
    return value;
}

const nlohmann::json& JsonFields::array(const std::string& key) {
    const auto* value = optionalArray(key);
    if (value == nullptr) {
        fail(key, "is missing");
    }
    return *value;
}

const nlohmann::json& JsonFields::object(const std::string& key) {
    const auto* value = optionalObject(key);
    if (value == nullptr) {
        fail(key, "is missing");
    }
    return *value;
}

std::string JsonFields::hintFor(const std::string& key) const {
    const Units other(units_.system() == UnitSystem::US ? UnitSystem::SI : UnitSystem::US);
    for (const auto quantity :
         {Quantity::Pressure, Quantity::Flow, Quantity::Length, Quantity::Diameter, Quantity::Spacing}) {
        std::string suffix(1, '_');
        suffix += other.suffix(quantity);
        if (key.size() > suffix.size() &&
            key.compare(key.size() - suffix.size(), suffix.size(), suffix) == 0) {
            return " (the file's units are \"" + units_.name() + "\": give it as " +
                   keyOf(key.substr(0, key.size() - suffix.size()), quantity) + ")";
        }
    }
    return "";
}

void JsonFields::finish() const {
    for (const auto& item : object_.items()) {
        if (read_.count(item.key()) == 0) {
            throw DesignError::invalid("unknown field " + pathOf(item.key()) + hintFor(item.key()));
        }
    }
}

}  // namespace caudalis::design
