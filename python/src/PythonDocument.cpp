#include "PythonDocument.hpp"

#include <utility>

namespace caudalis::python {

py::object PythonDocument::take() {
    return std::move(document_);
}

void PythonDocument::null() {
    place(py::none());
}

void PythonDocument::boolean(bool value) {
    place(py::bool_(value));
}

void PythonDocument::integer(long long value) {
    place(py::int_(value));
}

void PythonDocument::real(double value) {
    place(py::float_(value));
}

void PythonDocument::text(const std::string& value) {
    place(py::str(value));
}

void PythonDocument::beginObject(std::size_t) {
    open(py::dict());
}

void PythonDocument::key(const std::string& name) {
    keys_.push_back(py::str(name));
}

void PythonDocument::endObject() {
    close();
}

void PythonDocument::beginArray(std::size_t) {
    open(py::list());
}

void PythonDocument::endArray() {
    close();
}

void PythonDocument::place(py::object value) {
    if (open_.empty()) {
        document_ = std::move(value);
        return;
    }
    PyObject* container = open_.back().ptr();
    if (PyList_Check(container)) {
        if (PyList_Append(container, value.ptr()) != 0) {
            throw py::error_already_set();
        }
        return;
    }
    if (PyDict_SetItem(container, keys_.back().ptr(), value.ptr()) != 0) {
        throw py::error_already_set();
    }
    keys_.pop_back();
}

void PythonDocument::open(py::object container) {
    open_.push_back(std::move(container));
}

void PythonDocument::close() {
    py::object container = std::move(open_.back());
    open_.pop_back();
    place(std::move(container));
}

}  // namespace caudalis::python
