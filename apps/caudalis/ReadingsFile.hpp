#pragma once

#include <string>
#include <vector>

#include "caudalis/core/Records.hpp"

namespace caudalis::cli {

/// One catch-can reading and where it was read from.
struct Reading {
    FieldSample sample;
    std::string file;
    long line = 0;
};

/// The readings of a field test, in the two passes of the machine (the second may be empty).
struct ReadingPasses {
    std::vector<Reading> first;
    std::vector<Reading> second;
};

/// Catch-can readings in the library's text form: one reading a line, the collected amount,
/// one space and the distance from the centre, with "." as decimal point. Lines starting with
/// "#" are comments. The two passes are separated by a blank line in one file, or given as
/// two files. Every failure raises `InputError` naming the file and line.
class ReadingsFile {
public:
    /// Reads one file holding one or two passes, or two files holding one pass each.
    static ReadingPasses load(const std::vector<std::string>& paths);
    /// The groups of readings of `text` (groups separated by blank lines); `source` names the
    /// text in messages.
    static std::vector<std::vector<Reading>> parse(const std::string& text, const std::string& source);

private:
    static Reading parseLine(const std::string& line, const std::string& source, long number);
};

}  // namespace caudalis::cli
