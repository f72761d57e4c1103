#pragma once

#include "pslist.h"
#include "psstring.h"

class psSession;

// One letter of the command line. The info function describes what the key will do with this
// argument, for the report of the command line; the apply function does it.
struct psOption {
    using Info = psString (*)(const psString& argument);
    using Apply = void (*)(const psString& argument, psSession* session);

    psString report(const psString& argument) const; // the info text

    char key;
    bool hidden;     // listed only by the help variants "with hidden keys"
    psString help;   // one line per variant of the key, each with its line end; empty: deprecated
    Info info;       // null: the key is known, but has no effect any more
    Apply apply;     // likewise
    psString detail; // for the extended help; may be empty
};

// The table in the order in which help lists it.
class psOptionList : public psList<psOption> {
public:
    void initOption(char key, const psString& help, psOption::Info info, psOption::Apply apply,
                    const psString& detail, bool hidden = false);
    psOption* getOption(char key); // null: no such key
};
