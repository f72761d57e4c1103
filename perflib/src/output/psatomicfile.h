#pragma once

#include <cstdio>

#include "psstring.h"

// Replaces a file atomically: the new content takes its place only when all of it is on the disk,
// so that a program that is stopped or a disk that is full leaves the old content whole. Written to
// a temporary file in the same directory, which is gone in the end whatever happens. A file that is
// replaced keeps its permissions and, where the system allows it, its owner; a link keeps pointing
// to it.
class psAtomicFile {
public:
    explicit psAtomicFile(const psString& name);
    psAtomicFile(const psAtomicFile&) = delete;
    psAtomicFile& operator=(const psAtomicFile&) = delete;
    ~psAtomicFile();

    void write(const psString& text);
    // Puts the new content in place. False: the old one stands, and failure() has the reason.
    bool commit();
    // errno of the first step that failed, 0 while all is well. Texts written after it are
    // dropped.
    int failure() const { return m_failure; }

    // Whether name is a regular file that may be written, or a new one, in a directory where
    // files can be made. When not, errno has the reason.
    static bool canReplace(const psString& name);

private:
    bool check(bool done);
    void copyAttributes();
    void removeTemporary();

    psString m_target;    // the file itself, where the name is a link
    psString m_temporary; // empty when there is none
    FILE* m_file = nullptr;
    int m_failure = 0;
};
