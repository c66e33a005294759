# Included by the scripts that embed a text file into a generated C++ source:
# raw_string_pieces(TEXT NAME DELIMITER OUT) sets OUT to TEXT as raw string literals
# R"DELIMITER(...)DELIMITER", one a line, each of at most 16000 characters (below the length that
# ISO C++ compilers must accept); it stops when TEXT holds the closing delimiter itself.
function(raw_string_pieces text name delimiter out)
  string(FIND "${text}" ")${delimiter}\"" found)
  if(NOT found EQUAL -1)
    message(FATAL_ERROR "${name} holds the raw string delimiter )${delimiter}\"")
  endif()
  string(LENGTH "${text}" length)
  set(pieces "")
  set(offset 0)
  while(offset LESS length)
    string(SUBSTRING "${text}" ${offset} 16000 piece)
    string(APPEND pieces "    R\"${delimiter}(${piece})${delimiter}\",\n")
    math(EXPR offset "${offset} + 16000")
  endwhile()
  set(${out} "${pieces}" PARENT_SCOPE)
endfunction()
