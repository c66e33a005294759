#pragma once

#include <optional>
#include <set>
#include <string>

#include <nlohmann/json.hpp>

namespace caudalis::cli {

/// Which numbers a field accepts.
enum class NumberRule { Any, Positive, NonNegative };

/// Reads the fields of one JSON object, naming every bad field by its path in the error
/// (`spans[2].length_m must be > 0`). Fields that were never read are rejected by `finish`,
/// so a misspelt field name does not go unnoticed. Every failure raises `InputError`.
class JsonFields {
public:
    /// `path` is the object's own path ("" for the document root).
    JsonFields(const nlohmann::json& object, std::string path);

    double number(const std::string& key, NumberRule rule = NumberRule::Any);
    std::optional<double> optionalNumber(const std::string& key, NumberRule rule = NumberRule::Any);
    /// A whole number between `low` and `high` (a JSON number without fraction).
    long wholeNumber(const std::string& key, long low, long high);
    std::optional<long> optionalWholeNumber(const std::string& key, long low, long high);
    /// A non-empty text.
    std::string text(const std::string& key);
    std::optional<std::string> optionalText(const std::string& key);
    bool flag(const std::string& key, bool byDefault);
    /// The object or array under `key`, checked for its kind; nullptr when absent.
    const nlohmann::json* optionalObject(const std::string& key);
    const nlohmann::json* optionalArray(const std::string& key);
    const nlohmann::json& array(const std::string& key);
    const nlohmann::json& object(const std::string& key);

    /// The path of a field of this object.
    std::string pathOf(const std::string& key) const;
    /// The path of element `index` of the array under `key`.
    std::string pathOf(const std::string& key, std::size_t index) const;
    /// Raises for the first field that was never read.
    void finish() const;

private:
    const nlohmann::json* find(const std::string& key);
    const nlohmann::json& require(const std::string& key);
    double checkedNumber(const std::string& key, const nlohmann::json& value, NumberRule rule) const;
    long checkedWholeNumber(const std::string& key, const nlohmann::json& value, long low, long high) const;
    std::string checkedText(const std::string& key, const nlohmann::json& value) const;
    [[noreturn]] void fail(const std::string& key, const std::string& complaint) const;

    const nlohmann::json& object_;
    std::string path_;
    std::set<std::string> read_;
};

/// Raises `InputError` "<path> must be an object" unless `value` is a JSON object.
void requireObject(const nlohmann::json& value, const std::string& path);

}  // namespace caudalis::cli
