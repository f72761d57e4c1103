#include "psatomicfile.h"

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

static psString directoryOf(const psString& path) {
    const psString directory = path.substr(0, path.rfind("/") + 1);
    return directory.empty() ? psString("./") : directory;
}

// The path with every link followed, also where the last one leads to a file that is yet to be
// made.
static psString resolve(const psString& name, int moreLinks = 40) {
    if (char* const path = realpath(name.c_str(), nullptr)) {
        const psString resolved = path;
        free(path);
        return resolved;
    }
    char link[PATH_MAX];
    const ssize_t length = readlink(name.c_str(), link, sizeof link);
    if (length <= 0 || moreLinks == 0) {
        return name;
    }
    const psString target(link, static_cast<int>(length));
    return resolve(target[0] == '/' ? target : directoryOf(name) + target, moreLinks - 1);
}

// The permissions that a new file gets from the process.
static mode_t newFileMode() {
    const mode_t mask = umask(0);
    umask(mask);
    return 0666 & ~mask;
}

bool psAtomicFile::canReplace(const psString& name) {
    const psString target = resolve(name);
    struct stat status;
    if (stat(target.c_str(), &status) == 0) {
        if (!S_ISREG(status.st_mode)) {
            errno = S_ISDIR(status.st_mode) ? EISDIR : EINVAL;
            return false;
        }
        if (access(target.c_str(), R_OK | W_OK) != 0) {
            return false;
        }
    } else if (errno != ENOENT || name.empty()) {
        return false;
    }
    return access(directoryOf(target).c_str(), W_OK | X_OK) == 0;
}

psAtomicFile::psAtomicFile(const psString& name) : m_target(resolve(name)) {
    // Also keeps a device from being replaced by a file.
    if (!check(canReplace(name))) {
        return;
    }
    psString temporary = directoryOf(m_target) + ".new-XXXXXX";
    const int file = mkstemp(&temporary.at(0));
    if (!check(file >= 0)) {
        return;
    }
    m_temporary = temporary;
    m_file = fdopen(file, "w");
    if (!check(m_file != nullptr)) {
        close(file);
    } else {
        copyAttributes();
    }
}

psAtomicFile::~psAtomicFile() {
    if (m_file) {
        fclose(m_file);
    }
    removeTemporary();
}

// Remembers the reason of the first step that failed.
bool psAtomicFile::check(bool done) {
    if (!done && m_failure == 0) {
        m_failure = errno ? errno : EIO;
    }
    return done;
}

void psAtomicFile::copyAttributes() {
    struct stat old;
    const bool exists = stat(m_target.c_str(), &old) == 0;
    // Only a privileged process can give a file away; for others the new one is their own. The
    // owner goes first, as changing it takes permissions away.
    if (exists && fchown(fileno(m_file), old.st_uid, old.st_gid) != 0) {
        errno = 0;
    }
    check(fchmod(fileno(m_file), exists ? old.st_mode & 07777 : newFileMode()) == 0);
}

void psAtomicFile::removeTemporary() {
    if (!m_temporary.empty()) {
        unlink(m_temporary.c_str());
    }
    m_temporary = "";
}

void psAtomicFile::write(const psString& text) {
    if (m_failure != 0) {
        return;
    }
    const size_t length = static_cast<size_t>(text.length());
    check(fwrite(text.c_str(), 1, length, m_file) == length);
}

// The order matters: the content must be on the disk before the name leads to it, or a power
// failure could leave an empty file under it.
bool psAtomicFile::commit() {
    if (m_failure != 0) {
        return false;
    }
    const bool onDisk = check(fflush(m_file) == 0) && check(fsync(fileno(m_file)) == 0);
    const bool closed = check(fclose(m_file) == 0);
    m_file = nullptr;
    if (!onDisk || !closed || !check(rename(m_temporary.c_str(), m_target.c_str()) == 0)) {
        return false;
    }
    m_temporary = "";
    return true;
}
