#pragma once

#include <cstddef>
#include <string>

namespace caudalis::design {

/// Receives a JSON document value by value, depth first, in the order of its text: a host builds
/// its own objects from a report this way, without writing and parsing the text in between.
class JsonVisitor {
public:
    virtual ~JsonVisitor() = default;

    virtual void null() = 0;
    virtual void boolean(bool value) = 0;
    virtual void integer(long long value) = 0;
    virtual void real(double value) = 0;
    virtual void text(const std::string& value) = 0;
    /// An object of `size` fields follows: for each its `key`, then its value; then `endObject`.
    virtual void beginObject(std::size_t size) = 0;
    virtual void key(const std::string& name) = 0;
    virtual void endObject() = 0;
    /// An array of `size` values follows, then `endArray`.
    virtual void beginArray(std::size_t size) = 0;
    virtual void endArray() = 0;
};

}  // namespace caudalis::design
