// The test program draws plots in-process (see SanitizerSuppressions.hpp).
#include "SanitizerSuppressions.hpp"
