// What the libraries share that stand before the real one and hand calls on to it.
#pragma once

#include <dlfcn.h>
#include <unistd.h>

#include <cstdio>
#include <string>

// There is no library without the real one, and nobody to return an error to.
[[noreturn]] inline void endWithout(const char* library, const std::string& why) {
    std::fprintf(stderr, "%s libntkdc: %s\n", library, why.c_str());
    _exit(2);
}

// The library's calls of its own functions stay within it: by default they would come to the one
// that stands before it, the first library of this name.
inline int bindingOfOwnCalls() {
#if defined(__SANITIZE_ADDRESS__)
    return 0; // the sanitizer refuses it
#else
    return RTLD_DEEPBIND;
#endif
}

// Null when it cannot be opened, for which dlerror() has the reason.
inline void* openRealLibrary(const std::string& path) {
    return dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL | bindingOfOwnCalls());
}
