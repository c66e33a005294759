# Reads the web app's files (FOLDER, the names in NAMES separated by commas) into a generated C++
# source that defines `caudalis::web::embedded::assetFiles`. Run in script mode:
#   cmake -DFOLDER=assets -DNAMES=index.html,app.js -DOUTPUT=WebAssetFiles.cpp -P EmbedWebAssets.cmake
# Each file is cut into raw string literals (cmake/RawStringPieces.cmake).
include(${CMAKE_CURRENT_LIST_DIR}/RawStringPieces.cmake)
string(REPLACE "," ";" names "${NAMES}")
set(arrays "")
set(entries "")
set(index 0)
foreach(name ${names})
  file(READ "${FOLDER}/${name}" content)
  raw_string_pieces("${content}" "${FOLDER}/${name}" asset pieces)
  string(APPEND arrays "const char* const file${index}[] = {\n${pieces}};\n")
  string(APPEND entries "    {\"${name}\", file${index}, sizeof file${index} / sizeof file${index}[0]},\n")
  math(EXPR index "${index} + 1")
endforeach()
file(WRITE "${OUTPUT}.tmp"
"// Generated from ${FOLDER} by cmake/EmbedWebAssets.cmake; do not edit.
#include \"WebAssets.hpp\"

namespace caudalis::web::embedded {

namespace {
${arrays}}  // namespace

const AssetFile assetFiles[] = {
${entries}};
const unsigned assetFileCount = sizeof assetFiles / sizeof assetFiles[0];

}  // namespace caudalis::web::embedded
")
file(COPY_FILE "${OUTPUT}.tmp" "${OUTPUT}" ONLY_IF_DIFFERENT)
file(REMOVE "${OUTPUT}.tmp")
