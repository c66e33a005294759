#pragma once

#include <string>

#include "caudalis/design/DesignResult.hpp"

namespace caudalis::cli {

/// Draws pressure, flow and water depth along the radius with PLplot, one panel each:
/// acting and ideal pressure, delivered and required flow, actual and ideal depth; the end gun
/// as a marker. The file's extension chooses the format: .png or .svg.
class PlotReport {
public:
    /// Raises `UsageError` unless the path ends in .png or .svg (any case).
    static void requireSupportedFormat(const std::string& path);
    /// Raises `InputError` when the file cannot be written or PLplot lacks the driver.
    static void writeFile(const std::string& path, const design::DesignResult& result);

private:
    static std::string deviceFor(const std::string& path);
};

}  // namespace caudalis::cli
