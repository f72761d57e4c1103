#include "psprogram.h"

#include "pssettings.h"

constinit psSettings g_settings;

psString psProgramDir() {
    return g_settings.programPath.getFileDir();
}

bool psIsAbsolutePath(const psString& name) {
    return name.startsWith("/") || name.startsWith("\\") || (name.length() >= 2 && name[1] == ':');
}

psString psPathIn(const psString& name, const psString& dir) {
    if (psIsAbsolutePath(name)) {
        return name;
    }
    if (dir.empty()) {
        return psProgramDir() + name;
    }
    return name.startsWith(dir) ? name : dir + name;
}

psString psInPath(const psString& name) {
    return psPathIn(name, g_settings.inDir);
}
