#include "symbols.h"

#include <dlfcn.h>

#include "psloaded.h"

namespace compare {

std::string missingFunction(const std::string& function) {
    if (dlsym(RTLD_DEFAULT, function.c_str())) {
        return "";
    }
    std::string text = "the library has no function " + function + " (";
    const char* separator = "";
    for (const psString& file : psLoadedLibraries()) {
        text += separator + std::string(file.c_str());
        separator = ", ";
    }
    return text + ")";
}

} // namespace compare
