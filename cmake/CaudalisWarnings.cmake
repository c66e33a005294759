# Warnings and sanitizers are set per target, never through global flags.
# CAUDALIS_WERROR makes them errors: on in CI and for developers, off for users, whose newer or
# older compilers may warn where ours do not.
function(caudalis_set_warnings target)
  target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic)
  if(CAUDALIS_WERROR)
    target_compile_options(${target} PRIVATE -Werror)
  endif()
  # GCC 12 at -O3 reports string concatenations as overlapping copies (GCC bug 105329, fixed in
  # GCC 13); the warning stays on, only not as an error.
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_GREATER_EQUAL 12
     AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
    target_compile_options(${target} PRIVATE -Wno-error=restrict)
  endif()
endfunction()

# CAUDALIS_FUZZ (clang only) instruments every target for libFuzzer's coverage, with the same
# sanitizers, so that the harnesses in fuzz/ see inside the library and the command line.
function(caudalis_set_sanitizers target)
  if(CAUDALIS_FUZZ)
    target_compile_options(${target} PRIVATE -fsanitize=fuzzer-no-link,address,undefined
      -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(${target} PRIVATE -fsanitize=address,undefined)
  elseif(CAUDALIS_SANITIZE)
    target_compile_options(${target} PRIVATE -fsanitize=address,undefined -fno-sanitize-recover=all
      -fno-omit-frame-pointer)
    target_link_options(${target} PRIVATE -fsanitize=address,undefined -fno-sanitize-recover=all)
  endif()
endfunction()
