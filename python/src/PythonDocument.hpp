#pragma once

#include <pybind11/pybind11.h>

#include <string>
#include <vector>

#include "caudalis/design/JsonVisitor.hpp"

namespace caudalis::python {

namespace py = pybind11;

/// Builds a report's document as Python dicts, lists, numbers, texts and None straight from the
/// library's walk over it: the same values `json.loads` gives of the report's text, without the
/// text.
class PythonDocument final : public design::JsonVisitor {
public:
    /// The document built, once the walk has ended.
    py::object take();

    void null() override;
    void boolean(bool value) override;
    void integer(long long value) override;
    void real(double value) override;
    void text(const std::string& value) override;
    void beginObject(std::size_t size) override;
    void key(const std::string& name) override;
    void endObject() override;
    void beginArray(std::size_t size) override;
    void endArray() override;

private:
    /// Puts `value` under the pending key of the open object, at the end of the open array, or
    /// as the whole document.
    void place(py::object value);
    void open(py::object container);
    void close();

    std::vector<py::object> open_;
    std::vector<py::object> keys_;
    py::object document_;
};

}  // namespace caudalis::python
