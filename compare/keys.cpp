#include "keys.h"

#include <algorithm>
#include <cstring>

#include "usage.h"

namespace compare {

namespace {

struct Refusal {
    const char* beginnings; // of keys, a blank between them
    const char* reason;
};

const Refusal refusals[] = {
    {"-o -O -r -R -q -Q -u -U -g -n -l",
     "writes files of one run; use --csv, --json or --markdown of ntkcompare"},
    {"-I", "writes a settings file and measures nothing; run ntkperf with it, and give the file "
           "here with -i"},
    {"-e -h -v -?", "prints and measures nothing; run ntkperf with it"},
    {"-A", "asks on the console; give the values with -d or -i"},
    {"-C", "measures everything twice, in and out of the cache; give two lengths with "
           "-dCodeLength"},
    {"-S", "counts the restoring of the buffers too; leave it out, the turns count calls alone"},
    {"-c -j -J", "sets how long ntkperf's methods measure, in place of which turns are taken; use "
                 "--time and --precision of ntkcompare"},
    {"-dMethod= -dAccuracy= -dNumLoops= -dStartNumLoops= -dStopNumLoops= -dMinCpuClocks= "
     "-dNumCalls= -dTotalCpuClocks=",
     "belongs to ntkperf's methods, in place of which turns are taken; use --time and --precision "
     "of ntkcompare"},
    {"-Y", "gives priority to one of two that share a processor by turns; start ntkcompare with "
           "nice instead"},
};

const char* const passed = "BdiPLpftmkFHWTs@";

bool beginsWithOneOf(const std::string& key, const std::string& beginnings) {
    for (std::size_t at = 0; at < beginnings.size();) {
        const std::size_t end = std::min(beginnings.find(' ', at), beginnings.size());
        if (key.compare(0, end - at, beginnings, at, end - at) == 0) {
            return true;
        }
        at = end + 1;
    }
    return false;
}

void checkKey(const std::string& key) {
    if (key.starts_with("--")) {
        throw UsageError("the option " + key + " stands among the keys; put it before the --");
    }
    if (key.size() < 2 || key[0] != '-') {
        throw UsageError("the key '" + key +
                         "' does not begin with -; BASE and NEW stand before "
                         "the --, and a key has no blank before its value");
    }
    for (const Refusal& refusal : refusals) {
        if (beginsWithOneOf(key, refusal.beginnings)) {
            throw UsageError("the key " + key + " has no place in a comparison: it " +
                             refusal.reason);
        }
    }
    if (!std::strchr(passed, key[1])) {
        throw UsageError("ntkperf has no key " + key + "; ntkperf -h lists them");
    }
}

} // namespace

void checkKeys(const std::vector<std::string>& keys) {
    std::for_each(keys.begin(), keys.end(), checkKey);
}

} // namespace compare
