#include "psfileuses.h"

#include <sys/stat.h>

namespace {

// Fills in which file it is. False when path leads to none of those that are listed.
bool locate(const psString& path, psFileUses::Use& use) {
    const psString directory = path.getFileDir();
    struct stat file;
    bool usable = stat(path.c_str(), &file) == 0;
    if (usable) {
        usable = S_ISREG(file.st_mode);
    } else {
        use.name = path.getFileName();
        usable = stat(directory.empty() ? "." : directory.c_str(), &file) == 0;
    }
    if (usable) {
        use.device = file.st_dev;
        use.node = file.st_ino;
    }
    return usable;
}

} // namespace

void psFileUses::add(const psString& path, const psString& purpose, char key) {
    Use use = {purpose, key, 0, 0, "", false};
    if (locate(path, use)) {
        m_uses.append(use);
    }
}

void psFileUses::addOpen(int file, const psString& purpose) {
    struct stat status;
    if (fstat(file, &status) == 0 && S_ISREG(status.st_mode)) {
        m_uses.append({purpose, 0, status.st_dev, status.st_ino, "", false});
    }
}

const psFileUses::Use* psFileUses::find(const psString& path) const {
    return const_cast<psFileUses*>(this)->find(path);
}

psFileUses::Use* psFileUses::find(const psString& path) {
    Use wanted = {"", 0, 0, 0, "", false};
    if (!locate(path, wanted)) {
        return nullptr;
    }
    for (Use& use : m_uses) {
        if (use.device == wanted.device && use.node == wanted.node && use.name == wanted.name) {
            return &use;
        }
    }
    return nullptr;
}

psString psFileInUseText(const psString& path, const psFileUses::Use& use) {
    const psString key = use.key ? " (-" + psString(use.key) + " key)" : psString();
    return "ignored: file " + path + " is already used for " + use.purpose + key;
}
