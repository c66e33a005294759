# Reads the Chart.js script into a generated C++ source that defines the pieces of
# `caudalis::design::ChartJsLibrary::source()`. Run in script mode:
#   cmake -DINPUT=chart.min.js -DOUTPUT=ChartJsScript.cpp -P EmbedChartJs.cmake
# The script is cut into raw string literals (cmake/RawStringPieces.cmake).
file(READ "${INPUT}" script)
string(FIND "${script}" "</script" closing)
if(NOT closing EQUAL -1)
  message(FATAL_ERROR "${INPUT} holds \"</script\" and cannot be embedded in a script element")
endif()
include(${CMAKE_CURRENT_LIST_DIR}/RawStringPieces.cmake)
raw_string_pieces("${script}" "${INPUT}" chartjs pieces)
file(WRITE "${OUTPUT}.tmp"
"// Generated from ${INPUT} by cmake/EmbedChartJs.cmake; do not edit.
#include <string>

namespace caudalis::design::embedded {

extern const char* const chartJsPieces[];
extern const unsigned chartJsPieceCount;

const char* const chartJsPieces[] = {
${pieces}};
const unsigned chartJsPieceCount = sizeof chartJsPieces / sizeof chartJsPieces[0];

}  // namespace caudalis::design::embedded
")
file(COPY_FILE "${OUTPUT}.tmp" "${OUTPUT}" ONLY_IF_DIFFERENT)
file(REMOVE "${OUTPUT}.tmp")
