#include "Views.hpp"

#include <unordered_map>

namespace caudalis::python {

namespace {

struct View {
    py::handle parent;
    const void* address = nullptr;
    Views::Locate locate = nullptr;  // nullptr for a field: it stands wherever its parent stands
    Long index = 0;
    py::object watcher;  // the weak reference that forgets the view when it dies
};

struct ExpectedElement {
    const void* address = nullptr;
    Views::Locate locate = nullptr;
    Long index = 0;
};

// Used with the interpreter lock held; never destroyed, as views may die during shutdown.
std::unordered_map<PyObject*, View>& views() {
    static auto* all = new std::unordered_map<PyObject*, View>();
    return *all;
}

// The view each watcher watches, to forget the view when the watcher calls back.
std::unordered_map<PyObject*, PyObject*>& watched() {
    static auto* all = new std::unordered_map<PyObject*, PyObject*>();
    return *all;
}

/// The one callback of every watcher: forgets the view that died.
py::handle forget() {
    static const py::handle callback = py::cpp_function([](py::handle watcher) {
                                           const auto found = watched().find(watcher.ptr());
                                           if (found != watched().end()) {
                                               PyObject* view = found->second;
                                               watched().erase(found);
                                               views().erase(view);
                                           }
                                       }).release();
    return callback;
}

ExpectedElement expected;

[[noreturn]] void raiseGone() {
    PyErr_SetString(PyExc_ReferenceError,
                    "this object stood for an element that is gone (its array was re-dimensioned, "
                    "emptied or replaced since it was taken); take a .copy() to keep an element");
    throw py::error_already_set();
}

}  // namespace

void Views::expectElement(const void* address, Locate locate, Long index) {
    expected = {address, locate, index};
}

void Views::adopt(py::handle view, py::handle parent, const void* address) {
    View made;
    made.parent = parent;
    made.address = address;
    if (expected.address == address) {
        made.locate = expected.locate;
        made.index = expected.index;
    }
    expected = {};
    auto& all = views();
    if (auto found = all.find(view.ptr()); found != all.end()) {
        // An object already made for this address is handed out again: it now also stands
        // for its new place, whose parent it must keep alive too.
        if (!found->second.parent.is(parent)) {
            py::detail::keep_alive_impl(view, parent);
        }
        made.watcher = std::move(found->second.watcher);
        found->second = std::move(made);
        return;
    }
    made.watcher = py::weakref(view, forget());
    watched().emplace(made.watcher.ptr(), view.ptr());
    all.emplace(view.ptr(), std::move(made));
}

void Views::check(py::handle object) {
    auto& all = views();
    const auto found = all.find(object.ptr());
    if (found == all.end()) {
        return;
    }
    const py::handle parent = found->second.parent;
    const void* address = found->second.address;
    const Locate locate = found->second.locate;
    const Long index = found->second.index;
    check(parent);
    if (locate != nullptr && locate(parent, index) != address) {
        raiseGone();
    }
}

}  // namespace caudalis::python
