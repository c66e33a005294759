#pragma once

#include <pybind11/pybind11.h>

#include "caudalis/core/Basic.hpp"

namespace caudalis::python {

namespace py = pybind11;

/// The Python objects that stand for a record or an array inside another object: an element of
/// an array (`p.Tramos[1]`) or a record or array field of a record (`p.endGun`, `t.Saidas`).
/// Each such view remembers its parent (kept alive by the view) and, for an element, its index.
/// Before a view is used it is checked from the outermost parent down: an element still stands
/// there when its array still holds its index at the same address. A view whose memory has gone
/// (its array was re-dimensioned, emptied or replaced) raises ReferenceError instead of reading
/// freed memory. Objects that own their value are never views.
class Views {
public:
    /// Where the element `index` of the array `parent` is now, or nullptr when it has none.
    using Locate = const void* (*)(py::handle parent, Long index);

    /// The next view made of `address` is the element `index` of its parent, found by `locate`.
    static void expectElement(const void* address, Locate locate, Long index);
    /// Records `view`, made with `parent` as its parent, as a view of `address`.
    static void adopt(py::handle view, py::handle parent, const void* address);
    /// Raises ReferenceError when `object` is a view whose memory has gone.
    static void check(py::handle object);
};

}  // namespace caudalis::python
