#pragma once

#include <map>

#include "pscmdline.h"
#include "psoption.h"

// Which keys a command line holds, answered without walking it: what a key will do often depends on
// another one, and an argument file may hold a hundred thousand.
class psGivenKeys {
public:
    // The line before its argument files are read, and after that.
    void noteLine(const psCommandList& commands);
    void noteAll(const psCommandList& commands, psOptionList& options);

    bool isGiven(char key) const { return m_given[index(key)]; }
    bool isOnLine(char key) const { return m_onLine[index(key)]; }
    bool isIniWritten() const; // "-I" holds
    // Of some keys ("-i" and "-I" together, "-d" with the same name, "-k" ...) only the last one
    // that is valid holds. The one that does so instead of command; null when command itself
    // counts.
    const psCommandKey* replacing(const psCommandKey& command, psOptionList& options) const;

private:
    struct Less {
        bool operator()(const psString& a, const psString& b) const { return a.compare(b) < 0; }
    };
    static constexpr int keyCount = 256;
    static int index(char key) { return static_cast<unsigned char>(key); }

    bool m_onLine[keyCount] = {};
    bool m_given[keyCount] = {};
    std::map<psString, const psCommandKey*, Less> m_last; // by what they have in common
};
