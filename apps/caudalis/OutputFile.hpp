#pragma once

#include <fstream>
#include <string>

namespace caudalis::cli {

/// A file written by the program; raises `InputError` naming it ("cannot write CSV file
/// out.csv: ...") when it cannot be opened or written.
class OutputFile {
public:
    OutputFile(std::string path, std::string kind);
    std::ostream& stream() { return file_; }
    /// Flushes and closes, raising when the data did not reach the file.
    void close();
    /// Raises unless `path` can be created or overwritten (the file is left in place, empty).
    static void requireWritable(const std::string& path, const std::string& kind);

private:
    [[noreturn]] void fail() const;

    std::string path_;
    std::string kind_;
    std::ofstream file_;
};

}  // namespace caudalis::cli
