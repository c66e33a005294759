#pragma once

#include <optional>
#include <set>
#include <string>
#include <type_traits>

#include <nlohmann/json.hpp>

#include "caudalis/design/Units.hpp"

namespace caudalis::design {

/// Which numbers a field accepts.
enum class NumberRule { Any, Positive, NonNegative };

/// Reads the fields of one JSON object, naming every bad field by its path in the error
/// (`spans[2].length_m must be > 0`). Fields that were never read are rejected by `finish`,
/// so a misspelt field name does not go unnoticed. Every failure raises `DesignError` (`InvalidInput`).
class JsonFields {
public:
    /// `path` is the object's own path ("" for the document root); `units` are those of the
    /// file, which name and convert the fields of `quantity`.
    JsonFields(const nlohmann::json& object, std::string path, Units units = Units());

    /// The number under `base` + "_" + the unit's suffix ("inlet_pressure" reads
    /// "inlet_pressure_kpa" or "inlet_pressure_psi"), converted to SI.
    double quantity(const std::string& base, Quantity quantity, NumberRule rule = NumberRule::Any);
    std::optional<double> optionalQuantity(const std::string& base, Quantity quantity,
                                           NumberRule rule = NumberRule::Any);
    /// The field name of a quantity in the file's units.
    std::string keyOf(const std::string& base, Quantity quantity) const;
    const Units& units() const noexcept { return units_; }
    /// The same object read in other units (the document root, once its "units" is known).
    void setUnits(Units units) { units_ = units; }

    double number(const std::string& key, NumberRule rule = NumberRule::Any);
    std::optional<double> optionalNumber(const std::string& key, NumberRule rule = NumberRule::Any);
    /// A whole number between `low` and `high` (a JSON number without fraction).
    long wholeNumber(const std::string& key, long low, long high);
    std::optional<long> optionalWholeNumber(const std::string& key, long low, long high);
    /// A non-empty text.
    std::string text(const std::string& key);
    std::optional<std::string> optionalText(const std::string& key);
    bool flag(const std::string& key, bool byDefault);
    /// A comment for the reader of the file: a text or an array of texts, otherwise ignored.
    void comment(const std::string& key);
    /// True when the field holds the text `word`; false when it is absent or holds anything else.
    bool optionalWord(const std::string& key, const std::string& word);
    /// Whether the object has the field (a null counts as absent).
    bool has(const std::string& key) const;
    /// The object or array under `key`, checked for its kind; nullptr when absent.
    const nlohmann::json* optionalObject(const std::string& key);
    const nlohmann::json* optionalArray(const std::string& key);
    const nlohmann::json& array(const std::string& key);
    const nlohmann::json& object(const std::string& key);

    /// Reads the object under `key` with `read(JsonFields&)` and rejects its unknown fields;
    /// empty when the object is absent.
    template <class Read>
    auto optionalSection(const std::string& key, Read read)
        -> std::optional<std::invoke_result_t<Read, JsonFields&>> {
        const auto* value = optionalObject(key);
        if (value == nullptr) {
            return std::nullopt;
        }
        return readSection(*value, pathOf(key), units_, read);
    }
    /// The same for an object that must be present.
    template <class Read>
    auto section(const std::string& key, Read read) -> std::invoke_result_t<Read, JsonFields&> {
        return readSection(object(key), pathOf(key), units_, read);
    }
    /// Reads `value` (at `path`) with `read(JsonFields&)` and rejects its unknown fields.
    template <class Read>
    static auto readSection(const nlohmann::json& value, const std::string& path, Units units, Read read)
        -> std::invoke_result_t<Read, JsonFields&> {
        JsonFields fields(value, path, units);
        auto result = read(fields);
        fields.finish();
        return result;
    }

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
    /// Why an unknown field may be there: it names a quantity in the other system's units.
    std::string hintFor(const std::string& key) const;

    const nlohmann::json& object_;
    std::string path_;
    Units units_;
    std::set<std::string> read_;
};

/// Raises `DesignError` (`InvalidInput`) "<path> must be an object" unless `value` is a JSON object.
void requireObject(const nlohmann::json& value, const std::string& path);

}  // namespace caudalis::design
