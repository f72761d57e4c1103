#include "pspriority.h"

#include <sys/resource.h>
#include <unistd.h>

namespace {
bool g_marked = false;
bool g_changed = false;
int g_savedNice = 0;

// False for a class that has no nice value.
bool niceOfClass(int priorityClass, int& nice) {
    switch (priorityClass) {
    case 1: nice = -20; return true;
    case 2: nice = 0; return true;
    case 3: nice = 10; return true;
    default: return false;
    }
}
} // namespace

void psSetPriority(int priorityClass) {
    if (priorityClass == 0) {
        return;
    }
    g_marked = true;
    g_changed = false;
    int nice = 0;
    if (getuid() != 0 || !niceOfClass(priorityClass, nice)) {
        return;
    }
    g_savedNice = getpriority(PRIO_PROCESS, 0);
    g_changed = setpriority(PRIO_PROCESS, 0, nice) == 0;
}

void psResetPriority() {
    if (!g_marked) {
        return;
    }
    g_marked = false;
    if (g_changed && getuid() == 0) {
        setpriority(PRIO_PROCESS, 0, g_savedNice);
    }
    g_changed = false;
}
