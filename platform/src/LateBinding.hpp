#pragma once
// Calls on objects of the host by member name (IDispatch late binding), with the host's
// errors passed on as the library's.

#include <optional>

#include "Marshal.hpp"

namespace caudalis::com {

/// A host object reached by member name, holding one reference to it.
class LateBound {
public:
    /// Adds a reference to `object` (which must not be null).
    explicit LateBound(IDispatch* object);
    /// The object a host value holds; nothing for Empty, Null, Nothing or a value that is no
    /// object.
    static std::optional<LateBound> from(const VARIANT& value);
    /// The automation interface of `object`; error 13 when it has none.
    static LateBound of(IUnknown* object);
    ~LateBound();
    LateBound(const LateBound& other);
    LateBound& operator=(const LateBound&) = delete;

    /// True when the object answers to `name`.
    bool has(const wchar_t* name) const;
    /// Calls a method (or reads a property) with up to one argument and returns what it gives;
    /// the caller clears the result. A member the object lacks raises error 438.
    VARIANT invoke(const wchar_t* name, VARIANT* argument = nullptr) const;
    /// Calls a method, dropping what it returns.
    void call(const wchar_t* name) const;
    /// A property read as a library value; numbers the library has no type for (Decimal,
    /// 64-bit and unsigned integers) as Double.
    caudalis::Variant value(const wchar_t* name, VARIANT* argument = nullptr) const;
    /// A property that holds an object; error 13 when it holds none.
    LateBound object(const wchar_t* name, VARIANT* argument = nullptr) const;

private:
    std::optional<DISPID> findMember(const wchar_t* name) const;

    IDispatch* object_;
};

}  // namespace caudalis::com
