#pragma once

#include <memory>

namespace caudalis {

/// A variable that starts empty, is filled with a new instance on the first request and returns
/// that instance on every later request. Used for the library-wide shared helpers and for the
/// per-object caches of `Statics`.
template <class T>
class LazyInstance {
public:
    std::shared_ptr<T> get() {
        if (!instance_) {
            instance_ = std::make_shared<T>();
        }
        return instance_;
    }

private:
    std::shared_ptr<T> instance_;
};

}  // namespace caudalis
