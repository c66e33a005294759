#pragma once

#include <any>
#include <compare>
#include <memory>
#include <optional>
#include <string>
#include <type_traits>
#include <typeinfo>
#include <variant>

#include "caudalis/core/Basic.hpp"
#include "caudalis/core/Error.hpp"
#include "caudalis/core/Object.hpp"

namespace caudalis {

/// A dynamically typed value: Empty, Null, a Boolean, an Integer, a Long, a Double, a String,
/// an object reference or a record. Conversions follow the automation runtime's rules.
class Variant {
public:
    enum class Type { Empty, Null, Boolean, Integer, Long, Double, String, Object, Record };

    Variant() = default;
    Variant(bool value) : value_(value) {}
    Variant(Integer value) : value_(value) {}
    Variant(Long value) : value_(value) {}
    Variant(double value) : value_(value) {}
    Variant(std::string value) : value_(std::move(value)) {}
    Variant(const char* value) : value_(std::string(value)) {}
    template <class T, std::enable_if_t<std::is_base_of_v<Object, T>, int> = 0>
    Variant(std::shared_ptr<T> object) : value_(std::shared_ptr<Object>(std::move(object))) {}

    /// The Null value.
    static Variant null();
    /// A Variant holding a copy of a record.
    template <class T>
    static Variant record(T value) {
        Variant result;
        result.value_ = std::any(std::move(value));
        return result;
    }

    Type type() const noexcept { return static_cast<Type>(value_.index()); }
    bool isEmpty() const noexcept { return type() == Type::Empty; }
    bool isNull() const noexcept { return type() == Type::Null; }
    bool isNumeric() const noexcept;
    bool isString() const noexcept { return type() == Type::String; }
    bool isObject() const noexcept { return type() == Type::Object; }
    bool isRecord() const noexcept { return type() == Type::Record; }
    template <class T>
    bool holdsRecord() const noexcept {
        return isRecord() && std::get<std::any>(value_).type() == typeid(T);
    }

    /// Conversions with the runtime's rules: Null raises 94, a value of the wrong kind 13,
    /// a number outside the target's range 6; Integer and Long round half to even.
    bool toBoolean() const;
    Integer toInteger() const;
    Long toLong() const;
    double toDouble() const;
    std::string toString() const;

    /// The object reference as class or interface T (empty reference for Empty); 13 otherwise.
    template <class T>
    std::shared_ptr<T> toObject() const {
        const T* object = objectAs<T>();
        if (object == nullptr) {
            return nullptr;
        }
        return std::shared_ptr<T>(std::get<std::shared_ptr<Object>>(value_), const_cast<T*>(object));
    }

    /// The object as class or interface T without sharing it: nullptr for Empty or an empty
    /// reference, 13 for anything else.
    template <class T>
    const T* objectAs() const {
        if (isEmpty()) {
            return nullptr;
        }
        const auto* held = std::get_if<std::shared_ptr<Object>>(&value_);
        const T* object = objectIf<T>();
        if (held == nullptr || (object == nullptr && *held != nullptr)) {
            raiseError(RuntimeError::TypeMismatch);
        }
        return object;
    }

    /// The object as class or interface T without sharing it, nullptr for anything that is not
    /// such an object. An object of exactly class T is recognised without a cast.
    template <class T>
    const T* objectIf() const noexcept {
        const auto* held = std::get_if<std::shared_ptr<Object>>(&value_);
        const Object* object = held != nullptr ? held->get() : nullptr;
        if (object == nullptr) {
            return nullptr;
        }
        if (typeid(*object) == typeid(T)) {
            return static_cast<const T*>(object);
        }
        return dynamic_cast<const T*>(object);
    }

    /// The record held, as type T; 13 when the Variant holds something else.
    template <class T>
    const T& toRecord() const {
        if (!holdsRecord<T>()) {
            raiseError(RuntimeError::TypeMismatch);
        }
        return *std::any_cast<T>(&std::get<std::any>(value_));
    }

private:
    struct NullValue {};
    std::variant<std::monostate, NullValue, bool, Integer, Long, double, std::string, std::shared_ptr<Object>,
                 std::any>
        value_;
};

/// The runtime's comparison of two Variants: numbers numerically, texts as text, Empty as 0 or
/// "", a number below any text. Null on either side gives no result (nullopt); NaN is unordered.
std::optional<std::partial_ordering> compareVariants(const Variant& first, const Variant& second);

/// Round half to even, as the runtime rounds when it converts to Integer and Long.
double roundHalfEven(double value);

}  // namespace caudalis
