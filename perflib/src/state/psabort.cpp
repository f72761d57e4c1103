#include "psabort.h"

#include <dlfcn.h>
#include <unwind.h>

namespace {

// Functions of the C library that a program calls to end itself.
struct Doors {
    const void* abort;
    const void* assertion;
    const void* library; // where the C library begins
};
constinit Doors g_doors = {};

const void* libraryOf(const void* address) {
    Dl_info info;
    return dladdr(address, &info) ? info.dli_fbase : nullptr;
}

struct Walk {
    bool isBelowAbort = false;       // abort() has been seen
    const void* outermost = nullptr; // of the C library's functions, from abort() on
};

// From the innermost frame outwards, up to the first beyond abort() that is not the C library's.
_Unwind_Reason_Code look(_Unwind_Context* frame, void* data) {
    auto& walk = *static_cast<Walk*>(data);
    const auto* const function = reinterpret_cast<const void*>(_Unwind_GetRegionStart(frame));
    walk.isBelowAbort = walk.isBelowAbort || function == g_doors.abort;
    if (!walk.isBelowAbort) {
        return _URC_NO_REASON;
    }
    if (libraryOf(function) != g_doors.library) {
        return _URC_END_OF_STACK;
    }
    walk.outermost = function;
    return _URC_NO_REASON;
}

} // namespace

void psPrepareAbortQuestion() {
    g_doors.abort = dlsym(RTLD_DEFAULT, "abort");
    g_doors.assertion = dlsym(RTLD_DEFAULT, "__assert_fail");
    g_doors.library = libraryOf(g_doors.abort);
    Walk walk;
    _Unwind_Backtrace(look, &walk);
}

bool psMemoryIsDestroyed() {
    Walk walk;
    _Unwind_Backtrace(look, &walk);
    return walk.outermost && walk.outermost != g_doors.abort && walk.outermost != g_doors.assertion;
}
