#pragma once

namespace caudalis {

/// Common base of the library's reference objects, so that a Variant or a Collection can hold
/// any of them and hand it back as the class or interface the caller asks for.
class Object {
public:
    Object() = default;
    Object(const Object&) = default;
    Object& operator=(const Object&) = default;
    virtual ~Object() = default;
};

}  // namespace caudalis
