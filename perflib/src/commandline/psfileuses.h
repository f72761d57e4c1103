#pragma once

#include <sys/types.h>

#include "pslist.h"
#include "psstring.h"

// What the files of a session are used for, so that no key takes one that another key uses: two
// writers would mix their texts, and a file that is created anew loses what it held. Files are
// compared, not names: a link or "./" leads to the same one. Devices and pipes are not listed,
// they serve any number of writers.
class psFileUses {
public:
    struct Use {
        psString purpose; // completes "used for"
        char key;         // that asked for it; 0 for none
        dev_t device;
        ino_t node;               // of the file; of its directory while the file is not there
        psString name;            // while the file is not there
        bool conflicting = false; // another key wants the file for something else
    };

    void clear() { m_uses.clear(); }
    void add(const psString& path, const psString& purpose, char key);
    // A file that is open already: standard input or output, where the shell made it a file.
    void addOpen(int file, const psString& purpose);
    // The first use of the file; null when there is none.
    const Use* find(const psString& path) const;
    Use* find(const psString& path);

private:
    psList<Use> m_uses;
};

// "ignored: file <path> is already used for <purpose> (-<key> key)".
psString psFileInUseText(const psString& path, const psFileUses::Use& use);
