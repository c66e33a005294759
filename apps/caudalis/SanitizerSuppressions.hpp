#pragma once

// Include in exactly one source file of each program that draws plots. PLplot loads its cairo
// drivers through libltdl, and fontconfig keeps its caches until the process ends; neither is
// released before exit, which LeakSanitizer would otherwise report. The hook is only read
// by sanitized builds.
extern "C" const char* __lsan_default_suppressions();
extern "C" const char* __lsan_default_suppressions() {
    return "leak:libfontconfig.so\n"
           "leak:libltdl.so\n"
           "leak:libpango\n"
           "leak:libcairo.so\n"
           "leak:libglib-2.0.so\n"
           "leak:libgobject-2.0.so\n";
}
