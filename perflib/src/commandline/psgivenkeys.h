#pragma once

#include <map>

#include "pscmdline.h"
#include "psoption.h"

// An index of the keys of a command line: what a key does often depends on another one, and an
// argument file may hold a hundred thousand.
class psGivenKeys {
public:
    // The line before its argument files are read, and with them.
    void indexCommandLine(const psCommandList& commands);
    void indexAll(const psCommandList& commands, psOptionList& options);

    bool isGiven(char key) const { return m_given[index(key)]; }
    bool isOnLine(char key) const { return m_onLine[index(key)]; }
    bool isIniWritten() const; // "-I" holds
    // Of some keys ("-i" and "-I" together, "-d" with the same name, "-k" ...) only the last one
    // that is valid holds. The one that overrides command; null when command itself holds.
    const psCommandKey* overriddenBy(const psCommandKey& command, psOptionList& options) const;

private:
    struct Less {
        bool operator()(const psString& a, const psString& b) const { return a.compare(b) < 0; }
    };
    static constexpr int keyCount = 256;
    static int index(char key) { return static_cast<unsigned char>(key); }

    bool m_onLine[keyCount] = {};
    bool m_given[keyCount] = {};
    std::map<psString, const psCommandKey*, Less> m_last; // by group
};
