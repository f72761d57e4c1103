// Runs of the program of deeds under the watch of ntkguard.
#pragma once

#include <functional>

#include "../patterns.h"
#include "session.h"

// Without what the run of a process of another second, or on a busier machine, writes otherwise.
inline std::string withoutTimes(const std::string& text) {
    static const std::pair<const char*, const char*> changes[] = {
        {"(Start *[:,] *)[A-Z][a-z]{2} [A-Z][a-z]{2} [^\n,]*", "now"},
        {"[0-9]{2}:[0-9]{2}:[0-9]{2}", "hh:mm:ss"},
        {" Note     : [0-9]+ of [0-9]+ measurements [^(]*[^\n]*\n", ""},
        {"spread=[^\n]*\n", ""},
        {"( Measured : )[0-9.]+%", "share"},
        {"( Measured : share [^\n]*\n *)[0-9.]+ of [0-9.]+", "n of m"},
    };
    std::string same = text;
    for (const auto& [pattern, replacement] : changes) {
        same = replaced(same, pattern, replacement);
    }
    return same;
}

class GuardTest : public SystemTest {
protected:
    static inline const Texts all = {"-B", "-dMethod=Manual", "-dNumLoops=1", "-f-__"};
    static inline const Texts outputs = {"-olog.txt", "-rtable.csv", "-usum.csv", "-gdone"};

    // The keys and the files of a run, under the name of a folder.
    Texts keysIn(const std::string& folder) const { return outputs + Texts{"-l" + path(folder)}; }

    // ntkguard with its options, the program of deeds and its keys.
    Outcome guarded(const std::string& deeds, const Texts& keys, const Texts& options = {},
                    const Command& how = {}) const {
        Command command = how;
        command.program = NTK_GUARD_FILE;
        command.environment.push_back("DEEDS=" + deeds);
        return run(options + Texts{NTK_DEEDS_FILE} + keys, command);
    }
    Outcome unguarded(const Texts& keys, const Command& how = {}) const {
        Command command = how;
        command.program = NTK_DEEDS_FILE;
        return run(keys, command);
    }
    std::string textIn(const std::string& folder, const std::string& file) const {
        return withoutTimes(text(folder + "/" + file));
    }
};
