// The functions of the measured library, for the list of those that tests cover ("-e+"). The names
// come from the library's header: see CMakeLists.txt.

#include <kx.h>

static const char* const libraryFunctions[] = {
#include "ntkdcfunctions.inc"
};

[[maybe_unused]] static const bool g_registered = [] {
    for (const char* const function : libraryFunctions) {
        psRegLibFunction(function);
    }
    return true;
}();
