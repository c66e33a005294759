#include "OutputFile.hpp"

#include <cerrno>
#include <cstring>

#include "CliErrors.hpp"

namespace caudalis::cli {

OutputFile::OutputFile(std::string path, std::string kind)
    : path_(std::move(path)), kind_(std::move(kind)), file_(path_, std::ios::binary | std::ios::trunc) {
    if (!file_) {
        fail();
    }
}

void OutputFile::fail() const {
    throw InputError("cannot write " + kind_ + " file " + path_ + ": " + std::strerror(errno));
}

void OutputFile::close() {
    file_.close();
    if (file_.fail()) {
        fail();
    }
}

void OutputFile::requireWritable(const std::string& path, const std::string& kind) {
    OutputFile(path, kind).close();
}

}  // namespace caudalis::cli
